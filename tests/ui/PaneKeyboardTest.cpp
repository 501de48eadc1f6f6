// A new user's keyboard session in a real window: moving to another folder while keys keep
// coming, the filter field and Esc, renaming in place in every view, the conflict question
// cancelled, the cursor after rows go away, Ctrl+L, F8 to the other pane, and what the window
// says instead of nothing.

#include "WindowFixture.h"
#include "ui/preview/QuickLook.h"
#include "files/DirectoryLoader.h"
#include "state/TabState.h"
#include "ui/fileops/FileOpsController.h"
#include "ui/pane/FilterBar.h"
#include "ui/pane/StatusLine.h"
#include "ui/views/ColumnsView.h"
#include "ui/views/FileGridView.h"
#include "ui/views/FileListModel.h"
#include "ui/views/FileListView.h"
#include "ui/views/FileTableView.h"
#include "ui/window/PaletteController.h"

#include <QAction>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>

using namespace orwick;
using test::waitUntil;

namespace {

using PaneKeyboardTest = test::WindowTest;

QLineEdit* renameEditorIn(QAbstractItemView* view)
{
    for (QLineEdit* editor : view->viewport()->findChildren<QLineEdit*>())
        if (editor->isVisible())
            return editor;
    return nullptr;
}

TEST_F(PaneKeyboardTest, KeysPressedAsAFolderOpensNeverReachTheFolderLeft)
{
    const FilePath first = tree.file("a.txt", "a");
    tree.file("b.txt", "b");
    tree.file("Next/inside.txt", "i");
    open(tree.root());
    select(first);
    pane()->navigate(tree.path("Next"));
    // Within the same moment: the old rows are off the screen and out of reach.
    PaneWidget* widget = window->activePaneWidget();
    EXPECT_EQ(widget->model()->rowCount(), 0);
    EXPECT_FALSE(widget->statusLine()->text().contains(QStringLiteral("selected")));
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Delete);
    ASSERT_TRUE(waitUntil([&] { return !pane()->isLoading() && !pane()->items().isEmpty(); }));
    settle();
    EXPECT_TRUE(test::exists(first));
    EXPECT_TRUE(test::exists(tree.path("b.txt")));
}

TEST_F(PaneKeyboardTest, CtrlFReachesTheFilterFieldAfterMovingIntoTheListAndEscThereClearsTheSelectionThenClosesTheFilter)
{
    tree.file("apple.txt", "a");
    tree.file("banana.txt", "b");
    open(tree.root());
    FilterBar* filter = window->activePaneWidget()->filterBar();
    press(Qt::Key_F, Qt::ControlModifier);
    ASSERT_EQ(QApplication::focusWidget(), filter);
    type(QStringLiteral("ap"));
    press(Qt::Key_Down); // into the list
    ASSERT_NE(QApplication::focusWidget(), filter);
    press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(QApplication::focusWidget(), filter);
    EXPECT_TRUE(filter->isVisible());
    // Back in the list, Esc clears the selection, then closes the filter.
    press(Qt::Key_Return); // into the list, the filter kept
    press(Qt::Key_Down);
    ASSERT_FALSE(pane()->selection().isEmpty());
    press(Qt::Key_Escape);
    EXPECT_TRUE(pane()->selection().isEmpty());
    EXPECT_TRUE(pane()->isFiltering());
    press(Qt::Key_Escape);
    EXPECT_FALSE(pane()->isFiltering());
    EXPECT_EQ(pane()->filter(), QString());
    EXPECT_FALSE(window->activePaneWidget()->filterBar()->isVisible());
    EXPECT_EQ(pane()->items().size(), 2);
}

TEST_F(PaneKeyboardTest, DownFromTheFilterFieldPutsTheCursorOnTheFirstMatchingRow)
{
    tree.file("a-notes.txt", "a");
    tree.file("img-1.png", "1");
    tree.file("img-2.png", "2");
    tree.file("zed.txt", "z");
    open(tree.root());
    FilterBar* filter = window->activePaneWidget()->filterBar();
    press(Qt::Key_F, Qt::ControlModifier);
    type(QStringLiteral("img"));
    ASSERT_TRUE(waitUntil([&] { return pane()->items().size() == 2; }));
    ASSERT_FALSE(pane()->cursor().has_value());
    press(Qt::Key_Down);
    EXPECT_NE(QApplication::focusWidget(), filter);
    EXPECT_EQ(pane()->cursor(), pane()->items().first().url);
    EXPECT_EQ(pane()->selection(), QSet<FilePath>{pane()->items().first().url});
    press(Qt::Key_Down);
    EXPECT_EQ(pane()->cursor(), pane()->items().last().url) << "the next Down moves on";
}

TEST_F(PaneKeyboardTest, F8MovesTheActivePaneAndTheKeyboardToTheOtherPane)
{
    tree.folder("Inbox");
    open(tree.root());
    PaneState* left = pane();
    press(Qt::Key_Backslash, Qt::ControlModifier);
    ASSERT_TRUE(state->selectedTab()->isSplit());
    PaneState* right = pane();
    ASSERT_NE(right, left);
    const auto keyboardIsIn = [&](PaneState* expected) {
        PaneWidget* widget = window->activePaneWidget();
        return widget && widget->pane() == expected && QApplication::focusWidget() == widget->focusTarget();
    };
    ASSERT_TRUE(waitUntil([&] { return keyboardIsIn(right); }));
    press(Qt::Key_F8);
    EXPECT_EQ(pane(), left);
    EXPECT_TRUE(waitUntil([&] { return keyboardIsIn(left); }));
    press(Qt::Key_F8);
    EXPECT_EQ(pane(), right);
    EXPECT_TRUE(waitUntil([&] { return keyboardIsIn(right); }));
    // From the filter field too: the key isn't one a text field takes.
    press(Qt::Key_F, Qt::ControlModifier);
    ASSERT_EQ(QApplication::focusWidget(), window->activePaneWidget()->filterBar());
    press(Qt::Key_F8);
    EXPECT_EQ(pane(), left);
    EXPECT_TRUE(waitUntil([&] { return keyboardIsIn(left); }));
}

TEST_F(PaneKeyboardTest, AHeldPaneKeyActsOnce)
{
    tree.file("inner/deeper/a.txt", "a");
    tree.folder("inner/empty");
    open(tree.path("inner/deeper"));
    const auto held = [this](int key) { // the press a held key repeats, to whatever has the keyboard
        QKeyEvent repeat(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
        QApplication::sendEvent(window->activePaneWidget()->focusTarget(), &repeat);
        QApplication::processEvents();
    };
    held(Qt::Key_Backspace);
    held(Qt::Key_Space);
    EXPECT_EQ(pane()->url(), tree.path("inner/deeper")) << "a held Backspace doesn't race up";
    EXPECT_EQ(window->quickLook(), nullptr) << "nor does a held Space open Quick Look";
    press(Qt::Key_Backspace);
    EXPECT_TRUE(waitUntil([&] { return pane()->url() == tree.path("inner"); })) << "a press goes up";
    // An empty folder shows a message in place of the list; it keeps the same rule.
    pane()->navigate(tree.path("inner/empty"));
    ASSERT_TRUE(waitUntil([&] { return !pane()->isLoading() && pane()->url() == tree.path("inner/empty"); }));
    held(Qt::Key_Backspace);
    EXPECT_EQ(pane()->url(), tree.path("inner/empty"));
}

TEST_F(PaneKeyboardTest, NewFolderNameEditorStaysOpenWhileTheFolderReloads)
{
    open(tree.root());
    press(Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
    settle();
    QLineEdit* editor = nullptr;
    ASSERT_TRUE(waitUntil([&] { return (editor = renameEditorIn(window->activePaneWidget()->listView())); }));
    pane()->reload(); // the folder's own change notice does this a moment later
    ASSERT_TRUE(waitUntil([&] { return !pane()->isLoading(); }));
    waitUntil([] { return false; }, 300);
    ASSERT_TRUE(renameEditorIn(window->activePaneWidget()->listView())) << "the reload closed the editor";
    EXPECT_TRUE(editor->hasFocus());
    EXPECT_TRUE(window->fileOps()->isRenaming());
    type(QStringLiteral("Plans"));
    press(Qt::Key_Return);
    settle();
    EXPECT_TRUE(test::exists(tree.path("Plans")));
}

TEST_F(PaneKeyboardTest, F2EditsTheNameInPlaceInEveryView)
{
    const FilePath file = tree.file("draft.md", "d");
    open(tree.root());
    for (ViewMode mode : {ViewMode::list, ViewMode::grid, ViewMode::columns, ViewMode::table}) {
        pane()->chooseViewMode(mode);
        QApplication::processEvents();
        select(file);
        press(Qt::Key_F2);
        PaneWidget* widget = window->activePaneWidget();
        QAbstractItemView* view = mode == ViewMode::list      ? static_cast<QAbstractItemView*>(widget->listView())
                                : mode == ViewMode::grid    ? static_cast<QAbstractItemView*>(widget->gridView())
                                : mode == ViewMode::columns ? static_cast<QAbstractItemView*>(widget->columnsView()->currentColumn())
                                                            : static_cast<QAbstractItemView*>(widget->tableView());
        EXPECT_EQ(window->findChild<QInputDialog*>(), nullptr) << "no dialog";
        QLineEdit* editor = renameEditorIn(view);
        ASSERT_NE(editor, nullptr) << int(mode);
        EXPECT_EQ(editor->selectedText(), QStringLiteral("draft"));
        press(Qt::Key_Escape);
        QApplication::processEvents();
        EXPECT_FALSE(window->fileOps()->isRenaming());
        EXPECT_TRUE(test::exists(file)) << "Esc keeps the name";
    }
}

TEST_F(PaneKeyboardTest, F5WorksAgainAfterTheConflictQuestionIsCancelledWithEsc)
{
    const FilePath file = tree.file("left/report.txt", "new");
    tree.file("right/report.txt", "old");
    open(tree.path("left"));
    press(Qt::Key_Backslash, Qt::ControlModifier);
    PaneState* left = state->selectedTab()->panes().first();
    state->activePane()->navigate(tree.path("right"));
    state->selectedTab()->activate(left);
    window->activePaneWidget()->takeFocus();
    select(file);
    for (int round = 0; round < 2; ++round) {
        press(Qt::Key_F5);
        QMessageBox* box = nullptr;
        ASSERT_TRUE(waitUntil([&] { return (box = window->findChild<QMessageBox*>()) && box->isVisible(); })) << "round " << round;
        // As a window system does: the question takes the keyboard.
        if (!waitUntil([&] { return QApplication::activeWindow() == box; }, 1000))
            box->activateWindow();
        ASSERT_TRUE(waitUntil([&] { return box->isAncestorOf(QApplication::focusWidget()); }));
        test::pressKey(QApplication::focusWidget(), Qt::Key_Escape);
        ASSERT_TRUE(waitUntil([&] { return !window->findChild<QMessageBox*>(); }));
        EXPECT_EQ(QApplication::activeWindow(), window.get());
        EXPECT_TRUE(window->activePaneWidget()->isAncestorOf(QApplication::focusWidget())) << "the keys are back in the pane";
    }
    EXPECT_EQ(test::readAll(tree.path("right/report.txt")), "old");
}

TEST_F(PaneKeyboardTest, TrashingTheSelectedRowSelectsTheNextAndTheViewFollowsTheCursor)
{
    tree.file("a.txt", "a");
    const FilePath b = tree.file("b.txt", "b");
    const FilePath c = tree.file("c.txt", "c");
    open(tree.root());
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    ASSERT_EQ(pane()->cursor(), b);
    FileListView* list = window->activePaneWidget()->listView();
    EXPECT_EQ(list->currentIndex().row(), pane()->row(b)) << "no second caret on another row";
    press(Qt::Key_Delete);
    settle();
    ASSERT_TRUE(waitUntil([&] { return pane()->row(b) < 0; }));
    EXPECT_EQ(pane()->selection(), QSet<FilePath>{c});
    EXPECT_EQ(pane()->cursor(), c);
    EXPECT_EQ(list->currentIndex().row(), pane()->row(c));
}

TEST_F(PaneKeyboardTest, CtrlLSelectsTheShownPathHideGitIgnoredFilesShowsItsStateAndThisComputerCountsNoItems)
{
    open(tree.root());
    press(Qt::Key_L, Qt::ControlModifier);
    auto* field = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    ASSERT_NE(field, nullptr);
    ASSERT_FALSE(field->text().isEmpty());
    EXPECT_EQ(field->selectedText(), field->text());
    // Hide Git-Ignored Files shows whether they are hidden.
    QAction* hide = nullptr;
    for (QAction* action : window->findChildren<QAction*>())
        if (action->text() == QStringLiteral("Hide Git-Ignored Files"))
            hide = action;
    ASSERT_NE(hide, nullptr);
    for (QAction* menu : window->menuBar()->actions())
        if (menu->menu() && menu->menu()->actions().contains(hide))
            Q_EMIT menu->menu()->aboutToShow();
    EXPECT_TRUE(hide->isCheckable());
    // This Computer counts no items.
    pane()->show(Listing::of(Listing::Kind::thisMac));
    ASSERT_TRUE(waitUntil([&] { return !pane()->isLoading(); }));
    EXPECT_FALSE(window->activePaneWidget()->statusLine()->text().contains(QStringLiteral("items")));
}

TEST_F(PaneKeyboardTest, DayHeadingsInTheColumnsLeaveTheFirstRowItsRoom)
{
    tree.file("a.txt", "a");
    tree.file("b.txt", "b");
    open(tree.root());
    pane()->chooseViewMode(ViewMode::columns);
    pane()->setGroupByDate(true);
    QApplication::processEvents();
    QListView* column = window->activePaneWidget()->columnsView()->currentColumn();
    const QRect headed = column->visualRect(column->model()->index(0, 0));
    const QRect plain = column->visualRect(column->model()->index(1, 0));
    EXPECT_GT(headed.height(), plain.height());
    EXPECT_GE(plain.top(), headed.bottom());
}

TEST_F(PaneKeyboardTest, ReturnOnAFileNoAppOpensSaysSo)
{
    const QByteArray savedDataDirs = qgetenv("XDG_DATA_DIRS");
    test::TempTree system;
    qputenv("XDG_DATA_DIRS", system.root().native()); // no applications installed
    const FilePath file = tree.file("blob.orwickdata", QByteArray("\x01\x02\x03\x00\xff", 5));
    open(tree.root());
    select(file);
    press(Qt::Key_Return);
    EXPECT_TRUE(toast().startsWith(QStringLiteral("No app is set to open “blob.orwickdata”"))) << toast().toStdString();
    qputenv("XDG_DATA_DIRS", savedDataDirs);
}

TEST_F(PaneKeyboardTest, ReturnOnADimmedPaletteRowSaysWhy)
{
    open(tree.root());
    press(Qt::Key_K, Qt::ControlModifier);
    type(QStringLiteral("Clear Shelf"));
    const PaletteItem* row = window->palette()->palette()->selectedItem();
    ASSERT_NE(row, nullptr);
    ASSERT_FALSE(row->isEnabled);
    press(Qt::Key_Return);
    bool said = false;
    for (QLabel* label : window->findChildren<QLabel*>())
        said = said || (label->isVisible() && label->text().contains(QStringLiteral("The shelf is empty")) && label->text().contains(row->title));
    EXPECT_TRUE(said);
}

} // namespace
