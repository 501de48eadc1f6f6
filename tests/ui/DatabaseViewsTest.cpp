// A notes folder shown as a board, a calendar, a gallery and its tasks in a window's pane: the
// layout is kept per folder, keys move a card to the next lane (a lane it leaves empty stays) or
// an item to the next day as one step on the window's undo stack, Space toggles a task in its
// note, and the file views come back.
#include "NotesWindowFixture.h"

#include "app/Services.h"
#include "commands/DatabaseViewActions.h"
#include "fileops/FileOperations.h"
#include "support/KeyPress.h"
#include "ui/notes/BoardWidget.h"
#include "ui/notes/CalendarWidget.h"
#include "ui/notes/GalleryWidget.h"
#include "ui/notes/PaneDatabaseViews.h"
#include "ui/notes/TasksWidget.h"

#include <QApplication>
#include <QStackedWidget>
#include <QUndoStack>
#include <gtest/gtest.h>

using namespace orwick;
using test::readAll;
using test::waitUntil;

namespace {

struct DatabaseViewsTest : test::NotesWindowTest {
    void SetUp() override
    {
        FolderColumns columns;
        columns.types.insert("status", PropertyType::select);
        columns.options.insert("status", {"todo", "doing", "done"});
        columns.groupBy = "status";
        writeNotes("---\nstatus: todo\ndue: 2024-05-17\n---\n- [ ] call Bob 📅 2024-05-17\n", "---\nstatus: done\ndue: 2024-05-20\n---\nBeta\n", columns);
        if (HasFatalFailure())
            return;
        services().properties = &store;

        openWindow();
        PaneDatabaseViews::attach(window.get(), &store);
        window->show();
        window->activateWindow();
        ASSERT_TRUE(waitUntil([&] { return !pane()->isLoading() && pane()->items().size() == 2; }));
        ASSERT_TRUE(waitUntil([&] { return store.value(beta, "status").has_value(); }));
        QApplication::processEvents();
    }
    void TearDown() override
    {
        window.reset();
        state.reset();
        services().properties = nullptr;
    }
    PaneDatabaseViews* views() { return PaneDatabaseViews::of(widget()); }
    void select(const FilePath& item)
    {
        ASSERT_TRUE(waitUntil([&] { return pane()->row(item) >= 0; }));
        pane()->click(item, Qt::NoModifier);
    }
    void settle()
    {
        ASSERT_TRUE(waitUntil([&] { return FileOperations::shared().isIdle() && store.isSettled() && views()->isSettled(); }, 30000));
        QApplication::processEvents();
    }
};

TEST_F(DatabaseViewsTest, BoardMovesACardByKeyAsOneUndoStep)
{
    actions::chooseDatabaseLayout(*state, "board");
    ASSERT_TRUE(waitUntil([&] { return views()->shownLayout() == QString("board"); }));
    EXPECT_EQ(store.columns(folder).layout, QString("board"));
    BoardWidget* board = views()->board();
    ASSERT_TRUE(waitUntil([&] { return board->board().lanes.size() == 4; }));
    EXPECT_TRUE(board->isVisible());
    EXPECT_EQ(board->board().lanes[1].cards.size(), 1); // todo: alpha
    // The keyboard starts on the first card ("No value" is empty), so the keys move it at once.
    board->setFocus();
    ASSERT_EQ(board->currentItem(), alpha);
    test::pressKey(board, Qt::Key_Right, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(board->board().lanes[2].cards.size(), 1); // drawn in "doing" at once
    EXPECT_EQ(board->currentItem(), alpha);
    EXPECT_EQ(pane()->selection(), QSet<FilePath>{alpha}); // the window's commands act on the moved card
    settle();
    EXPECT_EQ(readAll(alpha), "---\nstatus: doing\ndue: 2024-05-17\n---\n- [ ] call Bob 📅 2024-05-17\n");
    EXPECT_EQ(state->undoStack()->count(), 1);
    ASSERT_TRUE(waitUntil([&] { return board->board().lanes[2].cards.size() == 1 && board->currentLane() == 2; }));
    EXPECT_EQ(board->currentItem(), alpha) << "still on the card once the note is read back";
    state->undoStack()->undo();
    settle();
    EXPECT_EQ(readAll(alpha), "---\nstatus: todo\ndue: 2024-05-17\n---\n- [ ] call Bob 📅 2024-05-17\n");
    ASSERT_TRUE(waitUntil([&] { return board->board().lanes[1].cards.size() == 1; }));

    // The file views come back with View as List, and the folder keeps that.
    actions::leaveDatabaseLayout(*state);
    ASSERT_TRUE(waitUntil([&] { return !views()->shownLayout().has_value(); }));
    EXPECT_FALSE(board->isVisible());
}

// Arrows move the keyboard between the cards, and the pane selects the card it is on.
TEST_F(DatabaseViewsTest, BoardArrowsSelectTheCard)
{
    actions::chooseDatabaseLayout(*state, "board");
    BoardWidget* board = views()->board();
    ASSERT_TRUE(waitUntil([&] { return board->board().lanes.size() == 4 && board->board().lanes[3].cards.size() == 1; }));
    board->setFocus();
    test::pressKey(board, Qt::Key_Right); // "doing": no card
    EXPECT_FALSE(board->currentItem().has_value());
    test::pressKey(board, Qt::Key_Right);
    ASSERT_EQ(board->currentItem(), beta);
    EXPECT_EQ(pane()->cursor(), beta);
    EXPECT_EQ(pane()->selection(), QSet<FilePath>{beta});
    test::pressKey(board, Qt::Key_Left);
    test::pressKey(board, Qt::Key_Left);
    EXPECT_EQ(board->currentItem(), alpha);
    EXPECT_EQ(pane()->selection(), QSet<FilePath>{alpha});
}

// With options that are only the notes' values, the lane a card leaves empty stays on the board
// (its option kept in the folder's settings), so the card can be moved back.
TEST_F(DatabaseViewsTest, BoardKeepsTheLaneItsLastCardLeaves)
{
    FolderColumns columns = store.columns(folder);
    columns.options.remove("status");
    ASSERT_TRUE(store.setColumns(folder, columns));
    actions::chooseDatabaseLayout(*state, "board");
    BoardWidget* board = views()->board();
    const auto titles = [&] {
        QStringList lanes;
        for (const BoardLane& lane : board->board().lanes)
            lanes.append(lane.title + ' ' + QString::number(lane.cards.size()));
        return lanes;
    };
    ASSERT_TRUE(waitUntil([&] { return titles() == QStringList{"No value 0", "todo 1", "done 1"}; })) << titles().join(", ").toStdString();
    board->setFocus();
    ASSERT_EQ(board->currentItem(), alpha);
    test::pressKey(board, Qt::Key_Right, Qt::ControlModifier | Qt::ShiftModifier);
    settle();
    EXPECT_EQ(readAll(alpha), "---\nstatus: done\ndue: 2024-05-17\n---\n- [ ] call Bob 📅 2024-05-17\n");
    ASSERT_TRUE(waitUntil([&] { return titles() == QStringList{"No value 0", "todo 0", "done 2"}; })) << titles().join(", ").toStdString();
    EXPECT_EQ(board->currentItem(), alpha);
    EXPECT_EQ(store.columns(folder).options.value("status"), (QStringList{"todo", "done"}));

    test::pressKey(board, Qt::Key_Left, Qt::ControlModifier | Qt::ShiftModifier); // and back
    settle();
    EXPECT_EQ(readAll(alpha), "---\nstatus: todo\ndue: 2024-05-17\n---\n- [ ] call Bob 📅 2024-05-17\n");
    ASSERT_TRUE(waitUntil([&] { return titles() == QStringList{"No value 0", "todo 1", "done 1"}; })) << titles().join(", ").toStdString();
    EXPECT_EQ(board->currentItem(), alpha);
    EXPECT_EQ(state->undoStack()->count(), 2);
}

TEST_F(DatabaseViewsTest, BoardAndGalleryHighlightThePanesSelection)
{
    select(beta);
    actions::chooseDatabaseLayout(*state, "board");
    ASSERT_TRUE(waitUntil([&] { return views()->shownLayout() == QString("board"); }));
    BoardWidget* board = views()->board();
    ASSERT_TRUE(waitUntil([&] { return board->board().lanes.size() == 4; }));
    EXPECT_EQ(board->currentItem(), beta);
    EXPECT_EQ(board->currentLane(), 3); // "done"
    EXPECT_EQ(pane()->selection(), QSet<FilePath>{beta});
    // A selection made elsewhere (a command, the pane's keys) moves the board's card too.
    pane()->click(alpha, Qt::NoModifier);
    EXPECT_EQ(board->currentItem(), alpha);

    select(beta);
    actions::chooseDatabaseLayout(*state, "gallery");
    ASSERT_TRUE(waitUntil([&] { return views()->shownLayout() == QString("gallery"); }));
    settle();
    EXPECT_EQ(views()->gallery()->currentItem(), beta);
    pane()->click(alpha, Qt::NoModifier);
    EXPECT_EQ(views()->gallery()->currentItem(), alpha);
    EXPECT_EQ(pane()->selection(), QSet<FilePath>{alpha});
}

TEST_F(DatabaseViewsTest, BoardWithoutAGroupOffersTheChoices)
{
    FolderColumns columns = store.columns(folder);
    columns.groupBy = "due";
    ASSERT_TRUE(store.setColumns(folder, columns));
    actions::chooseDatabaseLayout(*state, "board");
    BoardWidget* board = views()->board();
    ASSERT_TRUE(waitUntil([&] { return !board->board().problem.isEmpty(); }));
    EXPECT_EQ(board->board().problem, "The board groups by “due”, which is a date property, not a select or list.");
    EXPECT_EQ(board->board().choices, QStringList{"status"});
    board->setFocus();
    test::pressKey(board, Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return board->board().problem.isEmpty(); }));
    EXPECT_EQ(store.columns(folder).groupBy, QString("status"));
}

TEST_F(DatabaseViewsTest, BoardOverFreeTextOffersToMakeItASelect)
{
    FolderColumns columns = store.columns(folder);
    columns.types.insert("status", PropertyType::text); // written as free text, no select to group by
    columns.options.remove("status");
    ASSERT_TRUE(store.setColumns(folder, columns));
    actions::chooseDatabaseLayout(*state, "board");
    BoardWidget* board = views()->board();
    ASSERT_TRUE(waitUntil([&] { return board->board().convertible.has_value(); }));
    EXPECT_EQ(board->board().problem, "The board groups by “status”, which is a text property, not a select or list.");
    EXPECT_TRUE(board->board().choices.isEmpty());
    board->setFocus();
    test::pressKey(board, Qt::Key_Return); // "Make “status” a select", the first row
    ASSERT_TRUE(waitUntil([&] { return board->board().problem.isEmpty(); }));
    EXPECT_EQ(store.columns(folder).types.value("status"), PropertyType::select);
    EXPECT_EQ(store.columns(folder).options.value("status"), (QStringList{"todo", "done"}));
    ASSERT_EQ(board->board().lanes.size(), 3);
    EXPECT_EQ(board->board().lanes[1].cards.size(), 1);
    EXPECT_EQ(board->board().lanes[2].cards.size(), 1);
    EXPECT_EQ(readAll(alpha), "---\nstatus: todo\ndue: 2024-05-17\n---\n- [ ] call Bob 📅 2024-05-17\n") << "no note changes";
}

TEST_F(DatabaseViewsTest, CalendarMovesAnItemToTheNextDay)
{
    actions::chooseDatabaseLayout(*state, "calendar");
    ASSERT_TRUE(waitUntil([&] { return views()->shownLayout() == QString("calendar"); }));
    CalendarWidget* calendar = views()->calendar();
    calendar->setFocus();
    // To May 2024, then to the 17th.
    while (CalendarView::monthOf(calendar->currentDay()) != QDate(2024, 5, 1))
        test::pressKey(calendar, CalendarView::monthOf(calendar->currentDay()) > QDate(2024, 5, 1) ? Qt::Key_PageUp : Qt::Key_PageDown);
    while (calendar->currentDay() != QDate(2024, 5, 17))
        test::pressKey(calendar, calendar->currentDay() < QDate(2024, 5, 17) ? Qt::Key_Right : Qt::Key_Left);
    ASSERT_EQ(calendar->currentItem(), alpha);
    test::pressKey(calendar, Qt::Key_Right, Qt::ControlModifier | Qt::ShiftModifier);
    settle();
    EXPECT_EQ(readAll(alpha), "---\nstatus: todo\ndue: 2024-05-18\n---\n- [ ] call Bob 📅 2024-05-17\n");
    EXPECT_EQ(calendar->currentDay(), QDate(2024, 5, 18));
    state->undoStack()->undo();
    settle();
    EXPECT_EQ(readAll(alpha), "---\nstatus: todo\ndue: 2024-05-17\n---\n- [ ] call Bob 📅 2024-05-17\n");
}

TEST_F(DatabaseViewsTest, GalleryAndTasks)
{
    actions::chooseDatabaseLayout(*state, "gallery");
    ASSERT_TRUE(waitUntil([&] { return views()->shownLayout() == QString("gallery"); }));
    settle();
    EXPECT_EQ(views()->gallery()->currentItem(), alpha);
    test::pressKey(views()->gallery(), Qt::Key_Right);
    EXPECT_EQ(views()->gallery()->currentItem(), beta);

    actions::chooseDatabaseLayout(*state, "tasks");
    ASSERT_TRUE(waitUntil([&] { return views()->shownLayout() == QString("tasks"); }));
    settle();
    TasksWidget* tasks = views()->tasks();
    ASSERT_TRUE(tasks->currentTask().has_value());
    EXPECT_EQ(tasks->currentTask()->dates.title, "call Bob");
    tasks->setFocus();
    test::pressKey(tasks, Qt::Key_Space);
    settle();
    EXPECT_TRUE(readAll(alpha).contains("- [x] call Bob 📅 2024-05-17 ✅ "));
    ASSERT_TRUE(waitUntil([&] { return tasks->currentTask() && tasks->currentTask()->task.isDone; }));
    state->undoStack()->undo();
    settle();
    EXPECT_TRUE(readAll(alpha).endsWith("- [ ] call Bob 📅 2024-05-17\n"));
}

} // namespace
