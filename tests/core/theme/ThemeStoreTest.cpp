// The theme store over a real themes folder: files load in order of their paths, bad ones are
// listed by name while the rest load, saving a file reloads at once, and the choices are kept.

#include "app/Settings.h"
#include "platform/StoreNotices.h"
#include "support/TempHome.h"
#include "support/TestMain.h"
#include "theme/ThemeFolder.h"
#include "theme/ThemeStore.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using namespace orwick;
using test::waitUntil;

namespace {

struct ThemeStoreTest : ::testing::Test {
    test::TempTree tree;
    FilePath folder() const { return tree.path("Themes"); }
    void write(const char* name, const QByteArray& json) const { tree.file(QStringLiteral("Themes/") + QString::fromUtf8(name), json); }
    QStringList names(const ThemeStore& store) const
    {
        QStringList list;
        for (const ThemeDefinition& theme : store.themes())
            list.append(theme.name);
        return list;
    }
    void TearDown() override
    {
        for (const char* key : {ThemeStore::themeKey, ThemeStore::appearanceKey, ThemeStore::accentKey})
            openSettings()->remove(QLatin1StringView(key));
        StoreNotices::takePending();
    }
};

TEST_F(ThemeStoreTest, AMissingFolderIsMadeAndGivesTheBuiltInThemes)
{
    ThemeStore store(folder());
    EXPECT_TRUE(QDir(folder().text()).exists());
    EXPECT_EQ(names(store), (QStringList{"Orwick", "Paper", "Nord", "Dracula", "Solarized", "Catppuccin"}));
    EXPECT_TRUE(store.errors().isEmpty());
    EXPECT_EQ(store.current().name, "Orwick");
}

TEST_F(ThemeStoreTest, TheDefaultFolderIsUnderTheDataHome)
{
    EXPECT_EQ(themesFolder(), FilePath::fromNative(qgetenv("XDG_DATA_HOME") + "/Orwick/Themes"));
}

TEST_F(ThemeStoreTest, JsonFilesOfAnyCaseLoadInOrderOfTheirPaths)
{
    write("b.json", R"({"name": "Second"})");
    write("A.JSON", R"({"name": "First"})");
    write("theme.txt", R"({"name": "Not a theme file"})");
    tree.folder("Themes/folder.json");
    ThemeStore store(folder());
    EXPECT_EQ(names(store).mid(6), (QStringList{"First", "Second"}));
    EXPECT_TRUE(store.errors().isEmpty()) << store.errors().join('\n').toStdString();
}

TEST_F(ThemeStoreTest, BadFilesAreListedByNameAndTheOthersStillLoad)
{
    write("broken.json", "{ \"name\": ");
    write("list.json", "[1, 2]");
    write("good.json", R"({"name": "Good", "extends": "Nord"})");
    write("nord.json", R"({"name": "Nord"})");
    write("typo.json", R"({"name": "Typo", "extends": "Nrod", "colors": {"acent": "#FF0000", "text": "black"}})");
    write("loop.json", R"({"name": "Loop", "extends": "Loop"})");
    ThemeStore store(folder());
    EXPECT_EQ(names(store).mid(6), (QStringList{"Good", "Loop", "Typo"}));
    const QStringList errors = store.errors();
    ASSERT_EQ(errors.size(), 7) << errors.join('\n').toStdString();
    EXPECT_TRUE(errors.at(0).startsWith("broken.json: not valid JSON (")) << errors.at(0).toStdString();
    EXPECT_EQ(errors.at(1), "list.json: a theme file holds one JSON object: { \"name\": … }");
    EXPECT_EQ(errors.at(2), "nord.json: a theme named “Nord” is there already, so this one is left out");
    EXPECT_EQ(errors.at(3), "typo.json: “acent” in “colors” isn't a colour Orwick uses, so it does nothing");
    EXPECT_EQ(errors.at(4), "typo.json: “text” in “colors” is “black”, not a colour like #FF7A59, so it is left out");
    EXPECT_EQ(errors.at(5), "loop.json: “extends” goes round in a circle (Loop → Loop), so the chain stops there");
    EXPECT_EQ(errors.at(6), "typo.json: no theme is named “Nrod”, so “extends” starts from Orwick's colours");
}

TEST_F(ThemeStoreTest, SavingAThemeFileRestylesAtOnce)
{
    write("mine.json", R"({"name": "Mine", "colors": {"accent": "#111111"}})");
    ThemeStore store(folder());
    store.setSelectedName("Mine");
    EXPECT_EQ(themeColorText(store.current().light.color("accent")), "#111111");
    int changes = 0;
        QObject::connect(&store, &ThemeStore::changed, [&] { ++changes; });
    const int revision = store.revision();

    write("mine.json", R"({"name": "Mine", "colors": {"accent": "#222222"}})");
    ASSERT_TRUE(waitUntil([&] { return themeColorText(store.current().light.color("accent")) == "#222222"; }))
        << "a file saved in place reloads";
    EXPECT_GT(store.revision(), revision);
    EXPECT_GE(changes, 1);

    // Saved the way many editors do: a new file renamed over the old one.
    write("mine.json.tmp", R"({"name": "Mine", "colors": {"accent": "#333333"}})");
    ASSERT_TRUE(QFile::remove(tree.path("Themes/mine.json").text()));
    ASSERT_TRUE(QFile::rename(tree.path("Themes/mine.json.tmp").text(), tree.path("Themes/mine.json").text()));
    ASSERT_TRUE(waitUntil([&] { return themeColorText(store.current().dark.color("accent")) == "#333333"; }));

    write("other.json", R"({"name": "Other"})");
    ASSERT_TRUE(waitUntil([&] { return names(store).contains("Other"); })) << "a new file shows up";

    write("mine.json", R"({"name": "Mine", "colors": )");
    ASSERT_TRUE(waitUntil([&] { return !store.errors().isEmpty(); })) << "a file saved with a mistake";
    EXPECT_EQ(store.current().name, "Orwick") << "the chosen theme can't be read: Orwick until it is mended";
    EXPECT_EQ(store.selectedName(), "Mine") << "the choice stays";
    const QStringList notices = StoreNotices::takePending();
    ASSERT_EQ(notices.size(), 1);
    EXPECT_TRUE(notices.at(0).startsWith("Theme file mine.json: not valid JSON")) << notices.at(0).toStdString();

    ASSERT_TRUE(QFile::remove(tree.path("Themes/other.json").text()));
    ASSERT_TRUE(waitUntil([&] { return !names(store).contains("Other"); })) << "a removed file goes";
}

TEST_F(ThemeStoreTest, ChoicesAreKeptAndReadBack)
{
    {
        ThemeStore store(folder());
        int changes = 0;
        QObject::connect(&store, &ThemeStore::changed, [&] { ++changes; });
        store.setSelectedName("Dracula");
        store.setAppearanceMode(AppearanceMode::dark);
        store.setAccent(QColor(0x2E, 0x9E, 0x55));
        EXPECT_EQ(changes, 3);
        EXPECT_EQ(store.appearance(), Appearance::dark);
        EXPECT_EQ(themeColorText(store.colors().color("accent")), "#2E9E55");
        EXPECT_EQ(themeColorText(store.colors().color("background")), "#282A36");
    }
    EXPECT_EQ(openSettings()->value("theme").toString(), "Dracula");
    EXPECT_EQ(openSettings()->value("appearanceMode").toString(), "dark");
    EXPECT_EQ(openSettings()->value("accentColor").toString(), "#2E9E55");
    ThemeStore again(folder());
    EXPECT_EQ(again.selectedName(), "Dracula");
    EXPECT_EQ(again.appearanceMode(), AppearanceMode::dark);
    EXPECT_EQ(again.accentOverride(), QColor(0x2E, 0x9E, 0x55));
    again.setAccent(std::nullopt);
    EXPECT_FALSE(openSettings()->contains("accentColor"));
    EXPECT_EQ(themeColorText(again.colors().color("accent")), "#BD93F9") << "the theme's own accent";
    again.setAppearanceMode(AppearanceMode::light);
    EXPECT_EQ(themeColorText(again.colors().color("background")), "#FFFBEB");
}

TEST_F(ThemeStoreTest, DamagedChoicesReadAsTheirDefaults)
{
    openSettings()->setValue("appearanceMode", "sepia");
    openSettings()->setValue("accentColor", "blue");
    openSettings()->setValue("theme", "Gone");
    ThemeStore store(folder());
    EXPECT_EQ(store.appearanceMode(), AppearanceMode::system);
    EXPECT_FALSE(store.accentOverride());
    EXPECT_EQ(store.current().name, "Orwick");
    EXPECT_FALSE(store.resolve("Gone", std::nullopt));
    ASSERT_TRUE(store.resolve("Nord", QColor(Qt::red)));
    EXPECT_EQ(store.resolve("Nord", QColor(Qt::red))->light.color("accent"), QColor(Qt::red));
}

TEST_F(ThemeStoreTest, AThemeMadeForOneAppearanceShowsIt)
{
    write("night.json", R"({"name": "Night", "appearance": "dark", "dark": {"background": "#000000"}})");
    ThemeStore store(folder());
    store.setAppearanceMode(AppearanceMode::light);
    store.setSelectedName("Night");
    EXPECT_EQ(store.appearance(), Appearance::dark);
    EXPECT_EQ(themeColorText(store.colors().color("background")), "#000000");
}

TEST_F(ThemeStoreTest, SyntaxColoursFollowTheAppearance)
{
    write("code.json", R"({"name": "Code", "light": {"keyword": "#AA0000"}, "dark": {"keyword": "#00AA00"}})");
    ThemeStore store(folder());
    store.setSelectedName("Code");
    store.setAppearanceMode(AppearanceMode::light);
    EXPECT_EQ(themeColorText(store.syntaxColor("keyword")), "#AA0000");
    store.setAppearanceMode(AppearanceMode::dark);
    EXPECT_EQ(themeColorText(store.syntaxColor("keyword")), "#00AA00");
    for (const char* key : {"string", "number", "comment", "type", "function", "attribute", "property"})
        EXPECT_TRUE(store.syntaxColor(key).isValid()) << key;
}

} // namespace
