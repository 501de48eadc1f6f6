// Symbolic links made by the engine: one job and one undo step, names made unique, and an undo
// that removes exactly the links it made — never something put in their place.

#include "FileOpsFixture.h"

#include "platform/DirectoryReader.h"

#include <fcntl.h>
#include <unistd.h>

namespace orwick::test {
namespace {

QByteArray linkTarget(const FilePath& link) { return readLinkAt(AT_FDCWD, link.c_str()).value_or(QByteArray()); }

TEST_F(FileOpsTest, MakeLinksPointsAtEachItemAndUndoRemovesThem)
{
    const FilePath report = file("docs/report.pdf", "pdf");
    const FilePath photos = tree.folder("docs/Photos");
    const FilePath dest = tree.folder("dest");
    QStringList titles;
    QObject::connect(&ops, &FileOperations::jobsChanged, [&] {
        for (const FileJob& job : ops.jobs())
            titles.append(job.title);
    });

    ops.makeLinks({report, photos}, dest, &stack);
    settle();

    EXPECT_EQ(titles, QStringList{QStringLiteral("Linking 2 items")});
    EXPECT_EQ(linkTarget(dest.child(QStringLiteral("report.pdf"))), report.native());
    EXPECT_EQ(linkTarget(dest.child(QStringLiteral("Photos"))), photos.native());
    EXPECT_EQ(lastToast(), QStringLiteral("Linked 2 items"));
    EXPECT_EQ(toasts.last().icon, QStringLiteral("link"));
    EXPECT_EQ(stack.count(), 1);
    EXPECT_EQ(stack.undoText(), QStringLiteral("Make Links"));

    undo();
    EXPECT_EQ(names(dest), QList<QByteArray>{});
    EXPECT_EQ(readAll(report), "pdf") << "the items themselves are untouched";
    EXPECT_TRUE(exists(photos));
    EXPECT_TRUE(errors.isEmpty()) << errors.join(' ').toStdString();

    redo();
    EXPECT_EQ(linkTarget(dest.child(QStringLiteral("report.pdf"))), report.native());
    EXPECT_EQ(linkTarget(dest.child(QStringLiteral("Photos"))), photos.native());
}

TEST_F(FileOpsTest, ALinkWhoseNameIsTakenGetsTheNextFreeName)
{
    const FilePath notes = file("notes.txt", "mine");
    ops.makeLinks({notes}, notes.parent(), &stack);
    settle();
    const FilePath link = tree.path("notes 2.txt");
    EXPECT_EQ(linkTarget(link), notes.native());
    EXPECT_EQ(readAll(notes), "mine");
    EXPECT_EQ(lastToast(), QStringLiteral("Linked notes.txt"));
    EXPECT_EQ(stack.undoText(), QStringLiteral("Make Link"));
    undo();
    EXPECT_FALSE(exists(link));
    EXPECT_EQ(readAll(notes), "mine");
}

TEST_F(FileOpsTest, UndoLeavesWhatWasPutInPlaceOfALink)
{
    const FilePath a = file("a.txt", "a");
    const FilePath b = file("b.txt", "b");
    const FilePath c = file("c.txt", "c");
    const FilePath dest = tree.folder("dest");
    ops.makeLinks({a, b, c}, dest, &stack);
    settle();
    // The user repoints one link and puts a file of their own in place of another.
    const FilePath linkA = dest.child(QStringLiteral("a.txt"));
    const FilePath linkB = dest.child(QStringLiteral("b.txt"));
    ASSERT_EQ(unlink(linkA.c_str()), 0);
    ASSERT_EQ(symlink("/elsewhere", linkA.c_str()), 0);
    ASSERT_EQ(unlink(linkB.c_str()), 0);
    file("dest/b.txt", "the user's own");

    undo();
    EXPECT_EQ(linkTarget(linkA), "/elsewhere");
    EXPECT_EQ(readAll(linkB), "the user's own");
    EXPECT_FALSE(exists(dest.child(QStringLiteral("c.txt")))) << "the untouched link goes";
    EXPECT_EQ(names(dest), (QList<QByteArray>{"a.txt", "b.txt"})) << "nothing left aside";
    EXPECT_EQ(errors, (QStringList{QStringLiteral("Couldn’t remove the link “b.txt”: it is no longer a link."),
                                   QStringLiteral("Couldn’t remove the link “a.txt”: it was changed after it was made.")}));
}

TEST_F(FileOpsTest, LinkingAnItemThatIsGoneSkipsIt)
{
    const FilePath a = file("a.txt", "a");
    const FilePath dest = tree.folder("dest");
    ops.makeLinks({a, tree.path("gone.txt")}, dest, &stack);
    settle();
    EXPECT_EQ(names(dest), QList<QByteArray>{"a.txt"});
    ASSERT_EQ(reports.size(), 1);
    EXPECT_EQ(reports.first().skipped, 1);
    EXPECT_TRUE(reports.first().canUndo);
}

TEST_F(FileOpsTest, ALinkThatCannotBeMadeSaysWhy)
{
    const FilePath a = file("a.txt", "a");
    ops.makeLinks({a}, tree.path("removed meanwhile"), &stack);
    settle();
    ASSERT_EQ(errors.size(), 1);
    EXPECT_TRUE(errors.first().startsWith(QStringLiteral("Couldn’t make a link to “a.txt”: "))) << errors.first().toStdString();
    EXPECT_EQ(stack.count(), 0);
}

} // namespace
} // namespace orwick::test
