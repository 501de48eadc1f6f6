// Copy, move and duplicate through FileOperations: what lands where, what undo and redo restore,
// and the conflict question.

#include "FileOpsFixture.h"

#include "fileops/UniqueName.h"
#include "platform/Xattr.h"

#include <sys/xattr.h>

namespace orwick::test {
namespace {

using Choice = FileOperations::ConflictChoice;

TEST_F(FileOpsTest, CopyKeepsTimesPermissionsLinksAndAttributes)
{
    const FilePath notes = file("src/Project/notes.txt", "hello");
    tree.link("src/Project/latest", "notes.txt");
    file("src/Project/sub/deep.bin", QByteArray(300000, 'x'));
    chmod(notes.c_str(), 0640);
    tree.touch(notes, 1000000000);
    setxattr(notes.c_str(), "user.xdg.tags", "Red", 3, 0);
    chmod(tree.path("src/Project/sub").c_str(), 0555);
    const FilePath dest = tree.folder("dest");

    ops.transfer({tree.path("src/Project")}, dest, FileOperations::Mode::copy, &stack);
    settle();

    const FilePath copy = dest.child(QStringLiteral("Project"));
    EXPECT_EQ(readAll(copy.child(QStringLiteral("notes.txt"))), "hello");
    EXPECT_EQ(statOf(copy.child(QStringLiteral("notes.txt"))).st_mtime, 1000000000);
    EXPECT_EQ(statOf(copy.child(QStringLiteral("notes.txt"))).st_mode & 07777, 0640u);
    EXPECT_EQ(statOf(copy.child(QStringLiteral("sub"))).st_mode & 07777, 0555u);
    EXPECT_TRUE(S_ISLNK(statOf(copy.child(QStringLiteral("latest"))).st_mode));
    char tag[16] = {};
    EXPECT_EQ(getxattr(copy.child(QStringLiteral("notes.txt")).c_str(), "user.xdg.tags", tag, sizeof tag), 3);
    EXPECT_EQ(readAll(copy.child(QStringLiteral("sub/deep.bin"))).size(), 300000);
    EXPECT_EQ(names(dest), QList<QByteArray>{"Project"}); // no temporary left
    EXPECT_EQ(lastToast(), QStringLiteral("Copied Project"));
    EXPECT_EQ(stack.undoText(), QStringLiteral("Copy"));

    undo();
    EXPECT_FALSE(exists(copy));
    EXPECT_TRUE(exists(homeTrashFiles().child(QStringLiteral("Project"))));
    EXPECT_TRUE(exists(notes)); // the original is untouched
    redo();
    EXPECT_EQ(readAll(copy.child(QStringLiteral("notes.txt"))), "hello");
    EXPECT_FALSE(exists(homeTrashFiles().child(QStringLiteral("Project"))));
    chmod(tree.path("src/Project/sub").c_str(), 0755);
    chmod(copy.child(QStringLiteral("sub")).c_str(), 0755);
}

TEST_F(FileOpsTest, CopyOfSeveralItemsCountsThemInTitleAndToast)
{
    const FilePath a = file("a.txt", "a");
    const FilePath b = file("b.txt", "b");
    const FilePath dest = tree.folder("dest");
    QStringList titles;
    QObject::connect(&ops, &FileOperations::jobsChanged, [&] {
        for (const FileJob& job : ops.jobs())
            titles.append(job.title);
    });
    ops.transfer({a, b}, dest, FileOperations::Mode::copy, &stack);
    settle();
    EXPECT_EQ(titles.value(0), QStringLiteral("Copying 2 items"));
    EXPECT_EQ(lastToast(), QStringLiteral("Copied 2 items"));
    EXPECT_EQ(toasts.last().icon, QStringLiteral("doc.on.doc"));

    titles.clear();
    ops.transfer({a}, tree.folder("one"), FileOperations::Mode::move, &stack);
    settle();
    EXPECT_EQ(titles.value(0), QStringLiteral("Moving 1 item")) << "one is not \"1 items\"";
}

TEST_F(FileOpsTest, FolderCannotGoInsideItself)
{
    const FilePath folder = tree.folder("x");
    file("x/inner/file", "1");
    ops.transfer({folder}, folder.child(QStringLiteral("inner")), FileOperations::Mode::copy, &stack);
    ops.transfer({folder}, folder, FileOperations::Mode::move, &stack);
    settle();
    EXPECT_EQ(errors, QStringList({QStringLiteral("“x” can't be put inside itself."), QStringLiteral("“x” can't be put inside itself.")}));
    EXPECT_EQ(names(folder.child(QStringLiteral("inner"))), QList<QByteArray>{"file"});
    EXPECT_EQ(stack.count(), 0);
}

TEST_F(FileOpsTest, MoveOnOneVolumeRenamesAndUndoMovesBack)
{
    const FilePath folder = tree.folder("a/Photos");
    file("a/Photos/1.jpg", "jpg");
    const ino_t inode = statOf(folder).st_ino;
    const FilePath dest = tree.folder("b");

    ops.transfer({folder}, dest, FileOperations::Mode::move, &stack);
    settle();
    const FilePath moved = dest.child(QStringLiteral("Photos"));
    EXPECT_EQ(statOf(moved).st_ino, inode); // a rename, not a copy
    EXPECT_FALSE(exists(folder));
    EXPECT_EQ(lastToast(), QStringLiteral("Moved Photos"));
    EXPECT_EQ(toasts.last().icon, QStringLiteral("arrow.right.doc.on.clipboard"));
    ASSERT_EQ(moves.size(), 1);
    EXPECT_EQ(moves.first(), (FileMove{folder, moved}));

    undo();
    EXPECT_EQ(statOf(folder).st_ino, inode);
    EXPECT_FALSE(exists(moved));
    EXPECT_EQ(moves.last(), (FileMove{moved, folder})); // undo reports its move too
    redo();
    EXPECT_TRUE(exists(moved.child(QStringLiteral("1.jpg"))));
}

TEST_F(FileOpsTest, MoveAcrossVolumesCopiesThenRemovesTheSource)
{
    QTemporaryDir shm(QStringLiteral("/dev/shm/orwick-test-XXXXXX"));
    ASSERT_TRUE(shm.isValid());
    const FilePath source = FilePath::fromText(shm.path()).child(QStringLiteral("Album"));
    mkdir(source.c_str(), 0750);
    const FilePath song = source.child(QStringLiteral("song.mp3"));
    ASSERT_TRUE(writeFile(song, QByteArray(2 << 20, 's')));
    tree.touch(song, 1500000000);
    const FilePath dest = tree.folder("music");
    ASSERT_FALSE(isSameVolume(source, dest)) << "needs /dev/shm on another file system";

    ops.transfer({source}, dest, FileOperations::Mode::move, &stack);
    settle();
    const FilePath moved = dest.child(QStringLiteral("Album/song.mp3"));
    EXPECT_EQ(readAll(moved), QByteArray(2 << 20, 's'));
    EXPECT_EQ(statOf(moved).st_mtime, 1500000000);
    EXPECT_EQ(statOf(moved.parent()).st_mode & 07777, 0750u);
    EXPECT_FALSE(exists(source));
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();

    undo();
    EXPECT_EQ(readAll(song), QByteArray(2 << 20, 's'));
    EXPECT_FALSE(exists(moved.parent()));
}

TEST_F(FileOpsTest, DuplicateNamesCopiesAfterTheOriginal)
{
    const FilePath a = file("a.txt", "1");
    const FilePath bare = file("a", "2");
    ops.duplicate({a, bare}, &stack);
    settle();
    ops.duplicate({a}, &stack);
    settle();
    EXPECT_EQ(names(tree.root()), (QList<QByteArray>{"a", "a copy", "a copy 2.txt", "a copy.txt", "a.txt"}));
    EXPECT_EQ(lastToast(), QStringLiteral("Duplicated a.txt"));
    EXPECT_EQ(toasts.first().text, QStringLiteral("Duplicated 2 items"));
    EXPECT_EQ(toasts.last().icon, QStringLiteral("plus.square.on.square"));
    EXPECT_EQ(stack.undoText(), QStringLiteral("Duplicate"));
    undo();
    EXPECT_FALSE(exists(tree.path("a copy 2.txt")));
    EXPECT_TRUE(exists(tree.path("a copy.txt")));
}

TEST_F(FileOpsTest, UniqueNamesFollowTheCountingRule)
{
    const FilePath wanted = tree.path("photo.jpg");
    EXPECT_EQ(uniqueURL(wanted, false), wanted);
    EXPECT_EQ(uniqueURL(wanted, true).fileName(), QStringLiteral("photo copy.jpg"));
    file("photo.jpg", "");
    tree.link("photo 2.jpg", "nowhere"); // a dangling link takes its name too
    EXPECT_EQ(uniqueURL(wanted, false).fileName(), QStringLiteral("photo 3.jpg"));
    file("photo copy.jpg", "");
    EXPECT_EQ(uniqueURL(wanted, true).fileName(), QStringLiteral("photo copy 2.jpg"));
    file("archive.tar.gz", "");
    EXPECT_EQ(uniqueURL(tree.path("archive.tar.gz"), false).fileName(), QStringLiteral("archive.tar 2.gz"));
    file(".bashrc", "");
    EXPECT_EQ(uniqueURL(tree.path(".bashrc"), false).fileName(), QStringLiteral(".bashrc 2"));
}

class ConflictTest : public FileOpsTest {
protected:
    void SetUp() override
    {
        docs = tree.folder("Docs");
        oldA = file("Docs/a.txt", "old a");
        oldB = file("Docs/b.txt", "old b");
        newA = file("in/a.txt", "new a");
        newB = file("in/b.txt", "new b");
        ops.setResolveConflicts([this](const FileOperations::ConflictQuestion& question, FileOperations::ConflictAnswer answer) {
            questions.append(question);
            if (beforeAnswer)
                beforeAnswer();
            answer(choice);
        });
    }
    FilePath docs, oldA, oldB, newA, newB;
    Choice choice = Choice::keepBoth;
    std::function<void()> beforeAnswer;
    QList<FileOperations::ConflictQuestion> questions;
};

TEST_F(ConflictTest, AsksOnceForTheWholeOperation)
{
    ops.transfer({newA}, docs, FileOperations::Mode::copy, &stack);
    settle();
    ops.transfer({newA, newB, file("in/c.txt", "c")}, docs, FileOperations::Mode::copy, &stack);
    settle();
    ASSERT_EQ(questions.size(), 2);
    EXPECT_EQ(questions[0].title, QStringLiteral("“a.txt” is already in “Docs”"));
    EXPECT_EQ(questions[0].message, QStringLiteral("Replacing moves the ones there now to the Trash."));
    EXPECT_EQ(questions[1].title, QStringLiteral("2 items are already in “Docs”"));
    EXPECT_EQ(questions[1].collisions.size(), 2);
}

TEST_F(ConflictTest, ReplaceTrashesTheOldOnesAndUndoPutsThemBack)
{
    choice = Choice::replace;
    ops.transfer({newA, newB}, docs, FileOperations::Mode::move, &stack);
    settle();
    EXPECT_EQ(readAll(oldA), "new a");
    EXPECT_EQ(readAll(homeTrashFiles().child(QStringLiteral("a.txt"))), "old a");
    EXPECT_TRUE(ops.trashLog().formerPath(homeTrashFiles().child(QStringLiteral("a.txt"))).has_value());
    undo();
    EXPECT_EQ(readAll(oldA), "old a");
    EXPECT_EQ(readAll(oldB), "old b");
    EXPECT_EQ(readAll(newA), "new a");
    EXPECT_FALSE(exists(homeTrashFiles().child(QStringLiteral("a.txt"))));
}

TEST_F(ConflictTest, SkipAndCancel)
{
    choice = Choice::skip;
    ops.transfer({newA, file("in/c.txt", "c")}, docs, FileOperations::Mode::copy, &stack);
    settle();
    EXPECT_EQ(readAll(oldA), "old a");
    EXPECT_TRUE(exists(docs.child(QStringLiteral("c.txt"))));
    choice = Choice::cancel;
    ops.transfer({newB, file("in/d.txt", "d")}, docs, FileOperations::Mode::copy, &stack);
    settle();
    EXPECT_FALSE(exists(docs.child(QStringLiteral("d.txt"))));
    EXPECT_EQ(stack.count(), 1);
}

// Keep both (the default answer here) numbers the new ones.
TEST_F(ConflictTest, SourceThatVanishedBeforeItsTurnIsSkipped)
{
    const FilePath gone = file("in/gone.txt", "g");
    beforeAnswer = [&] { unlink(gone.c_str()); };
    ops.transfer({newA, gone, newB}, docs, FileOperations::Mode::move, &stack);
    settle();
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
    EXPECT_EQ(readAll(docs.child(QStringLiteral("a 2.txt"))), "new a");
    EXPECT_EQ(readAll(docs.child(QStringLiteral("b 2.txt"))), "new b");
    EXPECT_EQ(readAll(oldA), "old a");
    EXPECT_TRUE(toasts.isEmpty()); // not a plain success: the skipped item is said
    ASSERT_EQ(reports.size(), 1);
    EXPECT_EQ(outcomeText(reports.first()), QStringLiteral("Moved 2 items; 1 item was no longer there"));
}

TEST_F(ConflictTest, TheCallerHearsWhatAMoveReallyMovedAndWhatItsUndoAndRedoMove)
{
    choice = Choice::skip;
    const FilePath c = file("in/c.txt", "c"), gone = file("in/gone.txt", "g");
    beforeAnswer = [&] { unlink(gone.c_str()); };
    QList<QList<FileMove>> heard;
    ops.transfer({newA, gone, c}, docs, FileOperations::Mode::move, &stack, {},
                 [&](const QList<FileMove>& moved) { heard.append(moved); });
    settle();
    const FilePath landed = docs.child(QStringLiteral("c.txt"));
    // a.txt was answered Skip and gone.txt was no longer there: neither moved.
    ASSERT_EQ(heard.size(), 1);
    EXPECT_EQ(heard.last(), QList<FileMove>{(FileMove{c, landed})});
    EXPECT_EQ(readAll(newA), "new a");

    undo();
    ASSERT_EQ(heard.size(), 2);
    EXPECT_EQ(heard.last(), QList<FileMove>{(FileMove{landed, c})});
    redo();
    ASSERT_EQ(heard.size(), 3);
    EXPECT_EQ(heard.last(), QList<FileMove>{(FileMove{c, landed})});

    // A copy moves nothing.
    ops.transfer({file("in/d.txt", "d")}, docs, FileOperations::Mode::copy, &stack, {},
                 [&](const QList<FileMove>& moved) { heard.append(moved); });
    settle();
    ASSERT_EQ(heard.size(), 4);
    EXPECT_TRUE(heard.last().isEmpty());
}

TEST_F(FileOpsTest, CopyIntoItsOwnFolderMakesACopy)
{
    const FilePath a = file("a.txt", "a");
    ops.transfer({a}, tree.root(), FileOperations::Mode::copy, &stack);
    ops.transfer({a}, tree.root(), FileOperations::Mode::move, &stack);
    settle();
    EXPECT_EQ(names(tree.root()), (QList<QByteArray>{"a copy.txt", "a.txt"}));
}

} // namespace
} // namespace orwick::test
