// The palette's "Go to" rows for the sidebar's Locations: each drive and server the sidebar
// read, with its row's icon, opening its mount point; This Computer and the Trash through their
// own commands only.

#include "commands/CommandCatalog.h"
#include "places/Locations.h"
#include "support/HeadlessWindow.h"
#include "support/ScratchMount.h"

#include <QSet>
#include <gtest/gtest.h>
#include <optional>

using namespace orwick;

namespace {

struct GoToPlacesTest : test::HeadlessWindowTest {
    void SetUp() override { openWindow(tree.root()); }

    // The catalogue's row titled `title`, or null.
    std::optional<AppCommand> row(const QString& title) const
    {
        for (const AppCommand& command : CommandCatalog::all(*window))
            if (command.title == title)
                return command;
        return std::nullopt;
    }

    static bool read(Locations& locations)
    {
        return test::waitUntil([&] { return locations.hasRead(); }, Locations::kReadTimeoutMs + 1000);
    }
};

} // namespace

TEST_F(GoToPlacesTest, EachDriveTheSidebarReadIsARowThatOpensIt)
{
    Locations locations;
    ASSERT_TRUE(read(locations));
    ASSERT_FALSE(locations.drives().isEmpty());
    const Place startup = locations.drives().first(); // "/" on every computer
    const auto command = row(QStringLiteral("Go to ") + startup.name);
    ASSERT_TRUE(command) << "Go to " << startup.name.toStdString();
    EXPECT_EQ(command->symbol, startup.symbol) << "the sidebar row's icon";
    EXPECT_EQ(command->symbol, QStringLiteral("internaldrive"));
    EXPECT_TRUE(command->keywords.contains(QStringLiteral("drive")));
    EXPECT_TRUE(CommandCatalog::goesToPlace(command->id)) << "the palette draws it with the sidebar's icons";
    EXPECT_FALSE(CommandCatalog::goesToPlace(QStringLiteral("thisMac")));
    const AppCommand* found = CommandCatalog::find(command->id);
    ASSERT_TRUE(found);
    EXPECT_TRUE(CommandCatalog::run(*found, *window));
    ASSERT_TRUE(test::waitUntil([&] { return !window->activePane()->isLoading(); }));
    EXPECT_EQ(window->activePane()->url(), startup.url);
}

TEST_F(GoToPlacesTest, WithoutASidebarsReadThereAreNoDriveRows)
{
    {
        Locations locations;
        ASSERT_TRUE(read(locations));
        EXPECT_TRUE(row(QStringLiteral("Go to ") + locations.drives().first().name));
    }
    // Nothing keeps the list up to date now, so the palette offers none rather than an old one.
    for (const AppCommand& command : CommandCatalog::all(*window))
        EXPECT_FALSE(command.id.startsWith(QStringLiteral("goToDrive:"))) << command.id.toStdString();
}

TEST_F(GoToPlacesTest, ThisComputerAndTheTrashAreOneRowEachOpeningTheSidebarsListing)
{
    Locations locations;
    ASSERT_TRUE(read(locations));
    QSet<QString> titles;
    for (const AppCommand& command : CommandCatalog::all(*window)) {
        EXPECT_FALSE(titles.contains(command.title)) << "two rows: " << command.title.toStdString();
        titles.insert(command.title);
    }
    // Their own commands open them, so the family makes no second row.
    EXPECT_FALSE(titles.contains(QStringLiteral("Go to This Computer")));
    EXPECT_FALSE(titles.contains(QStringLiteral("Go to Trash")));
    EXPECT_EQ(CommandCatalog::find("thisMac")->symbol, QStringLiteral("desktopcomputer"));
    EXPECT_EQ(CommandCatalog::find("trashFolder")->symbol, QStringLiteral("trash"));
    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("thisMac"), *window));
    ASSERT_TRUE(window->activePane()->listing());
    EXPECT_EQ(window->activePane()->listing()->kind, Listing::Kind::thisMac);
    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("trashFolder"), *window));
    EXPECT_TRUE(window->activePane()->showsTrash());
}

TEST_F(GoToPlacesTest, AMountedDriveComesAndGoesWithTheSidebarsRead)
{
    const FilePath source = tree.folder("Stick");
    std::optional<test::ScratchMount> stick(std::in_place, source);
    if (!stick->ok())
        GTEST_SKIP() << stick->why().toStdString();
    const FilePath point = stick->root();
    Locations locations;
    ASSERT_TRUE(read(locations));
    const auto drives = locations.drives();
    const auto mounted = std::find_if(drives.cbegin(), drives.cend(), [&](const Place& p) { return p.url == point; });
    if (mounted == drives.cend())
        GTEST_SKIP() << "the temporary folder is on a file system the drive list leaves out, so its bind mount is no drive";
    const QString title = QStringLiteral("Go to ") + mounted->name;
    const auto command = row(title);
    ASSERT_TRUE(command) << title.toStdString();
    EXPECT_EQ(command->symbol, mounted->symbol);
    ASSERT_TRUE(CommandCatalog::run(command->id, *window));
    ASSERT_TRUE(test::waitUntil([&] { return !window->activePane()->isLoading(); }));
    EXPECT_EQ(window->activePane()->url(), point);

    window->activePane()->navigate(tree.root()); // not held open on the drive
    ASSERT_TRUE(test::waitUntil([&] { return !window->activePane()->isLoading(); }));
    stick.reset(); // ejected
    bool changed = false;
    QObject::connect(&locations, &Locations::changed, [&changed] { changed = true; });
    locations.refresh();
    ASSERT_TRUE(test::waitUntil([&] { return changed; }, Locations::kReadTimeoutMs + 1000));
    for (const AppCommand& c : CommandCatalog::all(*window))
        EXPECT_NE(c.id, command->id) << "the ejected drive's row is gone";
}
