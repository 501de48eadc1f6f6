// Backlinks over a vault of real notes in a temporary folder: found by Markdown links and
// wikilinks (alias and heading too), not by links in code, in hidden folders or in
// node_modules; a note that isn't UTF-8 is skipped without harm; and the table follows a target
// that moves (with the link updater's rewrite) or is renamed without one, and a linking note
// that is deleted.

#include "fileops/LinkUpdater.h"
#include "notes/BacklinkTable.h"
#include "support/TempHome.h"

#include <gtest/gtest.h>
#include <unistd.h>

using namespace orwick;

namespace {

class BacklinkTableTest : public testing::Test {
protected:
    BacklinkTableTest()
    {
        tree.folder(".obsidian");
        target = tree.file("Projects/Target.md", "# Target\n\n## Heading\n");
        a = tree.file("a.md", "Intro\n\nSee [the target](Projects/Target.md#heading) for more.\n");
        b = tree.file("Journal/b.md", "- met about [[Target#Heading|it]]\n- then [[target]] again [[Target]]\n");
        tree.file("c.md", "```\n[[Target]]\n```\nand `[t](Projects/Target.md)`\n");
        bad = tree.file(QByteArray("bad\xff.md"), QByteArray("[[Target]] \xff\xfe\n"));
        tree.file(".obsidian/templates/t.md", "[[Target]]\n");
        tree.file("node_modules/pkg/README.md", "[[Target]]\n");
        tree.file("Projects/self.md", "[[self]] and [Target](Target.md)\n");
    }
    // QTemporaryDir can't remove a name that isn't UTF-8.
    ~BacklinkTableTest() override { ::unlink(bad.c_str()); }
    BacklinkTable build()
    {
        std::optional<BacklinkTable> table = BacklinkTable::build(tree.root());
        EXPECT_TRUE(table.has_value());
        return table ? std::move(*table) : BacklinkTable();
    }
    static QList<QString> places(const QList<Backlink>& links)
    {
        QList<QString> out;
        for (const Backlink& link : links)
            out.append(link.note.fileName() + u':' + QString::number(link.line));
        return out;
    }

    test::TempTree tree;
    FilePath target, a, b, bad;
};

TEST_F(BacklinkTableTest, FindsMarkdownLinksAndWikilinksOutsideCode)
{
    const BacklinkTable table = build();
    EXPECT_EQ(table.noteCount(), 6); // the hidden folder's and the package's notes are not among them
    EXPECT_EQ(table.skipped(), 1);   // not UTF-8: a note, without links
    const QList<Backlink> links = table.backlinksOf(target);
    // In path order: "Journal/b.md", "Projects/self.md", "a.md".
    EXPECT_EQ(places(links), (QList<QString>{"b.md:1", "b.md:2", "self.md:1", "a.md:3"}));
    ASSERT_EQ(links.size(), 4);
    EXPECT_EQ(links[3].text, "See [the target](Projects/Target.md#heading) for more.");
    EXPECT_EQ(links[1].text, "- then [[target]] again [[Target]]"); // two links, one line, once
    EXPECT_EQ(table.linkingNoteCount(target), 3);
    EXPECT_TRUE(table.backlinksOf(tree.path("Projects/self.md")).isEmpty()); // a link to itself isn't a backlink
    EXPECT_TRUE(table.hasNote(bad));
}

TEST_F(BacklinkTableTest, FollowsATargetMovedWithItsLinksRewritten)
{
    BacklinkTable table = build();
    const FilePath moved = tree.path("Archive/Target.md");
    tree.folder("Archive");
    ASSERT_EQ(::rename(target.c_str(), moved.c_str()), 0);
    const QList<FileMove> moves{{target, moved}};
    const std::optional<QByteArray> rewritten = LinkUpdater::rewriteBytes(test::readAll(a), a, a, moves, tree.root());
    ASSERT_TRUE(rewritten.has_value());
    ASSERT_TRUE(test::writeFile(a, *rewritten));

    table.remove(target);
    table.setNote(moved, BacklinkTable::readLinks(moved));
    table.setNote(a, BacklinkTable::readLinks(a));
    EXPECT_EQ(places(table.backlinksOf(moved)), (QList<QString>{"b.md:1", "b.md:2", "a.md:3"})); // wikilinks by name still reach it
    // Only the link the updater didn't rewrite still names the old place.
    EXPECT_EQ(places(table.backlinksOf(target)), QList<QString>{"self.md:1"});
}

TEST_F(BacklinkTableTest, ARenamedTargetLosesLinksThatNameTheOldName)
{
    BacklinkTable table = build();
    const FilePath renamed = tree.path("Projects/Goal.md");
    ASSERT_EQ(::rename(target.c_str(), renamed.c_str()), 0);
    table.remove(target);
    table.setNote(renamed, BacklinkTable::readLinks(renamed));
    EXPECT_TRUE(table.backlinksOf(renamed).isEmpty());
    // A new note that takes the old name gets the old name's links.
    const FilePath again = tree.file("Target.md", "new\n");
    table.setNote(again, BacklinkTable::readLinks(again));
    EXPECT_EQ(places(table.backlinksOf(again)), (QList<QString>{"b.md:1", "b.md:2"}));
}

TEST_F(BacklinkTableTest, ADeletedOrChangedNoteTakesItsLinksAlong)
{
    BacklinkTable table = build();
    ASSERT_EQ(::unlink(a.c_str()), 0);
    table.remove(a);
    ASSERT_TRUE(test::writeFile(b, "nothing now\n"));
    table.setNote(b, BacklinkTable::readLinks(b));
    EXPECT_EQ(places(table.backlinksOf(target)), QList<QString>{"self.md:1"});
    table.remove(tree.path("Projects")); // a folder that went takes its notes along
    EXPECT_FALSE(table.hasNote(target));
    EXPECT_EQ(table.noteCount(), 3);
}

TEST_F(BacklinkTableTest, ACancelledBuildGivesNothing)
{
    CancelFlag cancel;
    cancel.cancel();
    EXPECT_FALSE(BacklinkTable::build(tree.root(), &cancel).has_value());
}

} // namespace
