// The file commands of the catalogue in a real window: keys reach them through the window's
// shortcuts, F5 and F6 work between panes, the palette runs the same commands and picks
// destinations, and nothing touches files while a name is being edited.

#include "WindowFixture.h"
#include "app/Services.h"
#include "commands/CommandCatalog.h"
#include "commands/Frecency.h"
#include "fileops/FileClipboard.h"
#include "notes/FileProperties.h"
#include "ui/fileops/FileOpsController.h"
#include "ui/notes/PaneNotesDecoration.h"
#include "ui/views/FileListView.h"
#include "ui/views/FileTableView.h"
#include "ui/window/CommandMenus.h"
#include "ui/window/PaletteController.h"
#include "ui/window/PaletteRowDelegate.h"

#include <QAction>
#include <QClipboard>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>

using namespace orwick;
using test::waitUntil;

namespace {

// Counts the presses of one key that reach the watched widget.
struct KeyCounter : QObject {
    explicit KeyCounter(int key) : key(key) {}
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == key)
            ++count;
        return false;
    }
    int key;
    int count = 0;
};

struct WindowFileCommandsTest : test::WindowTest {
    bool enabled(const char* id) { return CommandCatalog::find(QString::fromLatin1(id))->enabledIn(*state); }
    QLineEdit* renameEditor() { return window->activePaneWidget()->listView()->viewport()->findChild<QLineEdit*>(); }
};

TEST_F(WindowFileCommandsTest, NothingActsOnFilesWhileANameIsBeingEdited)
{
    const FilePath file = tree.file("keep.txt", "k");
    open(tree.root());
    select(file);
    press(Qt::Key_F2);
    QLineEdit* editor = renameEditor();
    ASSERT_NE(editor, nullptr);
    ASSERT_TRUE(waitUntil([&] { return QApplication::focusWidget() == editor; }));
    EXPECT_FALSE(enabled("trash"));
    EXPECT_FALSE(enabled("copy"));

    QApplication::clipboard()->clear();
    press(Qt::Key_Delete, Qt::ControlModifier); // the editor's: delete a word
    press(Qt::Key_C, Qt::ControlModifier);      // the editor's: copy text
    press(Qt::Key_X, Qt::ControlModifier);
    press(Qt::Key_F2);                          // a shortcut, whose command waits
    window->menus()->action(QStringLiteral("trash"))->trigger(); // even from the menu
    settle();
    EXPECT_TRUE(test::exists(file));
    EXPECT_TRUE(readFileClipboard(QApplication::clipboard()->mimeData()).items.isEmpty()) << "no file went to the clipboard";

    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(editor, &escape);
    ASSERT_TRUE(waitUntil([&] { return !window->fileOps()->isRenaming(); }));
    EXPECT_TRUE(enabled("trash"));
    press(Qt::Key_Delete, Qt::ControlModifier);
    settle();
    EXPECT_FALSE(test::exists(file));
}

TEST_F(WindowFileCommandsTest, F5CopiesIntoTheOtherPanesFolderAndCtrlZTakesTheCopyBack)
{
    const FilePath file = tree.file("left/report.txt", "r");
    const FilePath right = tree.folder("right");
    open(tree.path("left"));
    select(file);
    // No other pane: F5 has nowhere to copy to, and does nothing.
    EXPECT_FALSE(enabled("copyToOther"));
    press(Qt::Key_F5);
    settle();
    EXPECT_FALSE(window->palette()->palette()->isOpen());
    EXPECT_EQ(state->undoStack()->count(), 0);

    press(Qt::Key_Backslash, Qt::ControlModifier); // split: the new pane is active
    ASSERT_TRUE(state->selectedTab()->isSplit());
    PaneState* left = state->selectedTab()->panes().first();
    PaneState* other = state->activePane();
    ASSERT_NE(left, other);
    other->navigate(right);
    state->selectedTab()->activate(left);
    ASSERT_EQ(state->selectedTab()->otherPane(), other);
    EXPECT_TRUE(enabled("copyToOther"));

    press(Qt::Key_F5);
    settle();
    const FilePath copied = right.child(QStringLiteral("report.txt"));
    EXPECT_EQ(test::readAll(copied), "r");
    EXPECT_TRUE(test::exists(file));
    EXPECT_EQ(toast(), QStringLiteral("Copied report.txt"));
    EXPECT_TRUE(waitUntil([&] { return other->selection().contains(copied); })) << "the copy is selected where it landed";

    press(Qt::Key_Z, Qt::ControlModifier);
    settle();
    EXPECT_FALSE(test::exists(copied));
    EXPECT_TRUE(test::exists(file));

    // Again, into a folder that now holds one: the conflict question's four choices, then Replace.
    tree.file("right/report.txt", "older");
    press(Qt::Key_F5);
    QMessageBox* box = nullptr;
    ASSERT_TRUE(waitUntil([&] { return (box = window->findChild<QMessageBox*>()) && box->isVisible(); }));
    EXPECT_EQ(box->text(), QStringLiteral("“report.txt” is already in “right”"));
    EXPECT_EQ(box->informativeText(), QStringLiteral("Replacing moves the ones there now to the Trash."));
    QStringList titles;
    for (QAbstractButton* button : box->buttons())
        titles.append(button->text());
    titles.sort();
    EXPECT_EQ(titles, (QStringList{QStringLiteral("Cancel"), QStringLiteral("Keep Both"), QStringLiteral("Replace"), QStringLiteral("Skip")}));
    for (QAbstractButton* button : box->buttons())
        if (button->text() == QStringLiteral("Replace"))
            button->click();
    settle();
    EXPECT_EQ(test::readAll(copied), "r");
    EXPECT_FALSE(test::exists(right.child(QStringLiteral("report 2.txt"))));
}

TEST_F(WindowFileCommandsTest, TheCopiesAreSelectedWhereTheyLandedAsTheConflictWasAnswered)
{
    const FilePath a = tree.file("left/a.txt", "new a");
    const FilePath b = tree.file("left/b.txt", "b");
    const FilePath right = tree.folder("right");
    const FilePath olderA = tree.file("right/a.txt", "older a");
    open(tree.path("left"));
    state->selectedTab()->split(pane(), PaneEdge::right, right);
    PaneState* other = state->activePane();
    state->selectedTab()->activate(state->selectedTab()->panes().first());
    ASSERT_TRUE(waitUntil([&] { return other->items().size() == 1; }));
    select(a);
    pane()->click(b, Qt::ControlModifier);
    ASSERT_EQ(pane()->selection().size(), 2);
    const auto answer = [&](const QString& choice) {
        press(Qt::Key_F5);
        QMessageBox* box = nullptr;
        ASSERT_TRUE(waitUntil([&] { return (box = window->findChild<QMessageBox*>()) && box->isVisible(); }));
        for (QAbstractButton* button : box->buttons())
            if (button->text() == choice)
                button->click();
        settle();
    };

    answer(QStringLiteral("Keep Both"));
    const FilePath keptA = right.child(QStringLiteral("a 2.txt"));
    EXPECT_EQ(test::readAll(keptA), "new a");
    EXPECT_EQ(test::readAll(olderA), "older a");
    const QSet<FilePath> landed{keptA, right.child(QStringLiteral("b.txt"))};
    EXPECT_TRUE(waitUntil([&] { return other->selection() == landed; })) << "the kept copy under its new name, not the older a.txt";

    ASSERT_TRUE(QFile::remove(right.child(QStringLiteral("b.txt")).text()));
    ASSERT_TRUE(waitUntil([&] { return other->items().size() == 2; }));
    answer(QStringLiteral("Skip")); // a.txt is skipped, b.txt lands
    EXPECT_EQ(test::readAll(olderA), "older a");
    EXPECT_TRUE(waitUntil([&] { return other->selection() == QSet<FilePath>{right.child(QStringLiteral("b.txt"))}; }))
        << "the skipped a.txt is not selected";
}

TEST_F(WindowFileCommandsTest, F6MovesIntoTheOtherPanesFolder)
{
    const FilePath file = tree.file("from/notes.md", "n");
    const FilePath to = tree.folder("to");
    open(tree.path("from"));
    state->selectedTab()->split(pane(), PaneEdge::right, to);
    state->selectedTab()->activate(state->selectedTab()->panes().first());
    select(file);
    press(Qt::Key_F6);
    settle();
    EXPECT_FALSE(test::exists(file));
    EXPECT_EQ(test::readAll(to.child(QStringLiteral("notes.md"))), "n");
    EXPECT_EQ(state->undoStack()->undoText(), QStringLiteral("Move"));
}

TEST_F(WindowFileCommandsTest, PaletteRowRunsTheSameCommandAsItsKey)
{
    const FilePath file = tree.file("old.txt", "o");
    open(tree.root());
    press(Qt::Key_K, Qt::ControlModifier);
    ASSERT_TRUE(palette()->isOpen());
    type(QStringLiteral("trash"));
    int row = paletteRow(QStringLiteral("cmd.trash"));
    ASSERT_GE(row, 0);
    EXPECT_FALSE(palette()->rows()[row].isEnabled) << "nothing selected";
    // Return on the dimmed row says why, in a footer below the rows, not drawn over them.
    palette()->selectRow(row);
    press(Qt::Key_Return);
    auto* rows = window->findChild<QListWidget*>();
    QLabel* footer = nullptr;
    for (QLabel* label : rows->parentWidget()->findChildren<QLabel*>(Qt::FindDirectChildrenOnly))
        if (label->text().startsWith(QStringLiteral("Move to Trash: ")))
            footer = label;
    ASSERT_NE(footer, nullptr);
    EXPECT_TRUE(footer->isVisible());
    EXPECT_GE(footer->geometry().top(), rows->geometry().bottom()) << "the footer lies below the rows";
    EXPECT_LE(footer->geometry().bottom(), rows->parentWidget()->height()) << "and inside the palette";
    press(Qt::Key_Escape);
    ASSERT_FALSE(palette()->isOpen());

    select(file);
    press(Qt::Key_K, Qt::ControlModifier);
    type(QStringLiteral("trash"));
    row = paletteRow(QStringLiteral("cmd.trash"));
    ASSERT_GE(row, 0);
    EXPECT_TRUE(palette()->rows()[row].isEnabled);
    // The row shows the title alone; its shortcut is drawn in its own column.
    auto* list = window->findChild<QListWidget*>();
    ASSERT_NE(list, nullptr);
    QListWidgetItem* shown = nullptr;
    for (int i = 0; i < list->count(); ++i)
        if (list->item(i)->data(PaletteRowDelegate::PaletteRowRole) == row)
            shown = list->item(i);
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(shown->text(), QStringLiteral("Move to Trash"));
    EXPECT_EQ(shown->data(PaletteRowDelegate::ShortcutRole).toString(), QKeySequence(Qt::CTRL | Qt::Key_Delete).toString(QKeySequence::NativeText));
    palette()->selectRow(row);
    press(Qt::Key_Return);
    settle();
    EXPECT_FALSE(test::exists(file));
    EXPECT_EQ(state->undoStack()->undoText(), QStringLiteral("Move to Trash"));
}

TEST_F(WindowFileCommandsTest, APaletteRowActsOnThePaneThatWasActiveWhenItOpened)
{
    const FilePath file = tree.file("right/draft.txt", "d");
    open(tree.root());
    state->selectedTab()->split(pane(), PaneEdge::right, file.parent());
    PaneState* right = state->activePane();
    window->activePaneWidget()->takeFocus();
    select(file);
    press(Qt::Key_K, Qt::ControlModifier);
    ASSERT_TRUE(palette()->isOpen());
    type(QStringLiteral("move to trash"));
    const int row = paletteRow(QStringLiteral("cmd.trash"));
    ASSERT_GE(row, 0);
    palette()->selectRow(row);
    press(Qt::Key_Return);
    EXPECT_EQ(state->activePane(), right) << "closing the palette keeps the pane active";
    settle();
    EXPECT_FALSE(test::exists(file));
}

TEST_F(WindowFileCommandsTest, MoveToFromThePaletteMovesTheSelectionIntoTheChosenFolder)
{
    Frecency frecency(tree.path(QStringLiteral("data/frecency.json")));
    services().frecency = &frecency;
    const FilePath file = tree.file("memo.txt", "m");
    const FilePath archive = tree.folder("Archive");
    frecency.record(archive);
    open(tree.root());
    select(file);
    press(Qt::Key_M, Qt::ControlModifier | Qt::ShiftModifier);
    ASSERT_TRUE(palette()->isOpen());
    EXPECT_EQ(palette()->mode(), PaletteMode::destination);
    EXPECT_EQ(palette()->prompt(), QStringLiteral("Move 1 item"));
    type(QStringLiteral("archive"));
    ASSERT_NE(palette()->selectedItem(), nullptr);
    EXPECT_EQ(palette()->selectedItem()->path, archive);
    press(Qt::Key_Return);
    settle();
    EXPECT_FALSE(test::exists(file));
    EXPECT_EQ(test::readAll(archive.child(QStringLiteral("memo.txt"))), "m");
    EXPECT_EQ(toast(), QStringLiteral("Moved memo.txt"));
    window.reset();
    services().frecency = nullptr;
}

TEST_F(WindowFileCommandsTest, F2OnAnEditablePropertyCellEditsTheCellNotTheName)
{
    const FilePath note = tree.file("notes/alpha.md", "---\nstatus: open\n---\nAlpha\n");
    FileProperties store{nullptr, tree.path(QStringLiteral("settings/columns.json"))};
    FolderColumns columns;
    columns.shown = {QStringLiteral("status")};
    ASSERT_TRUE(store.setColumns(note.parent(), columns));
    open(note.parent());
    PaneNotesDecoration::attach(window.get(), &store);
    pane()->chooseViewMode(ViewMode::table);
    select(note);
    ASSERT_TRUE(waitUntil([&] { return store.value(note, QStringLiteral("status")).has_value(); }));
    FileTableView* table = window->activePaneWidget()->tableView();
    ASSERT_TRUE(waitUntil([&] { return table->model()->columnCount() > FileListModel::ColumnCount; }));
    const int row = pane()->row(note);
    table->setFocus();

    // On the name F2 renames, in place; Esc leaves the name as it was.
    table->setCurrentIndex(table->model()->index(row, FileListModel::NameColumn));
    press(Qt::Key_F2);
    ASSERT_TRUE(waitUntil([&] { return window->fileOps()->isRenaming(); }));
    press(Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([&] { return !window->fileOps()->isRenaming(); }));
    EXPECT_TRUE(test::exists(note));
    window->activateWindow();
    ASSERT_TRUE(waitUntil([&] { return QApplication::activeWindow() == window.get(); }));

    // On a property cell F2 is the table's own edit key: the cell is edited, no rename starts.
    const QModelIndex statusCell = table->model()->index(row, FileListModel::ColumnCount);
    ASSERT_TRUE(statusCell.flags() & Qt::ItemIsEditable);
    table->setFocus();
    table->setCurrentIndex(statusCell);
    KeyCounter f2s(Qt::Key_F2);
    table->installEventFilter(&f2s);
    press(Qt::Key_F2);
    EXPECT_EQ(f2s.count, 1);
    QWidget* editor = QApplication::focusWidget();
    EXPECT_TRUE(editor && editor != table && table->isAncestorOf(editor)) << "the cell is edited";
    EXPECT_FALSE(window->fileOps()->isRenaming()) << "not the name";
}

TEST_F(WindowFileCommandsTest, TidyUpAsksFirstAndThenSortsLooseFilesIntoKindFolders)
{
    tree.file("photo.jpg", "p");
    tree.file("letter.txt", "l");
    open(tree.root());
    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("tidyUp"), *state));
    QMessageBox* box = nullptr;
    ASSERT_TRUE(waitUntil([&] { return (box = window->findChild<QMessageBox*>()) && box->isVisible(); }));
    EXPECT_EQ(box->informativeText(), QStringLiteral("Folders, hidden files and downloads in progress stay put. You can undo this."));
    EXPECT_TRUE(test::exists(tree.path("photo.jpg"))) << "nothing moves before the answer";
    for (QAbstractButton* button : box->buttons())
        if (button->text() == QStringLiteral("Tidy Up"))
            button->click();
    settle();
    EXPECT_EQ(test::readAll(tree.path("Images/photo.jpg")), "p");
    EXPECT_EQ(test::readAll(tree.path("Documents/letter.txt")), "l");
    EXPECT_EQ(state->undoStack()->undoText(), QStringLiteral("Tidy Up"));
}

TEST(PaletteRowDelegate, ShortcutsEndAtTheSameRightEdge)
{
    const QFontMetrics metrics(QApplication::font());
    const QRect text(40, 0, 500, 24);
    const QRect shortKey = PaletteRowDelegate::shortcutRect(text, metrics, QStringLiteral("F5"));
    const QRect longKey = PaletteRowDelegate::shortcutRect(text, metrics, QStringLiteral("Ctrl+Shift+N"));
    EXPECT_EQ(shortKey.right(), longKey.right());
    EXPECT_LT(longKey.left(), shortKey.left());
    EXPECT_LE(shortKey.right(), text.right());
    EXPECT_TRUE(PaletteRowDelegate::shortcutRect(text, metrics, {}).isEmpty());
}

} // namespace

TEST_F(WindowFileCommandsTest, AFolderCountsAsVisitedOnceReadAndOneThatCantBeOpenedDoesnt)
{
    Frecency frecency(tree.path(QStringLiteral("data/frecency.json")));
    services().frecency = &frecency;
    const FilePath folder = tree.folder("Projects");
    const FilePath notAFolder = tree.file("plain.txt", "p");
    open(tree.root());
    auto visited = [&frecency](const FilePath& path) {
        const auto ranked = frecency.ranked();
        return std::any_of(ranked.begin(), ranked.end(), [&](const FrecentFolder& f) { return f.path == path; });
    };
    EXPECT_TRUE(visited(tree.root()));
    pane()->navigate(notAFolder);
    ASSERT_TRUE(waitUntil([&] { return !pane()->isLoading() && pane()->error(); }));
    EXPECT_FALSE(visited(notAFolder)) << "it couldn't be opened";
    pane()->navigate(folder);
    ASSERT_TRUE(waitUntil([&] { return !pane()->isLoading() && pane()->url() == folder; }));
    EXPECT_TRUE(visited(folder));
    services().frecency = nullptr;
}
