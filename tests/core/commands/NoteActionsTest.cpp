// Today's note: found where an Obsidian vault's daily-notes settings put it, created from the
// vault's template when missing (never over a note that is there), and shown selected.

#include "commands/CommandCatalog.h"
#include "commands/NoteActions.h"
#include "state/WindowState.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <gtest/gtest.h>

using namespace orwick;
using test::readAll;

TEST(NoteActions, DailyNoteFollowsTheVaultSettingsAndTemplate)
{
    test::TempTree tree;
    tree.file(QString("vault/.obsidian/daily-notes.json"),
              R"({"folder": "Journal/Days", "format": "YYYY-MM-DD dddd", "template": "Templates/Day"})");
    tree.file(QString("vault/Templates/Day.md"), "# {{title}}\n\n- [ ] plan\n");
    const FilePath inside = tree.folder("vault/Projects/site");
    const auto note = actions::ensureDailyNote(inside, QDate(2024, 5, 17));
    ASSERT_TRUE(note) << note.error().toStdString();
    EXPECT_EQ(*note, tree.path("vault/Journal/Days/2024-05-17 Friday.md"));
    EXPECT_EQ(readAll(*note), "# 2024-05-17 Friday\n\n- [ ] plan\n");

    // A note that is there is found, not written over.
    tree.file(QString("vault/Journal/Days/2024-05-17 Friday.md"), "mine\n");
    EXPECT_EQ(actions::ensureDailyNote(inside, QDate(2024, 5, 17)), note);
    EXPECT_EQ(readAll(*note), "mine\n");

    // Outside a vault the note is "yyyy-MM-dd.md" in the folder itself, empty.
    const FilePath plain = tree.folder("plain");
    EXPECT_EQ(actions::ensureDailyNote(plain, QDate(2024, 1, 2)), tree.path("plain/2024-01-02.md"));
    EXPECT_TRUE(test::exists(tree.path("plain/2024-01-02.md")));
}

TEST(NoteActions, TodaysNoteCommandShowsTheNoteSelected)
{
    test::TempTree tree;
    tree.file(QString("vault/.obsidian/daily-notes.json"), R"({"folder": "Daily"})");
    const FilePath folder = tree.folder("vault/Inbox");
    ViewPreferences preferences;
    WindowState window(folder, &preferences);
    ASSERT_TRUE(test::waitUntil([&] { return !window.activePane()->isLoading(); }));
    const AppCommand* command = CommandCatalog::find("todaysNote");
    ASSERT_NE(command, nullptr);
    ASSERT_TRUE(command->enabledIn(window));
    command->run(window);
    const FilePath expected = tree.path("vault/Daily/" + QDate::currentDate().toString(Qt::ISODate) + ".md");
    ASSERT_TRUE(test::waitUntil([&] { return window.activePane()->selection() == QSet<FilePath>{expected}; }));
    EXPECT_EQ(window.activePane()->url(), expected.parent());
    EXPECT_TRUE(test::exists(expected));
}

TEST(NoteActions, ADailyNoteThatCantBeCreatedIsReported)
{
    test::TempTree tree;
    tree.file(QString("vault/.obsidian/daily-notes.json"), R"({"folder": "Daily"})");
    tree.file(QString("vault/Daily"), "a file where the folder should be");
    const auto note = actions::ensureDailyNote(tree.folder("vault"), QDate(2024, 1, 2));
    ASSERT_FALSE(note);
    EXPECT_TRUE(note.error().contains("Daily")) << note.error().toStdString();
    EXPECT_EQ(readAll(tree.path("vault/Daily")), "a file where the folder should be");
}
