// orwick-cli shelf, run as the built program: it changes the same shelf.json the window reads,
// keeps each item once, keeps names that are not UTF-8, and says which items it couldn't add.

#include "CliRun.h"
#include "places/Shelf.h"
#include "support/TempHome.h"

#include <gtest/gtest.h>

namespace orwick::test {
namespace {

TEST(ShelfCommand, AddsListsRemovesAndClearsTheWindowsShelf)
{
    TempTree tree;
    const FilePath a = tree.file("a.txt", "a");
    const FilePath odd = tree.file(QByteArray("caf\xe9.txt"), "x"); // a name that isn't UTF-8
    ASSERT_EQ(runCli({"shelf", "clear"}).status, 0);

    CliRun added = runCli({"shelf", "add", a.native(), odd.native()});
    EXPECT_EQ(added.status, 0) << added.err.toStdString();
    EXPECT_EQ(added.outLines(), QList<QByteArray>{"Added 2 items to the shelf"});
    CliRun again = runCli({"shelf", "add", a.native()});
    EXPECT_EQ(again.outLines(), QList<QByteArray>{"“a.txt” is on the shelf already"});

    EXPECT_EQ(runCli({"shelf"}).outLines(), (QList<QByteArray>{a.native(), odd.native()}));
    // The window's store reads what the command wrote.
    EXPECT_EQ(Shelf(Shelf::defaultFile()).items(), (QList<FilePath>{a, odd}));

    CliRun removed = runCli({"shelf", "remove", a.native()});
    EXPECT_EQ(removed.outLines(), QList<QByteArray>{"Took 1 item off the shelf"});
    EXPECT_TRUE(exists(a));
    EXPECT_EQ(runCli({"shelf"}).outLines(), QList<QByteArray>{odd.native()});

    CliRun cleared = runCli({"shelf", "clear"});
    EXPECT_EQ(cleared.outLines(), QList<QByteArray>{"Cleared the shelf (1 item)"});
    EXPECT_TRUE(runCli({"shelf"}).out.isEmpty());
}

TEST(ShelfCommand, AnItemThatIsntThereIsSaidAndNotAdded)
{
    TempTree tree;
    const FilePath a = tree.file("a.txt", "a");
    ASSERT_EQ(runCli({"shelf", "clear"}).status, 0);
    CliRun added = runCli({"shelf", "add", a.native(), tree.path("missing.txt").native()});
    EXPECT_EQ(added.status, 1);
    EXPECT_TRUE(added.err.contains("missing.txt")) << added.err.toStdString();
    EXPECT_EQ(added.outLines(), QList<QByteArray>{"Added “a.txt” to the shelf"});
    EXPECT_EQ(runCli({"shelf"}).outLines(), QList<QByteArray>{a.native()});
    EXPECT_EQ(runCli({"shelf", "frobnicate"}).status, 2);
    ASSERT_EQ(runCli({"shelf", "clear"}).status, 0);
}

TEST(ShelfCommand, ADamagedShelfFileIsSaidAndKeptAside)
{
    ASSERT_TRUE(writeFile(Shelf::defaultFile(), "{not json"));
    CliRun listed = runCli({"shelf"});
    EXPECT_EQ(listed.status, 0);
    EXPECT_TRUE(listed.out.isEmpty());
    EXPECT_TRUE(listed.err.contains("shelf")) << listed.err.toStdString();
    EXPECT_EQ(readAll(Shelf::defaultFile().parent().child(QStringLiteral("shelf.damaged.json"))), "{not json");
}

} // namespace
} // namespace orwick::test
