// The link updater behind the engine, on real vault folders: moves, renames and folder moves
// rewrite the notes that link to them as their own "Update Links" step, with the toast; undo
// puts the notes back; notes that can't be changed are skipped and counted; the setting turns it
// off.

#include "FileOpsFixture.h"

#include "app/Settings.h"
#include "fileops/LinkUpdater.h"

#include <sys/xattr.h>
#include <unistd.h>

namespace orwick::test {
namespace {

class LinkUpdaterTest : public FileOpsTest {
protected:
    LinkUpdaterTest()
    {
        LinkUpdater::setEnabled(true);
        QObject::connect(&updater, &LinkUpdater::linksUpdated, [this](LinkUpdateCount count) {
            counts.append(count);
        });
        tree.folder("vault/.obsidian");
    }
    ~LinkUpdaterTest() override { LinkUpdater::setEnabled(true); }

    // Runs `step`, then waits for the engine and the link update that follows it.
    template <class Step>
    void moveAndWait(Step step)
    {
        const qsizetype before = counts.size();
        step();
        ASSERT_TRUE(waitUntil([&] { return counts.size() > before && ops.isIdle(); }, 30000));
    }
    FilePath note(const QString& relative, const QByteArray& text) { return file("vault/" + relative, text); }
    FilePath vault(const QString& relative = {}) const
    {
        return relative.isEmpty() ? tree.path("vault") : tree.path("vault/" + relative);
    }

    LinkUpdater updater{&ops};
    QList<LinkUpdateCount> counts;
};

TEST_F(LinkUpdaterTest, MovingANoteDeeperFixesItsLinksAndTheLinksToIt)
{
    note("a.md", "# A\n");
    const FilePath moving = note("sub/n.md", "Back to [a](../a.md).\n");
    const FilePath index = note("index.md", "See [n](sub/n.md) and [[n]].\n");
    tree.folder("vault/sub/deeper");
    moveAndWait([&] { ops.transfer({moving}, vault("sub/deeper"), FileOperations::Mode::move, &stack); });

    EXPECT_EQ(readAll(vault("sub/deeper/n.md")), "Back to [a](../../a.md).\n");
    EXPECT_EQ(readAll(index), "See [n](sub/deeper/n.md) and [[n]].\n");
    EXPECT_EQ(lastToast(), QStringLiteral("Updated links in 2 notes"));
    ASSERT_EQ(stack.count(), 2);
    EXPECT_EQ(stack.text(0), QStringLiteral("Move"));
    EXPECT_EQ(stack.text(1), QStringLiteral("Update Links"));

    undo(); // the links, on their own
    EXPECT_EQ(readAll(vault("sub/deeper/n.md")), "Back to [a](../a.md).\n");
    EXPECT_EQ(readAll(index), "See [n](sub/n.md) and [[n]].\n");
    EXPECT_TRUE(exists(vault("sub/deeper/n.md")));
    undo(); // the move
    EXPECT_TRUE(exists(moving));
    EXPECT_EQ(readAll(index), "See [n](sub/n.md) and [[n]].\n");
}

TEST_F(LinkUpdaterTest, RenamingANoteRenamesWikilinksKeepingAliasAndAnchor)
{
    const FilePath old = note("Note.md", "text\n");
    const FilePath other = note("deep/other.md", "[[Note|alias]], [[Note#Part]], [n](<../Note.md>), `[[Note]]`\n");
    moveAndWait([&] { ops.rename(old, "New Note.md", &stack); });
    EXPECT_EQ(readAll(other), "[[New Note|alias]], [[New Note#Part]], [n](<../New Note.md>), `[[Note]]`\n");
    EXPECT_EQ(lastToast(), QStringLiteral("Updated links in 1 note"));
}

TEST_F(LinkUpdaterTest, MovingAFolderFixesLinksOutOfItAndKeepsLinksWithinIt)
{
    note("a.md", "A\n");
    const FilePath inside = note("f/n.md", "[s](s.md) [out](../a.md) [web](https://x.org/a.md)\n");
    note("f/s.md", "[n](n.md)\n");
    const FilePath outside = note("index.md", "[n](f/n.md) ![p](f/p.png)\n");
    file("vault/f/p.png", "png");
    tree.folder("vault/x/y");
    moveAndWait([&] { ops.transfer({vault("f")}, vault("x/y"), FileOperations::Mode::move, &stack); });
    EXPECT_EQ(readAll(vault("x/y/f/n.md")), "[s](s.md) [out](../../../a.md) [web](https://x.org/a.md)\n");
    EXPECT_EQ(readAll(vault("x/y/f/s.md")), "[n](n.md)\n");
    EXPECT_EQ(readAll(outside), "[n](x/y/f/n.md) ![p](x/y/f/p.png)\n");
    EXPECT_EQ(counts.last().updated, 2);
    Q_UNUSED(inside);
}

TEST_F(LinkUpdaterTest, MovingAPictureFixesTheImagesShowingIt)
{
    const FilePath picture = file("vault/img/p.png", "png");
    const FilePath shows = note("n.md", "![p](img/p.png \"Photo\")\n");
    tree.folder("vault/pics");
    moveAndWait([&] { ops.transfer({picture}, vault("pics"), FileOperations::Mode::move, &stack); });
    EXPECT_EQ(readAll(shows), "![p](pics/p.png \"Photo\")\n");
}

TEST_F(LinkUpdaterTest, NotesThatCantBeChangedAreSkippedAndCounted)
{
    const FilePath target = note("a.md", "A\n");
    const FilePath fine = note("fine.md", "[a](a.md)\n");
    const FilePath latin1 = note("latin.md", "[a](a.md) caf\xE9\n");
    const FilePath readOnly = note("locked.md", "[a](a.md)\n");
    ::chmod(readOnly.c_str(), 0444);
    QByteArray huge = "[a](a.md)\n";
    huge += QByteArray(LinkUpdater::kLargestNote, 'x');
    const FilePath big = note("big.md", huge);
    moveAndWait([&] { ops.rename(target, "b.md", &stack); });
    EXPECT_EQ(readAll(fine), "[a](b.md)\n");
    EXPECT_EQ(readAll(latin1), "[a](a.md) caf\xE9\n");
    EXPECT_EQ(readAll(readOnly), "[a](a.md)\n");
    EXPECT_TRUE(readAll(big).startsWith("[a](a.md)\n"));
    EXPECT_EQ(counts.last().updated, 1);
    EXPECT_EQ(counts.last().skipped, 3);
    EXPECT_TRUE(errors.isEmpty()) << errors.join(u'\n').toStdString();
}

TEST_F(LinkUpdaterTest, KeepsModeAndAttributesOfRewrittenNotesAndUndoOfTheMoveDoesNotRewriteThemAgain)
{
    const FilePath target = note("a.md", "A\n");
    const FilePath linking = note("n.md", "[a](a.md)\n");
    ::chmod(linking.c_str(), 0640);
    const bool hasAttributes = ::setxattr(linking.c_str(), "user.test", "kept", 4, 0) == 0;
    moveAndWait([&] { ops.rename(target, "b.md", &stack); });
    EXPECT_EQ(readAll(linking), "[a](b.md)\n");
    EXPECT_EQ(statOf(linking).st_mode & 07777, 0640u);
    if (hasAttributes) {
        char value[8] = {};
        EXPECT_EQ(::getxattr(linking.c_str(), "user.test", value, sizeof value), 4);
    }
    // Undo of the move does not rewrite them again.
    const qsizetype updates = counts.size();
    undo();
    undo();
    EXPECT_EQ(readAll(linking), "[a](a.md)\n");
    EXPECT_TRUE(exists(target));
    EXPECT_EQ(counts.size(), updates);
}

TEST_F(LinkUpdaterTest, SettingOffReadsNothing)
{
    LinkUpdater::setEnabled(false);
    EXPECT_FALSE(readSettingsBool(*openSettings(), QStringLiteral("updateLinksOnMove"), true));
    const FilePath target = note("a.md", "A\n");
    const FilePath linking = note("n.md", "[a](a.md)\n");
    moveAndWait([&] { ops.rename(target, "b.md", &stack); });
    EXPECT_EQ(readAll(linking), "[a](a.md)\n");
    EXPECT_EQ(stack.count(), 1);
}

TEST_F(LinkUpdaterTest, CandidatesOutsideAVaultAreTheFoldersBesideTheItem)
{
    const FilePath loose = tree.folder("loose/a/b");
    const FilePath moved = file("loose/a/b/n.md", "N\n");
    file("loose/a/b/beside.md", "");
    file("loose/a/b/c/below.md", "");
    file("loose/a/b/c/d/e/too-deep.md", "");
    file("loose/a/b/dest/x.md", "");
    const FilePath to = loose.child(QByteArrayView("dest/n.md"));
    ASSERT_EQ(::rename(moved.c_str(), to.c_str()), 0);
    const QList<FilePath> found = LinkUpdater::candidates({{moved, to}});
    QStringList names;
    for (const FilePath& path : found)
        names.append(path.fileName());
    names.sort();
    EXPECT_EQ(names, QStringList({"below.md", "beside.md", "n.md", "x.md"}));
}

TEST_F(LinkUpdaterTest, CandidatesOfABatchInOneFolderAreReadOnceAndKeepTheRules)
{
    // Many items renamed in one folder: its notes (by extension, any letter case, hidden ones
    // passed over), the notes one level below it, and the notes inside a renamed folder, hidden
    // or not; pictures and other files are not notes.
    const FilePath folder = tree.folder("loose/a/b");
    QList<FileMove> moves;
    for (int i = 0; i < 50; ++i) {
        const FilePath picture = file(QStringLiteral("loose/a/b/IMG_%1.jpg").arg(i), "");
        const FilePath renamed = folder.child(QStringLiteral("photo-%1.jpg").arg(i));
        ASSERT_EQ(::rename(picture.c_str(), renamed.c_str()), 0);
        moves.append({picture, renamed});
    }
    file("loose/a/b/beside.md", "");
    file("loose/a/b/UPPER.MD", "");
    file("loose/a/b/notes.markdown", "");
    file("loose/a/b/.hidden.md", "");
    file("loose/a/b/readme.txt", "");
    file("loose/a/b/mdx-not-a-note.mdxx", "");
    file("loose/a/b/c/below.md", "");
    file("loose/a/b/c/d/too-deep.md", "");
    file("loose/a/b/.dir/inside-hidden.md", "");
    file("loose/a/b/renamed/inner.md", "");
    moves.append({folder.child(QByteArrayView(".old")), folder.child(QByteArrayView(".dir"))});
    moves.append({folder.child(QByteArrayView("old")), folder.child(QByteArrayView("renamed"))});

    const QList<FilePath> found = LinkUpdater::candidates(moves);
    QStringList names;
    for (const FilePath& path : found)
        names.append(path.fileName());
    EXPECT_EQ(QSet<QString>(names.begin(), names.end()).size(), names.size()) << names.join(u' ').toStdString();
    names.sort();
    EXPECT_EQ(names, QStringList({"UPPER.MD", "below.md", "beside.md", "inner.md", "inside-hidden.md", "notes.markdown"}));
}

} // namespace
} // namespace orwick::test
