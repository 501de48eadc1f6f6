// Undo of what an operation made (a new file or folder, a new note, a duplicate, an archive)
// moves it to the Trash only while it is as it was made: one the user wrote into or filled
// since is left where it is, with its bytes, and the report says so; redo stays right either way.

#include "FileOpsFixture.h"

#include "fileops/MadeState.h"

#include <QFileInfo>

#include <fcntl.h>
#include <unistd.h>

namespace orwick::test {
namespace {

const QString kLeftNewFile =
    QStringLiteral("Couldn’t move “notes.txt” to the Trash: it was changed after it was made, so it was left as it is.");

// Writes `bytes` into the file in place, as an editor that keeps the file would.
void writeInto(const FilePath& path, const QByteArray& bytes)
{
    const int fd = ::open(path.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(::write(fd, bytes.constData(), size_t(bytes.size())), ssize_t(bytes.size()));
    ::close(fd);
}

TEST_F(FileOpsTest, UndoOfANewFileWrittenIntoSinceLeavesItAndSaysWhy)
{
    ops.newFile(tree.root(), "notes.txt", &stack);
    settle();
    const FilePath made = tree.path("notes.txt");
    ASSERT_TRUE(exists(made));
    writeInto(made, "my own words");
    undo();
    EXPECT_EQ(readAll(made), "my own words");
    EXPECT_EQ(errors, QStringList{kLeftNewFile});
    EXPECT_FALSE(exists(homeTrashFiles().child(QStringLiteral("notes.txt"))));
    // Redo has nothing to bring back and makes no second file; undo still leaves it.
    errors.clear();
    redo();
    EXPECT_EQ(names(tree.root()), QList<QByteArray>{"notes.txt"});
    EXPECT_EQ(readAll(made), "my own words");
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
    undo();
    EXPECT_EQ(readAll(made), "my own words");
    EXPECT_EQ(errors, QStringList{kLeftNewFile});
}

TEST_F(FileOpsTest, UndoOfAnUntouchedNewFileTrashesItAndRedoBringsItBack)
{
    ops.newFile(tree.root(), "notes.txt", &stack);
    settle();
    const FilePath made = tree.path("notes.txt");
    undo();
    EXPECT_FALSE(exists(made));
    EXPECT_TRUE(exists(homeTrashFiles().child(QStringLiteral("notes.txt"))));
    redo();
    EXPECT_TRUE(exists(made));
    EXPECT_EQ(readAll(made), "");
    // After redo the file is the made one again: untouched, undo takes it; written, it stays.
    undo();
    EXPECT_FALSE(exists(made));
    redo();
    writeInto(made, "later");
    undo();
    EXPECT_EQ(readAll(made), "later");
    EXPECT_EQ(errors, QStringList{kLeftNewFile});
}

TEST_F(FileOpsTest, UndoOfANewNoteSavedThroughANewFileWithTheSameBytesTrashesIt)
{
    const FilePath note = tree.path("day.md");
    ops.createFile(note, "# Day\n", QStringLiteral("Today's Note"), &stack);
    settle();
    // An editor that saves by writing a new file and renaming it over: another inode and time,
    // the same contents.
    file("day.md.saving", "# Day\n");
    ASSERT_EQ(::rename(tree.path("day.md.saving").c_str(), note.c_str()), 0);
    undo();
    EXPECT_FALSE(exists(note));
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
}

TEST_F(FileOpsTest, UndoOfANewNoteEditedSinceKeepsTheEdits)
{
    const FilePath note = tree.path("Journal/day.md");
    ops.createFile(note, "# Day\n", QStringLiteral("Today's Note"), &stack);
    settle();
    writeInto(note, "# Day\nWent for a walk.\n");
    undo();
    EXPECT_EQ(readAll(note), "# Day\nWent for a walk.\n");
    EXPECT_EQ(errors, QStringList{QStringLiteral(
                          "Couldn’t move “day.md” to the Trash: it was changed after it was made, so it was left as it is.")});
}

TEST_F(FileOpsTest, UndoOfANewFolderTrashesItWhileEmptyAndLeavesItOnceFilled)
{
    QList<FilePath> made;
    ops.newFolder(tree.root(), &stack, [&](const FilePath& path) { made.append(path); });
    settle();
    ASSERT_EQ(made.size(), 1);
    undo();
    EXPECT_FALSE(exists(made[0]));
    redo();
    ASSERT_TRUE(exists(made[0]));
    file("untitled folder/plan.txt", "plan");
    undo();
    EXPECT_EQ(readAll(tree.path("untitled folder/plan.txt")), "plan");
    EXPECT_EQ(errors, QStringList{QStringLiteral("Couldn’t move “untitled folder” to the Trash: it was changed after it "
                                                 "was made, so it was left as it is.")});
}

TEST_F(FileOpsTest, UndoOfADuplicateLeavesOneEditedInsideAndTrashesOneUntouched)
{
    file("Project/a.txt", "a");
    file("Project/sub/b.txt", "b");
    file("letter.txt", "dear");
    ops.duplicate({tree.path("Project"), tree.path("letter.txt")}, &stack);
    settle();
    ASSERT_TRUE(exists(tree.path("Project copy/sub/b.txt")));
    ASSERT_TRUE(exists(tree.path("letter copy.txt")));
    writeInto(tree.path("Project copy/sub/b.txt"), "edited deep inside");
    undo();
    EXPECT_EQ(readAll(tree.path("Project copy/sub/b.txt")), "edited deep inside");
    EXPECT_FALSE(exists(tree.path("letter copy.txt")));
    EXPECT_EQ(errors, QStringList{QStringLiteral("Couldn’t move “Project copy” to the Trash: it was changed after it "
                                                 "was made, so it was left as it is.")});
    // Redo brings back the untouched copy and makes no second copy of the one left.
    redo();
    EXPECT_EQ(readAll(tree.path("letter copy.txt")), "dear");
    EXPECT_EQ(names(tree.root()), (QList<QByteArray>{"Project", "Project copy", "letter copy.txt", "letter.txt"}));
}

TEST_F(FileOpsTest, UndoOfAnArchiveRewrittenSinceLeavesIt)
{
    if (!QFileInfo::exists(QStringLiteral("/usr/bin/zip")))
        GTEST_SKIP() << "/usr/bin/zip is not installed";
    file("a.txt", "aaaa");
    ops.compress({tree.path("a.txt")}, &stack);
    settle();
    const FilePath archive = tree.path("a.txt.zip");
    ASSERT_TRUE(exists(archive));
    writeInto(archive, "not the archive any more");
    undo();
    EXPECT_EQ(readAll(archive), "not the archive any more");
    EXPECT_EQ(errors, QStringList{QStringLiteral("Couldn’t move “a.txt.zip” to the Trash: it was changed after it was "
                                                 "made, so it was left as it is.")});
}

TEST(MadeState, AFoldersStateFollowsWhatIsInsideNotItsOwnTimes)
{
    TempTree tree;
    tree.file(QStringLiteral("box/a.txt"), "a");
    const FilePath box = tree.path("box");
    const auto made = madestate::of(box);
    ASSERT_TRUE(made);
    EXPECT_TRUE(madestate::unchanged(*made, box));
    const struct timespec times[2] = {{0, UTIME_OMIT}, {1000, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, box.c_str(), times, 0), 0);
    EXPECT_TRUE(madestate::unchanged(*made, box)) << "the folder's own time doesn't count";
    tree.file(QStringLiteral("box/b.txt"), "b");
    EXPECT_FALSE(madestate::unchanged(*made, box));
    ASSERT_EQ(::unlink(tree.path("box/b.txt").c_str()), 0);
    EXPECT_TRUE(madestate::unchanged(*made, box));
    ASSERT_EQ(::utimensat(AT_FDCWD, tree.path("box/a.txt").c_str(), times, 0), 0);
    EXPECT_FALSE(madestate::unchanged(*made, box)) << "a file inside was touched";
}

TEST(MadeState, AFileTouchedWithTheSameBytesIsUnchangedAndOneRewrittenIsNot)
{
    TempTree tree;
    const FilePath item = tree.file(QStringLiteral("a.txt"), "same");
    const auto made = madestate::of(item);
    ASSERT_TRUE(made);
    EXPECT_FALSE(made->digest.isEmpty());
    const struct timespec times[2] = {{0, UTIME_OMIT}, {1000, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, item.c_str(), times, 0), 0);
    EXPECT_TRUE(madestate::unchanged(*made, item));
    writeInto(item, "diff");
    EXPECT_FALSE(madestate::unchanged(*made, item));
    EXPECT_FALSE(madestate::of(tree.path("missing")));
}

} // namespace
} // namespace orwick::test
