// Today's note and new notes: found where an Obsidian vault's daily-notes settings put it,
// created by the file operations engine from the vault's template when missing (never over a
// note that is there), shown selected, and undone as one step that moves the note to the Trash.

#include "commands/CommandCatalog.h"
#include "commands/NoteActions.h"
#include "fileops/FileOperations.h"
#include "support/HeadlessWindow.h"

#include <QUndoStack>
#include <gtest/gtest.h>

using namespace orwick;
using test::readAll;

namespace {

class NoteActionsTest : public testing::Test {
protected:
    NoteActionsTest()
    {
        ops.setReportErrors([this](const OperationOutcome& outcome) { errors += outcome.errors; });
    }
    // The daily note of `date` near `folder`, made when missing; empty when it couldn't be.
    FilePath dailyNote(const FilePath& folder, QDate date)
    {
        FilePath shown;
        actions::ensureDailyNote(ops, folder, date, &stack, [&](const FilePath& note) { shown = note; });
        EXPECT_TRUE(test::waitUntil([&] { return ops.isIdle(); }));
        return shown;
    }
    test::TempTree tree;
    FileOperations ops;
    QUndoStack stack;
    QStringList errors;
};

TEST_F(NoteActionsTest, DailyNoteFollowsTheVaultSettingsAndTemplate)
{
    tree.file(QString("vault/.obsidian/daily-notes.json"),
              R"({"folder": "Journal/Days", "format": "YYYY-MM-DD dddd", "template": "Templates/Day"})");
    tree.file(QString("vault/Templates/Day.md"), "# {{title}}\n\n- [ ] plan\n");
    const FilePath inside = tree.folder("vault/Projects/site");
    const FilePath note = dailyNote(inside, QDate(2024, 5, 17));
    EXPECT_EQ(note, tree.path("vault/Journal/Days/2024-05-17 Friday.md"));
    EXPECT_EQ(readAll(note), "# 2024-05-17 Friday\n\n- [ ] plan\n");
    EXPECT_EQ(stack.count(), 1);
    EXPECT_EQ(stack.undoText(), "Today's Note");

    // A note that is there is found, not written over, and makes no step.
    tree.file(QString("vault/Journal/Days/2024-05-17 Friday.md"), "mine\n");
    EXPECT_EQ(dailyNote(inside, QDate(2024, 5, 17)), note);
    EXPECT_EQ(readAll(note), "mine\n");
    EXPECT_EQ(stack.count(), 1);

    // Outside a vault the note is "yyyy-MM-dd.md" in the folder itself, empty.
    const FilePath plain = tree.folder("plain");
    EXPECT_EQ(dailyNote(plain, QDate(2024, 1, 2)), tree.path("plain/2024-01-02.md"));
    EXPECT_TRUE(test::exists(tree.path("plain/2024-01-02.md")));
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
}

TEST_F(NoteActionsTest, TodaysNoteIsUndoneWithTheFoldersMadeForIt)
{
    tree.file(QString("vault/.obsidian/daily-notes.json"), R"({"folder": "Journal/Days"})");
    const FilePath note = dailyNote(tree.folder("vault"), QDate(2024, 3, 4));
    ASSERT_EQ(note, tree.path("vault/Journal/Days/2024-03-04.md"));
    ASSERT_TRUE(test::exists(note));
    stack.undo();
    ASSERT_TRUE(test::waitUntil([&] { return ops.isIdle(); }));
    EXPECT_FALSE(test::exists(note)); // in the Trash
    EXPECT_FALSE(test::exists(tree.path("vault/Journal"))); // the folders it made are gone again
    stack.redo();
    ASSERT_TRUE(test::waitUntil([&] { return ops.isIdle(); }));
    EXPECT_TRUE(test::exists(note));
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
}

TEST_F(NoteActionsTest, ADailyNoteThatCantBeCreatedIsReported)
{
    tree.file(QString("vault/.obsidian/daily-notes.json"), R"({"folder": "Daily"})");
    tree.file(QString("vault/Daily"), "a file where the folder should be");
    EXPECT_TRUE(dailyNote(tree.folder("vault"), QDate(2024, 1, 2)).isEmpty());
    ASSERT_EQ(errors.size(), 1);
    EXPECT_TRUE(errors[0].contains("2024-01-02.md")) << errors[0].toStdString();
    EXPECT_EQ(readAll(tree.path("vault/Daily")), "a file where the folder should be");
    EXPECT_EQ(stack.count(), 0);
}

using NoteCommandsTest = test::HeadlessWindowTest;

TEST_F(NoteCommandsTest, TodaysNoteCommandShowsTheNoteSelected)
{
    tree.file(QString("vault/.obsidian/daily-notes.json"), R"({"folder": "Daily"})");
    openWindow(tree.folder("vault/Inbox"));
    const AppCommand* command = CommandCatalog::find("todaysNote");
    ASSERT_NE(command, nullptr);
    ASSERT_TRUE(command->enabledIn(*window));
    command->run(*window);
    const FilePath expected = tree.path("vault/Daily/" + QDate::currentDate().toString(Qt::ISODate) + ".md");
    ASSERT_TRUE(test::waitUntil([&] { return window->activePane()->selection() == QSet<FilePath>{expected}; }));
    EXPECT_EQ(window->activePane()->url(), expected.parent());
    EXPECT_TRUE(test::exists(expected));
    EXPECT_EQ(window->undoStack()->undoText(), "Today's Note");
}

TEST_F(NoteCommandsTest, NewNoteIsMadeSelectedAndUndone)
{
    tree.file(QString("notes/untitled.md"), "taken\n");
    openWindow(tree.path("notes"));
    const AppCommand* command = CommandCatalog::find("newNote");
    ASSERT_NE(command, nullptr);
    ASSERT_TRUE(command->enabledIn(*window));
    command->run(*window);
    const FilePath expected = tree.path("notes/untitled 2.md");
    ASSERT_TRUE(test::waitUntil([&] { return window->activePane()->selection() == QSet<FilePath>{expected}; }));
    EXPECT_EQ(readAll(expected), "");
    EXPECT_EQ(readAll(tree.path("notes/untitled.md")), "taken\n");
    EXPECT_EQ(window->undoStack()->undoText(), "New Note");
    window->undoStack()->undo();
    ASSERT_TRUE(test::waitUntil([&] { return FileOperations::shared().isIdle(); }));
    EXPECT_FALSE(test::exists(expected));
}

} // namespace
