// One file being edited, with the real engine and real files: a save goes through the engine as
// one undo step that gives the old text back; another program's change is noticed (by the
// folder's watcher, or at the latest when saving) and never written over unasked; "Keep Mine"
// overwrites with the other program's version kept for undo; a file that can't be saved byte for
// byte opens read-only and a save of it is refused.

#include "editing/EditSession.h"
#include "fileops/FileOperations.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <QUndoStack>
#include <gtest/gtest.h>

using namespace orwick;
using test::readAll;

namespace {

class EditSessionTest : public testing::Test {
protected:
    EditSessionTest()
    {
        ops.setReportErrors([this](const OperationOutcome& outcome) { errors += outcome.errors; });
    }
    // Saves (or overwrites) and waits for the outcome.
    bool saved(EditSession& session, const QString& text, bool overwrite = false)
    {
        std::optional<bool> outcome;
        const auto connection = QObject::connect(&session, &EditSession::saveFinished, [&](bool ok) {
            if (!outcome)
                outcome = ok;
        });
        overwrite ? session.overwrite(text) : session.save(text);
        EXPECT_TRUE(test::waitUntil([&] { return outcome.has_value(); }));
        EXPECT_TRUE(test::waitUntil([&] { return ops.isIdle(); }));
        QObject::disconnect(connection);
        return outcome.value_or(false);
    }
    void undo()
    {
        stack.undo();
        EXPECT_TRUE(test::waitUntil([&] { return ops.isIdle(); }));
    }
    // Another program writes the file: a new file renamed over it, as editors do.
    void writeElsewhere(const FilePath& file, const QByteArray& bytes)
    {
        const FilePath other = tree.file(QStringLiteral("other.tmp"), bytes);
        ASSERT_EQ(::rename(other.c_str(), file.c_str()), 0);
    }
    test::TempTree tree;
    FileOperations ops;
    QUndoStack stack;
    QStringList errors;
};

} // namespace

TEST_F(EditSessionTest, SaveIsOneUndoStepThatGivesTheOldTextBack)
{
    const FilePath note = tree.file(QStringLiteral("note.md"), "# Plan\r\n");
    EditSession session(note, ops, &stack);
    ASSERT_TRUE(session.load());
    EXPECT_EQ(session.loaded().text, QStringLiteral("# Plan\n"));
    EXPECT_FALSE(session.isReadOnly());
    EXPECT_TRUE(saved(session, QStringLiteral("# Plan\nmore\n")));
    EXPECT_EQ(readAll(note), "# Plan\r\nmore\r\n"); // the file's own line ends
    EXPECT_EQ(stack.count(), 1);
    EXPECT_EQ(stack.undoText(), QStringLiteral("Save"));
    // Saving what the disk holds writes nothing and makes no step.
    EXPECT_TRUE(saved(session, QStringLiteral("# Plan\nmore\n")));
    EXPECT_EQ(stack.count(), 1);
    // The window's undo puts the old bytes back; the session sees the disk move away from its save.
    int changed = 0;
    QObject::connect(&session, &EditSession::changedOnDisk, [&] { ++changed; });
    undo();
    EXPECT_EQ(readAll(note), "# Plan\r\n");
    EXPECT_TRUE(test::waitUntil([&] { return changed > 0; }));
    EXPECT_EQ(session.disk(), EditSession::Disk::changed);
    EXPECT_TRUE(errors.isEmpty()) << errors.join(u'\n').toStdString();
}

TEST_F(EditSessionTest, AnotherProgramsChangeIsNoticedWhileEditing)
{
    const FilePath note = tree.file(QStringLiteral("note.md"), "mine\n");
    EditSession session(note, ops, &stack);
    ASSERT_TRUE(session.load());
    int changed = 0;
    QObject::connect(&session, &EditSession::changedOnDisk, [&] { ++changed; });
    writeElsewhere(note, "theirs\n");
    ASSERT_TRUE(test::waitUntil([&] { return changed > 0; })) << "the folder's watcher didn't tell";
    EXPECT_EQ(session.disk(), EditSession::Disk::changed);
    EXPECT_EQ(session.changeText(), QStringLiteral("“note.md” was changed by another program."));
    // Told once per version, not on every look.
    session.check();
    EXPECT_EQ(changed, 1);
    // Touching without changing the bytes is no change.
    const FilePath same = tree.file(QStringLiteral("same.md"), "same\n");
    EditSession quiet(same, ops, &stack);
    ASSERT_TRUE(quiet.load());
    tree.touch(same, 1'000'000);
    EXPECT_EQ(quiet.check(), EditSession::Disk::same);
}

TEST_F(EditSessionTest, SavingOverAnotherProgramsChangeIsRefused)
{
    const FilePath note = tree.file(QStringLiteral("note.md"), "start\n");
    EditSession session(note, ops, &stack);
    ASSERT_TRUE(session.load());
    writeElsewhere(note, "theirs\n");
    EXPECT_FALSE(saved(session, QStringLiteral("mine\n")));
    EXPECT_EQ(session.refusal(), QStringLiteral("“note.md” was changed by another program."));
    EXPECT_EQ(readAll(note), "theirs\n");
    EXPECT_EQ(stack.count(), 0);
}

TEST_F(EditSessionTest, KeepMineOverwritesWithTheirVersionKeptForUndo)
{
    const FilePath note = tree.file(QStringLiteral("note.md"), "start\n");
    EditSession session(note, ops, &stack);
    ASSERT_TRUE(session.load());
    writeElsewhere(note, "theirs\n");
    EXPECT_EQ(session.check(), EditSession::Disk::changed);
    EXPECT_TRUE(saved(session, QStringLiteral("mine\n"), true));
    EXPECT_EQ(readAll(note), "mine\n");
    EXPECT_EQ(session.disk(), EditSession::Disk::same);
    EXPECT_EQ(stack.count(), 1);
    undo();
    EXPECT_EQ(readAll(note), "theirs\n");
    // After Keep Mine, a plain save goes through again.
    ASSERT_TRUE(session.load());
    EXPECT_TRUE(saved(session, QStringLiteral("again\n")));
    EXPECT_EQ(readAll(note), "again\n");
}

TEST_F(EditSessionTest, AFileThatWentIsSaidAndKeepMineMakesItAgain)
{
    const FilePath note = tree.file(QStringLiteral("note.md"), "start\n");
    EditSession session(note, ops, &stack);
    ASSERT_TRUE(session.load());
    ASSERT_EQ(::unlink(note.c_str()), 0);
    EXPECT_EQ(session.check(), EditSession::Disk::gone);
    EXPECT_EQ(session.changeText(), QStringLiteral("“note.md” was deleted or moved by another program."));
    EXPECT_FALSE(saved(session, QStringLiteral("mine\n")));
    EXPECT_FALSE(test::exists(note));
    EXPECT_TRUE(saved(session, QStringLiteral("mine\n"), true));
    EXPECT_EQ(readAll(note), "mine\n");
}

TEST_F(EditSessionTest, NotUtf8OpensReadOnlyAndIsNeverSaved)
{
    const QByteArray latin1("caf\xE9\n");
    const FilePath note = tree.file(QStringLiteral("latin.md"), latin1);
    EditSession session(note, ops, &stack);
    ASSERT_TRUE(session.load());
    EXPECT_TRUE(session.isReadOnly());
    EXPECT_EQ(session.loaded().text, QStringLiteral("café\n"));
    EXPECT_FALSE(saved(session, QStringLiteral("café au lait\n")));
    EXPECT_EQ(session.refusal(), session.loaded().readOnlyReason);
    EXPECT_EQ(readAll(note), latin1);
    EXPECT_EQ(stack.count(), 0);
}

TEST_F(EditSessionTest, WhatCantBeEditedAtAllSaysWhy)
{
    EditSession gone(tree.path(QStringLiteral("missing.md")), ops, &stack);
    const Status missing = gone.load();
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error(), QStringLiteral("“missing.md” is no longer there."));
    EditSession binary(tree.file(QStringLiteral("blob.txt"), QByteArray("a\0b", 3)), ops, &stack);
    const Status notText = binary.load();
    ASSERT_FALSE(notText);
    EXPECT_EQ(notText.error(), QStringLiteral("“blob.txt” isn’t a text file."));
    EditSession folder(tree.folder(QStringLiteral("dir")), ops, &stack);
    EXPECT_FALSE(folder.load());
}
