// The Appearance section of the Customize sheet over a real theme store: its rows read and
// change the store, the theme row offers the theme files as they are, and its note names each
// theme file that has a problem.

#include "app/Settings.h"
#include "app/ThemeSettingRows.h"
#include "support/TempHome.h"
#include "theme/ThemeStore.h"

#include <gtest/gtest.h>

using namespace orwick;

namespace {

struct ThemeSettingRowsTest : ::testing::Test {
    test::TempTree tree;
    void TearDown() override
    {
        for (const char* key : {ThemeStore::themeKey, ThemeStore::appearanceKey, ThemeStore::accentKey})
            openSettings()->remove(QLatin1StringView(key));
    }
    static const SettingRow* row(const SettingsSection& section, const char* key)
    {
        for (const SettingRow& r : section.rows)
            if (r.key == QLatin1StringView(key))
                return &r;
        return nullptr;
    }
};

TEST_F(ThemeSettingRowsTest, RowsReadAndChangeTheStore)
{
    ThemeStore store(tree.path("Themes"));
    const SettingsSection section = themeSettingsSection(&store);
    EXPECT_EQ(section.title, "Appearance");
    const SettingRow* theme = row(section, "theme");
    const SettingRow* mode = row(section, "appearanceMode");
    const SettingRow* accent = row(section, "accentColor");
    ASSERT_TRUE(theme && mode && accent);
    EXPECT_TRUE(theme->isAvailable());
    EXPECT_EQ(theme->chosen(), "Orwick");
    EXPECT_EQ(theme->choices.size(), 6);
    theme->choose("Solarized");
    EXPECT_EQ(store.current().name, "Solarized");
    EXPECT_EQ(mode->chosen(), "system");
    QStringList modes;
    for (const SettingChoice& c : mode->choices)
        modes.append(c.title);
    EXPECT_EQ(modes, (QStringList{"Match System", "Light", "Dark"}));
    mode->choose("dark");
    EXPECT_EQ(store.appearanceMode(), AppearanceMode::dark);
    EXPECT_EQ(accent->chosen(), "");
    EXPECT_EQ(accent->choices.first().title, "Theme's Own");
    accent->choose("#2E9E55");
    EXPECT_EQ(store.accentOverride(), QColor(0x2E, 0x9E, 0x55));
    EXPECT_EQ(accent->chosen(), "#2E9E55");
    accent->choose("");
    EXPECT_FALSE(store.accentOverride());
}

TEST_F(ThemeSettingRowsTest, TheThemeRowOffersTheFilesAndNamesTheirProblems)
{
    tree.file("Themes/good.json", R"({"name": "Good"})");
    tree.file("Themes/bad.json", R"({"name": )");
    ThemeStore store(tree.path("Themes"));
    const SettingsSection section = themeSettingsSection(&store);
    const SettingRow* theme = row(section, "theme");
    ASSERT_TRUE(theme);
    EXPECT_EQ(theme->liveChoices().last().value, "Good");
    EXPECT_TRUE(theme->noteText().startsWith("Some theme files have problems:\nbad.json: not valid JSON")) << theme->noteText().toStdString();
    tree.file("Themes/bad.json", R"({"name": "Mended"})");
    store.reload();
    const QList<SettingChoice> choices = theme->liveChoices();
    ASSERT_EQ(choices.size(), 8);
    EXPECT_EQ(choices.at(6).value, "Mended") << "in the order of the files: bad.json, good.json";
    EXPECT_EQ(choices.at(7).value, "Good");
    EXPECT_EQ(theme->noteText(), "");
}

TEST_F(ThemeSettingRowsTest, WithoutAStoreTheRowsSayWhy)
{
    const SettingsSection section = themeSettingsSection(nullptr);
    for (const SettingRow& r : section.rows) {
        EXPECT_FALSE(r.isAvailable()) << r.key.toStdString();
        EXPECT_EQ(r.noteText(), "Not available in this window");
    }
}

} // namespace
