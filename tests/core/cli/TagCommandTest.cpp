// orwick-cli tag, run as the built program on temporary trees: tags added and removed through
// the engine with other programs' tags kept, items found by tag below folders, and every item
// that can't be tagged said with its reason and counted.

#include "CliRun.h"
#include "platform/Xattr.h"
#include "support/TempHome.h"

#include <gtest/gtest.h>

namespace orwick::test {
namespace {

std::optional<QByteArray> tagsOf(const FilePath& path) { return xattr::get(path, xattr::tags); }

TEST(TagCommand, AddsAndRemovesATagKeepingTheOthers)
{
    TempTree tree;
    const FilePath a = tree.file("a.txt");
    const FilePath b = tree.file("caf\xe9.txt", QByteArray()); // a name that isn't UTF-8
    ASSERT_TRUE(xattr::set(a, xattr::tags, "project-x"));

    CliRun added = runCli({"tag", "add", "red", a.native(), b.native()});
    EXPECT_EQ(added.status, 0) << added.err.toStdString();
    EXPECT_EQ(added.outLines(), QList<QByteArray>{"Added Red to 2 items"});
    EXPECT_EQ(tagsOf(a), QByteArray("project-x,Red"));
    EXPECT_EQ(tagsOf(b), QByteArray("Red"));

    CliRun again = runCli({"tag", "add", "Red", a.native()});
    EXPECT_EQ(again.status, 0);
    EXPECT_EQ(again.outLines(), QList<QByteArray>{"Every item already has Red"});

    CliRun shown = runCli({"tag", "show", a.native(), b.native()});
    EXPECT_EQ(shown.outLines(), (QList<QByteArray>{a.native() + ": project-x, Red", b.native() + ": Red"}));

    CliRun removed = runCli({"tag", "remove", "Red", a.native(), b.native()});
    EXPECT_EQ(removed.status, 0);
    EXPECT_EQ(removed.outLines(), QList<QByteArray>{"Removed Red from 2 items"});
    EXPECT_EQ(tagsOf(a), QByteArray("project-x"));
    EXPECT_EQ(tagsOf(b), std::nullopt);
}

TEST(TagCommand, ListsTheTaggedItemsBelowFolders)
{
    TempTree tree;
    const FilePath top = tree.file("top.txt");
    const FilePath deep = tree.file("one/two/deep.md");
    const FilePath other = tree.file("one/other.md");
    tree.file("one/plain.md");
    ASSERT_TRUE(xattr::set(top, xattr::tags, "Blue"));
    ASSERT_TRUE(xattr::set(deep, xattr::tags, "work, blue"));
    ASSERT_TRUE(xattr::set(other, xattr::tags, "Bluish"));

    CliRun listed = runCli({"tag", "list", "BLUE", tree.root().native()});
    EXPECT_EQ(listed.status, 0) << listed.err.toStdString();
    EXPECT_EQ(listed.outLines(), (QList<QByteArray>{deep.native(), top.native()}));
}

TEST(TagCommand, ItemsThatCantBeTaggedAreSaidAndCounted)
{
    TempTree tree;
    const FilePath file = tree.file("file.txt");
    const FilePath link = tree.link("link", file.native());
    CliRun run = runCli({"tag", "add", "Green", file.native(), link.native(), tree.path("missing").native()});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.outLines(), QList<QByteArray>{"Tagged 1 of 3 items; 2 failed"});
    EXPECT_TRUE(run.err.contains("/missing” isn’t there.")) << run.err.toStdString();
    EXPECT_TRUE(run.err.contains("Couldn’t tag “link”: a link can’t carry tags.")) << run.err.toStdString();
    EXPECT_EQ(tagsOf(file), QByteArray("Green"));
    EXPECT_EQ(runCli({"tag", "add", "Green"}).status, 2) << "a usage error";
}

} // namespace
} // namespace orwick::test
