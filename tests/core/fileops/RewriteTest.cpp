// Rewrites through the engine: many files' contents (or an attribute) changed by an edit as one
// job and one undo step that gives back each file's exact bytes, refused for a file another
// program changed since; read-only, huge and refused files counted, never called done; a new
// file made with its folders, undone to the Trash.

#include "FileOpsFixture.h"

#include "platform/Xattr.h"

#include <QSet>

namespace orwick::test {
namespace {

// Upper-cases a file's bytes; refuses a file that holds "no".
ChangeRunner::Rewrite shouting()
{
    return [](const QByteArray& bytes) -> Result<QByteArray> {
        if (bytes.contains("no"))
            return failure(QStringLiteral("Couldn’t change it: it said no."));
        return bytes.toUpper();
    };
}

FileOperations::RewriteTexts texts()
{
    return {QStringLiteral("Shouting"), QStringLiteral("Shout"), QStringLiteral("Shouted")};
}

TEST_F(FileOpsTest, RewritingManyFilesIsOneJobAndOneStepThatUndoesEachExactly)
{
    QSet<quint64> jobs;
    QObject::connect(&ops, &FileOperations::jobsChanged, [&] {
        for (const FileJob& job : ops.jobs())
            jobs.insert(job.id);
    });
    QList<FilePath> changed;
    QObject::connect(&ops, &FileOperations::contentsChanged, [&](const QList<FilePath>& files) { changed += files; });
    QList<FileOperations::Rewrite> rewrites;
    for (int i = 0; i < 20; ++i)
        rewrites.append({file(QStringLiteral("f%1.txt").arg(i), "text " + QByteArray::number(i) + "\r\n"), shouting()});
    int alongside = 0;
    ops.rewriteFiles(rewrites, texts(), &stack, {}, [&](bool forward) { alongside += forward ? 1 : -1; });
    settle();
    EXPECT_EQ(jobs.size(), 1u);
    EXPECT_EQ(stack.count(), 1);
    EXPECT_EQ(stack.undoText(), QStringLiteral("Shout"));
    EXPECT_EQ(lastToast(), QStringLiteral("Shouted 20 items"));
    EXPECT_EQ(readAll(rewrites[7].file), "TEXT 7\r\n");
    EXPECT_EQ(changed.size(), 20);

    undo();
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(readAll(rewrites[i].file), "text " + QByteArray::number(i) + "\r\n");
    EXPECT_EQ(alongside, -1);
    EXPECT_EQ(changed.size(), 40); // the undo's files too
    redo();
    EXPECT_EQ(readAll(rewrites[3].file), "TEXT 3\r\n");
    EXPECT_EQ(alongside, 0);
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
}

TEST_F(FileOpsTest, UndoOfARewriteIsRefusedForAFileChangedSince)
{
    const FilePath mine = file("mine.txt", "mine");
    const FilePath theirs = file("theirs.txt", "theirs");
    ops.rewriteFiles({{mine, shouting()}, {theirs, shouting()}}, texts(), &stack);
    settle();
    file("theirs.txt", "THEIRS, edited elsewhere");
    undo();
    EXPECT_EQ(readAll(mine), "mine");
    EXPECT_EQ(readAll(theirs), "THEIRS, edited elsewhere");
    EXPECT_EQ(errors, QStringList{QStringLiteral("Couldn’t change “theirs.txt”: it changed on disk since it was read.")});
}

TEST_F(FileOpsTest, FilesThatCantBeRewrittenAreCountedNotDone)
{
    const FilePath fine = file("fine.txt", "fine");
    const FilePath locked = file("locked.txt", "locked");
    ASSERT_EQ(::chmod(locked.c_str(), 0444), 0);
    const FilePath refusing = file("refusing.txt", "no");
    const FilePath huge = file("huge.txt", QByteArray(FileOperations::kLargestRewrite + 1, 'h'));
    const FilePath gone = tree.path("gone.txt");
    ops.rewriteFiles({{fine, shouting()}, {locked, shouting()}, {refusing, shouting()}, {huge, shouting()}, {gone, shouting()}},
                     texts(), &stack);
    settle();
    EXPECT_TRUE(toasts.isEmpty());
    ASSERT_EQ(reports.size(), 1);
    EXPECT_EQ(reports[0].done, 1);
    EXPECT_EQ(reports[0].skipped, 1);
    EXPECT_EQ(reports[0].errors, (QStringList{QStringLiteral("Couldn’t change “locked.txt”: it is read-only."),
                                              QStringLiteral("Couldn’t change it: it said no."),
                                              QStringLiteral("Couldn’t change “huge.txt”: it is larger than 17 MB.")}));
    EXPECT_EQ(readAll(fine), "FINE");
    EXPECT_EQ(readAll(locked), "locked");
    EXPECT_EQ(statOf(locked).st_mode & 07777, 0444u);
    EXPECT_EQ(stack.count(), 1); // the one that was changed
}

TEST_F(FileOpsTest, AnAttributeRewriteIsUndoneToItsAbsence)
{
    const FilePath photo = file("photo.jpg", "jpeg");
    const QByteArray name = xattr::properties;
    auto set = [](const QByteArray& value) -> Result<QByteArray> { return value + "{}"; };
    ops.rewriteFiles({{photo, set, name}}, texts(), &stack);
    settle();
    EXPECT_EQ(xattr::get(photo, xattr::properties), QByteArray("{}"));
    undo();
    EXPECT_EQ(xattr::get(photo, xattr::properties), std::nullopt);
    EXPECT_EQ(readAll(photo), "jpeg");
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
}

TEST_F(FileOpsTest, CreatingAFileMakesItsFoldersAndUndoesToTheTrash)
{
    const FilePath note = tree.path("Journal/2024/day.md");
    FilePath made;
    ops.createFile(note, "# Day\n", QStringLiteral("Today's Note"), &stack, [&](const FilePath& path) { made = path; });
    settle();
    EXPECT_EQ(made, note);
    EXPECT_EQ(readAll(note), "# Day\n");
    EXPECT_EQ(stack.undoText(), QStringLiteral("Today's Note"));
    undo();
    EXPECT_FALSE(exists(note));
    EXPECT_FALSE(exists(tree.path("Journal")));
    // A file already there is shown, not replaced, and makes no step.
    file("Journal/2024/day.md", "mine");
    made = {};
    ops.createFile(note, "# Day\n", QStringLiteral("Today's Note"), &stack, [&](const FilePath& path) { made = path; });
    settle();
    EXPECT_EQ(made, note);
    EXPECT_EQ(readAll(note), "mine");
    EXPECT_EQ(stack.count(), 1);
    EXPECT_FALSE(stack.canUndo() && stack.undoText() == QStringLiteral("Today's Note") && stack.index() == 2);
}

} // namespace
} // namespace orwick::test
