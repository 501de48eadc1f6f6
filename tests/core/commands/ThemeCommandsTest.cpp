// The theme family of the catalogue: one row per theme (files included), the appearances and
// the accents, each changing the theme store; and the two fixed theme commands.

#include "commands/CommandCatalog.h"
#include "commands/ThemeCommands.h"
#include "support/HeadlessWindow.h"
#include "theme/ThemeFolder.h"
#include "theme/ThemeStore.h"

#include <QDir>
#include <gtest/gtest.h>

using namespace orwick;

namespace {

struct ThemeCommandsTest : test::HeadlessWindowTest {
    void SetUp() override { openWindow(tree.root()); }
    void TearDown() override
    {
        ThemeStore& shared = ThemeStore::shared();
        shared.setSelectedName(QStringLiteral("Orwick"));
        shared.setAppearanceMode(AppearanceMode::system);
        shared.setAccent(std::nullopt);
    }
    const AppCommand* command(const QList<AppCommand>& family, const QString& id)
    {
        for (const AppCommand& c : family)
            if (c.id == id)
                return &c;
        return nullptr;
    }
};

TEST_F(ThemeCommandsTest, TheFamilyListsThemesAppearancesAndAccentsInOrder)
{
    tree.file("Themes/mine.json", R"({"name": "Mine"})");
    ThemeStore store(tree.path("Themes"));
    const QList<AppCommand> family = ThemeCommands::family(store);
    QStringList ids;
    for (const AppCommand& c : family)
        ids.append(c.id);
    EXPECT_EQ(ids.mid(0, 13), (QStringList{"theme.Orwick", "theme.Paper", "theme.Nord", "theme.Dracula", "theme.Solarized",
                                           "theme.Catppuccin", "theme.Mine", "appearance.system", "appearance.dark",
                                           "appearance.light", "accent.Blue", "accent.Purple", "accent.Pink"}));
    EXPECT_EQ(ids.last(), "accent.themesOwn");

    const AppCommand* mine = command(family, "theme.Mine");
    ASSERT_TRUE(mine);
    EXPECT_EQ(mine->title, "Theme: Mine");
    EXPECT_EQ(mine->symbol, "theme.Mine"); // its rows draw a swatch of the theme
    EXPECT_EQ(mine->keywords, "appearance colors look");
    EXPECT_EQ(command(family, "appearance.system")->title, "Appearance: Match System");
    EXPECT_EQ(command(family, "accent.Green")->title, "Accent: Green");
    EXPECT_EQ(command(family, "accent.Green")->keywords, "accent color highlight tint Green");
    EXPECT_EQ(command(family, "accent.themesOwn")->title, "Accent: Theme's Own");
}

TEST_F(ThemeCommandsTest, EachRowChangesTheStoreAndIsCheckedAfter)
{
    ThemeStore store(tree.path("Themes"));
    const QList<AppCommand> family = ThemeCommands::family(store);
    EXPECT_TRUE(ThemeCommands::isChosen("theme.Orwick", store));
    EXPECT_TRUE(ThemeCommands::isChosen("accent.themesOwn", store));
    ASSERT_TRUE(CommandCatalog::run(*command(family, "theme.Nord"), *window));
    ASSERT_TRUE(CommandCatalog::run(*command(family, "appearance.dark"), *window));
    ASSERT_TRUE(CommandCatalog::run(*command(family, "accent.Orange"), *window));
    EXPECT_EQ(store.current().name, "Nord");
    EXPECT_EQ(store.appearanceMode(), AppearanceMode::dark);
    EXPECT_EQ(themeColorText(store.colors().color("accent")), "#EA7A1E");
    EXPECT_TRUE(ThemeCommands::isChosen("theme.Nord", store));
    EXPECT_FALSE(ThemeCommands::isChosen("theme.Orwick", store));
    EXPECT_TRUE(ThemeCommands::isChosen("appearance.dark", store));
    EXPECT_FALSE(ThemeCommands::isChosen("appearance.system", store));
    EXPECT_TRUE(ThemeCommands::isChosen("accent.Orange", store));
    EXPECT_FALSE(ThemeCommands::isChosen("accent.themesOwn", store));
    ASSERT_TRUE(CommandCatalog::run(*command(family, "accent.themesOwn"), *window));
    EXPECT_EQ(themeColorText(store.colors().color("accent")), "#88C0D0");
}

TEST_F(ThemeCommandsTest, OpenThemesFolderMakesItAndShowsIt)
{
    const FilePath folder = ThemeStore::shared().folder();
    EXPECT_EQ(folder, themesFolder());
    ASSERT_TRUE(QDir(folder.text()).removeRecursively());
    const AppCommand* open = CommandCatalog::find("openThemesFolder");
    ASSERT_TRUE(open);
    EXPECT_TRUE(open->disabledNote.isEmpty());
    ASSERT_TRUE(CommandCatalog::run(*open, *window));
    EXPECT_TRUE(QDir(folder.text()).exists());
    ASSERT_TRUE(test::waitUntil([&] { return window->activePane()->url() == folder && !window->activePane()->isLoading(); }));
}

} // namespace
