// orwick-cli rename updates the links of the notes that point at what it renamed, as a rename in
// the window does, and says how many notes it changed; --no-links and --dry-run leave every note
// as it was.

#include "CliRun.h"
#include "support/TempHome.h"

#include <gtest/gtest.h>

namespace orwick::test {
namespace {

class CliRenameLinksTest : public ::testing::Test {
protected:
    void SetUp() override { tree.folder("vault/.obsidian"); }
    TempTree tree;
};

TEST_F(CliRenameLinksTest, RenameUpdatesLinksAndSaysHowMany)
{
    const FilePath first = tree.file("vault/draft-one.md", "one\n");
    const FilePath second = tree.file("vault/draft-two.md", "two\n");
    const FilePath index = tree.file("vault/index.md", "[1](draft-one.md) [[draft-two|Two]] [web](https://x/draft-one.md)\n");
    const FilePath deeper = tree.file("vault/sub/list.md", "![2](<../draft-two.md#top>) `[1](../draft-one.md)`\n");
    const FilePath untouched = tree.file("vault/other.md", "[o](index.md)\n");
    const CliRun run = runCli({"rename", first.native(), second.native(), "--replace", "draft-", "--with", "final "});
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    const QList<QByteArray> lines = run.outLines();
    ASSERT_GE(lines.size(), 2) << run.out.toStdString();
    EXPECT_EQ(lines[lines.size() - 2], "Renamed 2 items");
    EXPECT_EQ(lines.last(), "Updated links in 2 notes");
    EXPECT_EQ(readAll(index), "[1](final%20one.md) [[final two|Two]] [web](https://x/draft-one.md)\n");
    EXPECT_EQ(readAll(deeper), "![2](<../final two.md#top>) `[1](../draft-one.md)`\n");
    EXPECT_EQ(readAll(untouched), "[o](index.md)\n");
    EXPECT_EQ(readAll(tree.path("vault/final one.md")), "one\n");
}

TEST_F(CliRenameLinksTest, SwappedNamesSwapTheLinks)
{
    tree.file("vault/1-2.md", "first\n");
    tree.file("vault/2-1.md", "second\n");
    const FilePath index = tree.file("vault/index.md", "[first](1-2.md) [second](2-1.md)\n");
    const CliRun run = runCli({"rename", tree.path("vault/1-2.md").native(), tree.path("vault/2-1.md").native(),
                               "--replace", "(\\d)-(\\d)", "--with", "$2-$1", "--regex"});
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_EQ(run.outLines().last(), "Updated links in 1 note");
    EXPECT_EQ(readAll(tree.path("vault/2-1.md")), "first\n");
    EXPECT_EQ(readAll(index), "[first](2-1.md) [second](1-2.md)\n") << "each link follows its own note";
}

TEST_F(CliRenameLinksTest, NoLinksAndDryRunLeaveNotesAlone)
{
    const FilePath note = tree.file("vault/a.md", "A\n");
    const FilePath index = tree.file("vault/index.md", "[a](a.md) [[a]]\n");

    const CliRun dry = runCli({"rename", note.native(), "--add", "x ", "--dry-run"});
    EXPECT_EQ(dry.status, 0) << dry.err.toStdString();
    EXPECT_FALSE(dry.out.contains("Updated links")) << dry.out.toStdString();
    EXPECT_EQ(readAll(index), "[a](a.md) [[a]]\n");

    const CliRun run = runCli({"rename", "--no-links", note.native(), "--add", "x "});
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_EQ(run.outLines().last(), "Renamed 1 item");
    EXPECT_FALSE(run.out.contains("Updated links")) << run.out.toStdString();
    EXPECT_EQ(readAll(index), "[a](a.md) [[a]]\n");
    EXPECT_EQ(readAll(tree.path("vault/x a.md")), "A\n");
}

} // namespace
} // namespace orwick::test
