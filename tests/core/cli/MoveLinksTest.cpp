// orwick-cli move updates the links of the notes that point at what moved, as the window does,
// and says how many notes it changed; --no-links leaves every note as it was.

#include "CliRun.h"
#include "support/TempHome.h"

#include <gtest/gtest.h>

namespace orwick::test {
namespace {

TEST(CliMoveLinksTest, MoveUpdatesLinksAndSaysHowManyAndNoLinksLeavesNotesAlone)
{
    TempTree tree;
    tree.folder("vault/.obsidian");
    const FilePath note = tree.file("vault/a.md", "A\n");
    const FilePath index = tree.file("vault/index.md", "[a](a.md) [[a]]\n");
    const FilePath other = tree.file("vault/other.md", "[a](./a.md#top)\n");
    const FilePath folder = tree.folder("vault/archive");
    const CliRun run = runCli({"move", note.native(), folder.native()});
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_EQ(run.outLines(), QList<QByteArray>({"Moved a.md", "Updated links in 2 notes"}));
    EXPECT_EQ(readAll(index), "[a](archive/a.md) [[a]]\n");
    EXPECT_EQ(readAll(other), "[a](archive/a.md#top)\n");

    // --no-links leaves the notes alone.
    const FilePath second = tree.file("vault/b.md", "B\n");
    const FilePath list = tree.file("vault/list.md", "[b](b.md)\n");
    const CliRun quiet = runCli({"move", "--no-links", second.native(), folder.native()});
    EXPECT_EQ(quiet.status, 0) << quiet.err.toStdString();
    EXPECT_EQ(quiet.outLines(), QList<QByteArray>({"Moved b.md"}));
    EXPECT_EQ(readAll(list), "[b](b.md)\n");
}

} // namespace
} // namespace orwick::test
