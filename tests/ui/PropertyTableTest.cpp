// A folder of notes as a database table in a window: typed cells (chips in their colours, a box
// that a single click toggles, editors that fit the type), the header's menu renaming and
// deleting properties across the folder as one undo step each, and the columns' order, visibility
// and widths kept in columns.json — which, damaged, gives defaults and a message.

#include "fileops/FileOperations.h"
#include "notes/FileProperties.h"
#include "state/WindowState.h"
#include "support/TempHome.h"
#include "support/TestMain.h"
#include "TableColumns.h"
#include "ui/notes/DateCellEditor.h"
#include "ui/notes/PaneNotesDecoration.h"
#include "ui/notes/PropertyCellDelegate.h"
#include "ui/notes/PropertyColumnsModel.h"
#include "ui/notes/PropertyHeaderLayout.h"
#include "ui/pane/PaneWidget.h"
#include "ui/theme/Theme.h"
#include "ui/views/FileTableView.h"
#include "ui/window/MainWindow.h"
#include "ui/window/ToastHost.h"

#include <QApplication>
#include <QComboBox>
#include <QDateEdit>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QScrollBar>
#include <QUndoStack>
#include <gtest/gtest.h>

using namespace orwick;
using test::readAll;
using test::waitUntil;

namespace {

const QByteArray kAlpha = "---\nstatus: open\ntags: [x, y]\ndone: false\ndue: 2024-05-17\n---\n# Alpha\n\n- [ ] a task\n";
const QByteArray kBeta = "---\n# planning\nstatus: done\ndone: true\n---\nBeta\n";
const QByteArray kGamma = "---\nstatus: open\ndone: false\n---\nGamma, with Windows line ends\r\nbelow\r\n";

struct PropertyTableTest : ::testing::Test {
    test::TempTree tree;
    ViewPreferences preferences;
    FilePath alpha, beta, gamma, folder;
    std::unique_ptr<FileProperties> store;
    std::unique_ptr<WindowState> state;
    std::unique_ptr<MainWindow> window;

    FilePath columnsFile() const { return tree.path("settings/columns.json"); }

    void SetUp() override
    {
        alpha = tree.file(QString("notes/alpha.md"), kAlpha);
        beta = tree.file(QString("notes/beta.md"), kBeta);
        gamma = tree.file(QString("notes/gamma.md"), kGamma);
        folder = alpha.parent();
        store = std::make_unique<FileProperties>(nullptr, columnsFile());
        FolderColumns columns;
        columns.shown = {"status", "tags", "done", "due"};
        columns.options.insert("status", {"open", "done"});
        columns.optionColors["status"].insert("open", 4);
        ASSERT_TRUE(store->setColumns(folder, columns));
        openWindow();
    }
    void openWindow()
    {
        window.reset();
        state = std::make_unique<WindowState>(folder, &preferences);
        window = std::make_unique<MainWindow>(state.get());
        PaneNotesDecoration::attach(window.get(), store.get());
        window->resize(1400, 600);
        window->show();
        pane()->chooseViewMode(ViewMode::table);
        ASSERT_TRUE(waitUntil([&] { return !pane()->isLoading() && pane()->items().size() == 3; }));
        ASSERT_TRUE(waitUntil([&] { return store->value(gamma, "done").has_value(); }));
        QApplication::processEvents();
    }
    PaneState* pane() { return state->activePane(); }
    // Waits until the engine wrote what was asked and the store read it back.
    void settle()
    {
        ASSERT_TRUE(waitUntil([&] { return FileOperations::shared().isIdle() && store->isSettled(); }));
        QApplication::processEvents();
    }
    // The names of the rows in the order shown.
    QStringList names()
    {
        QStringList shown;
        for (const FileItem& item : pane()->items())
            shown.append(item.url.fileName());
        return shown;
    }
    FileTableView* view() { return window->activePaneWidget()->tableView(); }
    QAbstractItemModel* table() { return view()->model(); }
    PaneNotesDecoration* decoration() { return PaneNotesDecoration::of(window->activePaneWidget()); }
    int columnOf(const QString& key) { return test::columnTitled(table(), key); }
    QModelIndex cell(const FilePath& path, const QString& key) { return table()->index(pane()->row(path), columnOf(key)); }
    // The header's titles from left to right, without hidden sections.
    QStringList headerOrder()
    {
        QHeaderView* header = view()->header();
        QStringList titles;
        for (int visual = 0; visual < header->count(); ++visual) {
            const int logical = header->logicalIndex(visual);
            if (!header->isSectionHidden(logical))
                titles.append(table()->headerData(logical, Qt::Horizontal, Qt::DisplayRole).toString());
        }
        return titles;
    }
    // The header's menu as opened over a property column, answering every question with `answer`.
    std::unique_ptr<QMenu> headerMenu(const QString& key, const QString& answer = {})
    {
        HeaderMenuContext context = decoration()->headerMenuContext(columnOf(key));
        context.ask = [answer](const QString&, const QString&, const QString&) { return std::optional(answer); };
        auto menu = std::make_unique<QMenu>();
        fillHeaderMenu(menu.get(), context);
        return menu;
    }
    static QAction* find(QMenu* menu, const QStringList& path)
    {
        for (QAction* action : menu->actions()) {
            if (action->text() != path.first())
                continue;
            if (path.size() == 1)
                return action;
            return action->menu() ? find(action->menu(), path.mid(1)) : nullptr;
        }
        return nullptr;
    }
    void press(int key)
    {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, key == Qt::Key_Space ? QStringLiteral(" ") : QString());
        QApplication::sendEvent(view(), &event);
    }
    void click(const QPoint& at, bool twice = false)
    {
        QWidget* viewport = view()->viewport();
        const QPointF local(at), global(viewport->mapToGlobal(at));
        QMouseEvent press(QEvent::MouseButtonPress, local, global, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(viewport, &press);
        QMouseEvent release(QEvent::MouseButtonRelease, local, global, Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(viewport, &release);
        QMouseEvent again(QEvent::MouseButtonDblClick, local, global, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        if (twice) {
            QApplication::sendEvent(viewport, &again);
            QApplication::sendEvent(viewport, &release);
        }
    }
    // Undoes every step and waits until each note has its first bytes again.
    void undoAll()
    {
        while (state->undoStack()->canUndo()) {
            state->undoStack()->undo();
            settle();
        }
        for (const auto& [path, text] : {std::pair(alpha, kAlpha), std::pair(beta, kBeta), std::pair(gamma, kGamma)})
            EXPECT_TRUE(waitUntil([&] { return readAll(path) == text; })) << readAll(path).toStdString();
    }
};

} // namespace

TEST_F(PropertyTableTest, CellsShowTypedValues)
{
    EXPECT_EQ(headerOrder(), (QStringList{"Name", "Date Modified", "Size", "status", "tags", "done", "due"}));
    EXPECT_EQ(cell(beta, "done").data(Qt::CheckStateRole).toInt(), Qt::Checked);
    EXPECT_EQ(cell(alpha, "due").data(Qt::DisplayRole).toString(), QLocale().toString(QDate(2024, 5, 17), QLocale::ShortFormat));
    const auto chips = PropertyCellDelegate::chipsOf(cell(alpha, "tags"));
    ASSERT_EQ(chips.size(), 2);
    EXPECT_EQ(chips[0].text, "x");
    EXPECT_EQ(chips[1].text, "y");
    const auto status = PropertyCellDelegate::chipsOf(cell(alpha, "status"));
    ASSERT_EQ(status.size(), 1);
    EXPECT_EQ(status[0].color, 4);
    // The select chip is drawn in its option's colour (on a row without the caret's frame).
    const QRect rect = view()->visualRect(cell(gamma, "status"));
    const QImage shot = view()->viewport()->grab().toImage();
    const QColor green = theme::optionColor(4);
    bool found = false;
    for (int x = rect.left(); x <= rect.right() && !found; ++x)
        found = shot.pixelColor(x, rect.center().y()) == green;
    EXPECT_TRUE(found);
    // Property cells answer for the row, so a click there selects it like anywhere in the row.
    EXPECT_EQ(cell(alpha, "due").data(FileListModel::UrlRole).value<FilePath>(), alpha);
}

TEST_F(PropertyTableTest, ASingleClickTogglesACheckboxAndWritesTheNote)
{
    const QRect box = view()->checkBoxRect(cell(alpha, "done"));
    ASSERT_FALSE(box.isEmpty());
    pane()->click(beta, Qt::NoModifier);
    click(box.center());
    settle();
    EXPECT_EQ(readAll(alpha), QByteArray(kAlpha).replace("done: false", "done: true"));
    EXPECT_EQ(state->undoStack()->count(), 1);
    EXPECT_EQ(state->undoStack()->undoText(), "Set done");
    EXPECT_EQ(pane()->selection(), QSet<FilePath>{beta}); // the click on the box selected nothing
    ASSERT_TRUE(waitUntil([&] { return cell(alpha, "done").data(Qt::CheckStateRole).toInt() == Qt::Checked; }));
    // A click beside the box selects the row and changes nothing.
    const QRect cellRect = view()->visualRect(cell(gamma, "done"));
    click(QPoint(cellRect.right() - 4, cellRect.center().y()));
    settle();
    EXPECT_EQ(readAll(gamma), kGamma);
    EXPECT_EQ(pane()->selection(), QSet<FilePath>{gamma});
    undoAll();
}

TEST_F(PropertyTableTest, SpaceTogglesTheCheckboxUnderTheCursorAsOneStep)
{
    view()->setFocus();
    // A click beside gamma's box puts the cursor on that cell and toggles nothing.
    const QRect gammaDone = view()->visualRect(cell(gamma, "done"));
    click(QPoint(gammaDone.right() - 4, gammaDone.center().y()));
    EXPECT_EQ(view()->currentIndex(), cell(gamma, "done"));
    // The cell follows the cursor's row: two rows up is alpha's box.
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    ASSERT_EQ(pane()->cursor(), alpha);
    EXPECT_EQ(view()->currentIndex(), cell(alpha, "done"));
    press(Qt::Key_Space);
    settle();
    EXPECT_EQ(readAll(alpha), QByteArray(kAlpha).replace("done: false", "done: true"));
    settle();
    EXPECT_EQ(readAll(gamma), kGamma);
    EXPECT_EQ(state->undoStack()->count(), 1);
    EXPECT_EQ(state->undoStack()->undoText(), "Set done");
    EXPECT_EQ(pane()->selection(), QSet<FilePath>{alpha}); // Space did not touch the selection
    // The folder reads again after the write: the cursor keeps its column.
    pane()->reload();
    ASSERT_TRUE(waitUntil([&] { return !pane()->isLoading() && view()->currentIndex() == cell(alpha, "done"); }));
    press(Qt::Key_Space);
    settle();
    EXPECT_EQ(readAll(alpha), kAlpha);
    EXPECT_EQ(state->undoStack()->count(), 2);
    undoAll();

    // Left moves to the list property beside it: Space there changes no file.
    press(Qt::Key_Left);
    EXPECT_EQ(view()->currentIndex(), cell(alpha, "tags"));
    press(Qt::Key_Space);
    settle();
    EXPECT_EQ(readAll(alpha), kAlpha);
    EXPECT_EQ(state->undoStack()->count(), 2);
    // Right twice passes the box to the date; Right at the last column stays there.
    press(Qt::Key_Right);
    press(Qt::Key_Right);
    press(Qt::Key_Right);
    EXPECT_EQ(view()->currentIndex(), cell(alpha, "due"));
    // On the name Space toggles nothing either.
    for (int i = 0; i < 8; ++i)
        press(Qt::Key_Left);
    EXPECT_EQ(view()->currentIndex().column(), int(FileListModel::NameColumn));
    press(Qt::Key_Space);
    settle();
    EXPECT_EQ(readAll(alpha), kAlpha);
    EXPECT_EQ(state->undoStack()->count(), 2);
}

TEST_F(PropertyTableTest, EditorsFitTheType)
{
    PropertyCellDelegate delegate;
    QWidget parent;
    QStyleOptionViewItem option;
    std::unique_ptr<QWidget> date(delegate.createEditor(&parent, option, cell(alpha, "due")));
    auto* dateEdit = qobject_cast<DateCellEditor*>(date.get());
    ASSERT_NE(dateEdit, nullptr);
    delegate.setEditorData(dateEdit, cell(alpha, "due"));
    EXPECT_EQ(dateEdit->date(), QDate(2024, 5, 17));
    dateEdit->setDate(QDate(2024, 6, 2));
    delegate.setModelData(dateEdit, table(), cell(alpha, "due"));
    settle();
    EXPECT_EQ(readAll(alpha), QByteArray(kAlpha).replace("2024-05-17", "2024-06-02"));

    std::unique_ptr<QWidget> select(delegate.createEditor(&parent, option, cell(gamma, "status")));
    auto* combo = qobject_cast<QComboBox*>(select.get());
    ASSERT_NE(combo, nullptr);
    ASSERT_GE(combo->count(), 2);
    EXPECT_EQ(combo->itemText(0), "open");
    EXPECT_EQ(combo->itemText(1), "done");
    combo->setCurrentText("waiting"); // a new option, typed
    delegate.setModelData(combo, table(), cell(gamma, "status"));
    settle();
    EXPECT_EQ(readAll(gamma), QByteArray(kGamma).replace("status: open", "status: waiting"));
    EXPECT_EQ(state->undoStack()->count(), 2);
}

TEST_F(PropertyTableTest, DeleteInTheDateEditorRemovesTheDateAndNothingElse)
{
    PropertyCellDelegate delegate;
    QWidget parent;
    std::unique_ptr<QWidget> widget(delegate.createEditor(&parent, QStyleOptionViewItem(), cell(alpha, "due")));
    auto* editor = qobject_cast<DateCellEditor*>(widget.get());
    ASSERT_NE(editor, nullptr);
    delegate.setEditorData(editor, cell(alpha, "due"));
    ASSERT_EQ(editor->day(), QDate(2024, 5, 17));
    QKeyEvent del(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier);
    QApplication::sendEvent(editor, &del);
    EXPECT_EQ(editor->day(), std::nullopt);
    EXPECT_EQ(editor->text(), "No date");
    delegate.setModelData(editor, table(), cell(alpha, "due"));
    settle();
    EXPECT_EQ(readAll(alpha), QByteArray(kAlpha).replace("due: 2024-05-17\n", ""));
    EXPECT_EQ(state->undoStack()->count(), 1);
    EXPECT_EQ(state->undoStack()->undoText(), "Set due");
    ASSERT_TRUE(waitUntil([&] { return !cell(alpha, "due").data(Qt::DisplayRole).isValid(); }));
    undoAll();

    // An empty cell's editor starts at today; Backspace empties it, and committing that writes nothing.
    std::unique_ptr<QWidget> other(delegate.createEditor(&parent, QStyleOptionViewItem(), cell(beta, "due")));
    auto* empty = qobject_cast<DateCellEditor*>(other.get());
    ASSERT_NE(empty, nullptr);
    delegate.setEditorData(empty, cell(beta, "due"));
    EXPECT_EQ(empty->day(), QDate::currentDate());
    QKeyEvent back(QEvent::KeyPress, Qt::Key_Backspace, Qt::NoModifier);
    QApplication::sendEvent(empty, &back);
    delegate.setModelData(empty, table(), cell(beta, "due"));
    settle();
    EXPECT_EQ(readAll(beta), kBeta);
    // Up from an empty field starts at today again.
    QKeyEvent up(QEvent::KeyPress, Qt::Key_Up, Qt::NoModifier);
    QApplication::sendEvent(empty, &up);
    EXPECT_EQ(empty->day(), QDate::currentDate());
}

TEST_F(PropertyTableTest, RenameAcrossTheFolderRewritesOnlyFrontMatterAndUndoesInOneStep)
{
    std::unique_ptr<QMenu> menu = headerMenu("status", "state");
    QAction* rename = find(menu.get(), {"Rename “status”…"});
    ASSERT_NE(rename, nullptr);
    rename->trigger();
    settle();
    EXPECT_EQ(readAll(alpha), QByteArray(kAlpha).replace("status:", "state:"));
    settle();
    EXPECT_EQ(readAll(beta), QByteArray(kBeta).replace("status:", "state:"));
    settle();
    EXPECT_EQ(readAll(gamma), QByteArray(kGamma).replace("status:", "state:"));
    EXPECT_EQ(state->undoStack()->count(), 1);
    EXPECT_EQ(state->undoStack()->undoText(), "Rename status");
    ASSERT_TRUE(waitUntil([&] { return columnOf("state") >= 0; })); // the column follows, colours too
    EXPECT_EQ(PropertyCellDelegate::chipsOf(cell(alpha, "state")).value(0).color, 4);
    undoAll();
    ASSERT_TRUE(waitUntil([&] { return columnOf("status") >= 0; }));
}

TEST_F(PropertyTableTest, DeleteAndOptionChangesFromTheHeaderMenu)
{
    find(headerMenu("done").get(), {"Delete “done”"})->trigger();
    settle();
    EXPECT_EQ(state->undoStack()->undoText(), "Delete done");
    EXPECT_FALSE(readAll(alpha).contains("done:"));
    settle();
    EXPECT_EQ(readAll(beta), "---\n# planning\nstatus: done\n---\nBeta\n");
    EXPECT_EQ(columnOf("done"), -1);

    find(headerMenu("status", "later").get(), {"Options", "open", "Rename…"})->trigger();
    settle();
    EXPECT_EQ(state->undoStack()->undoText(), "Rename open");
    EXPECT_TRUE(readAll(alpha).contains("status: later\n"));
    settle();
    EXPECT_EQ(readAll(gamma), "---\nstatus: later\n---\nGamma, with Windows line ends\r\nbelow\r\n");
    find(headerMenu("status").get(), {"Options", "done", "Color", "Red"})->trigger();
    settle();
    EXPECT_EQ(state->undoStack()->undoText(), "Color done");
    find(headerMenu("status").get(), {"Options", "done", "Move Up"})->trigger();
    EXPECT_EQ(store->options("status", folder, pane()->unsortedItems()).first(), "done");
    find(headerMenu("tags").get(), {"Options", "x", "Delete"})->trigger();
    settle();
    EXPECT_EQ(state->undoStack()->undoText(), "Delete x");
    EXPECT_TRUE(readAll(alpha).contains("tags: [y]\n"));
    EXPECT_EQ(state->undoStack()->count(), 5);
    undoAll();
    EXPECT_EQ(store->columns(folder).optionColors.value("status"), (QMap<QString, int>{{"open", 4}}));
}

TEST_F(PropertyTableTest, ColumnsKeepTheirOrderVisibilityAndWidthsInColumnsJson)
{
    // Hide one column and the Size column, show Kind, from the menu.
    find(headerMenu("tags").get(), {"Hide Column"})->trigger();
    find(headerMenu("status").get(), {"Size"})->trigger();
    find(headerMenu("status").get(), {"Kind"})->trigger();
    EXPECT_EQ(headerOrder(), (QStringList{"Name", "Date Modified", "Kind", "status", "done", "due"}));
    // Drag "due" before "status", and widen "status".
    QHeaderView* header = view()->header();
    header->moveSection(header->visualIndex(columnOf("due")), header->visualIndex(columnOf("status")));
    ASSERT_TRUE(waitUntil([&] { return store->columns(folder).shown == QStringList{"due", "status", "done"}; }));
    EXPECT_EQ(headerOrder(), (QStringList{"Name", "Date Modified", "Kind", "due", "status", "done"}));
    header->resizeSection(columnOf("status"), 233);
    decoration()->headerLayout()->saveWidths();

    // What was saved is what the next start reads, and a new window lays the header out from it.
    FileProperties reread(nullptr, columnsFile());
    const FolderColumns saved = reread.columns(folder);
    EXPECT_EQ(saved.shown, (QStringList{"due", "status", "done"}));
    EXPECT_TRUE(saved.hidesSize);
    EXPECT_TRUE(saved.showsKind);
    EXPECT_EQ(saved.widths.value("status"), 233);
    store = std::make_unique<FileProperties>(nullptr, columnsFile());
    openWindow();
    EXPECT_EQ(headerOrder(), (QStringList{"Name", "Date Modified", "Kind", "due", "status", "done"}));
    EXPECT_EQ(view()->header()->sectionSize(columnOf("status")), 233);
}

TEST_F(PropertyTableTest, DamagedColumnsJsonGivesDefaultsAndAMessage)
{
    tree.file(QString("settings/columns.json"), "{\"/x\": [1, 2");
    store = std::make_unique<FileProperties>(nullptr, columnsFile());
    openWindow();
    ASSERT_TRUE(waitUntil([&] { return window->toasts()->currentMessage().contains("column settings"); }));
    EXPECT_EQ(headerOrder(), (QStringList{"Name", "Date Modified", "Size"}));
    // The table still works: a column shown now is saved in a fresh file.
    find(headerMenu("Name").get(), {"status"})->trigger();
    EXPECT_EQ(FileProperties(nullptr, columnsFile()).columns(folder).shown, QStringList{"status"});
    settle();
    EXPECT_EQ(readAll(tree.path("settings/columns.damaged.json")), "{\"/x\": [1, 2");
}

TEST_F(PropertyTableTest, SortingByAPropertyPutsNotesWithoutItLastBothWays)
{
    ASSERT_TRUE(store->set("due", PropertyValue::ofText("2024-01-02"), {gamma}, state->undoStack()));
    QHeaderView* header = view()->header();
    Q_EMIT header->sectionClicked(columnOf("due"));
    ASSERT_TRUE(waitUntil([&] { return names() == QStringList{"gamma.md", "alpha.md", "beta.md"}; })) << names().join(' ').toStdString();
    EXPECT_EQ(header->sortIndicatorSection(), columnOf("due"));
    Q_EMIT header->sectionClicked(columnOf("due"));
    ASSERT_TRUE(waitUntil([&] { return names() == QStringList{"alpha.md", "gamma.md", "beta.md"}; })) << names().join(' ').toStdString();
    EXPECT_EQ(header->sortIndicatorOrder(), Qt::DescendingOrder);
    // The indicator stays on the sorted property when its column moves.
    header->moveSection(header->visualIndex(columnOf("due")), header->visualIndex(columnOf("status")));
    ASSERT_TRUE(waitUntil([&] { return store->columns(folder).shown.first() == "due"; })) << store->columns(folder).shown.join(" ").toStdString() << " " << headerOrder().join(" ").toStdString();
    EXPECT_EQ(header->sortIndicatorSection(), columnOf("due"));
    EXPECT_EQ(names(), (QStringList{"alpha.md", "gamma.md", "beta.md"}));
    // Hiding it goes back to the pane's own sort, by name.
    find(headerMenu("due").get(), {"Hide Column"})->trigger();
    ASSERT_TRUE(waitUntil([&] { return names() == QStringList{"alpha.md", "beta.md", "gamma.md"}; })) << names().join(' ').toStdString();
    EXPECT_EQ(header->sortIndicatorSection(), int(FileListModel::NameColumn));
}

TEST_F(PropertyTableTest, TheListShowsNoSortArrowWhileAPropertySortsTheRows)
{
    ASSERT_TRUE(store->set("due", PropertyValue::ofText("2024-01-02"), {gamma}, state->undoStack()));
    settle();
    Q_EMIT view()->header()->sectionClicked(columnOf("due"));
    ASSERT_TRUE(waitUntil([&] { return names() == QStringList{"gamma.md", "alpha.md", "beta.md"}; })) << names().join(' ').toStdString();

    pane()->chooseViewMode(ViewMode::list);
    QApplication::processEvents();
    QHeaderView* listHeader = window->activePaneWidget()->listView()->header();
    EXPECT_EQ(names(), (QStringList{"gamma.md", "alpha.md", "beta.md"}));
    EXPECT_EQ(listHeader->sortIndicatorSection(), -1) << "Name isn't what the rows are sorted by";
    // Typing in the filter keeps the sort and its arrows.
    pane()->setFiltering(true);
    pane()->setFilter("a");
    QApplication::processEvents();
    EXPECT_EQ(listHeader->sortIndicatorSection(), -1);
    EXPECT_EQ(view()->header()->sortIndicatorSection(), columnOf("due"));
    pane()->setFiltering(false);
    // Choosing the list's own sort ends the property's, and the arrow shows it.
    Q_EMIT listHeader->sectionClicked(FileListModel::ModifiedColumn);
    EXPECT_FALSE(decoration()->propertySort().has_value());
    EXPECT_EQ(listHeader->sortIndicatorSection(), int(FileListModel::ModifiedColumn));
    EXPECT_EQ(view()->header()->sortIndicatorSection(), int(FileListModel::ModifiedColumn));
}

TEST_F(PropertyTableTest, TheSortFollowsARenamedPropertyThroughUndoAndRedo)
{
    ASSERT_TRUE(store->set("due", PropertyValue::ofText("2024-01-02"), {gamma}, state->undoStack()));
    settle();
    const QStringList byDue{"gamma.md", "alpha.md", "beta.md"};
    QHeaderView* header = view()->header();
    Q_EMIT header->sectionClicked(columnOf("due"));
    ASSERT_TRUE(waitUntil([&] { return names() == byDue; })) << names().join(' ').toStdString();

    find(headerMenu("due", "deadline").get(), {"Rename “due”…"})->trigger();
    settle();
    ASSERT_TRUE(waitUntil([&] { return columnOf("deadline") >= 0; }));
    EXPECT_EQ(decoration()->propertySort(), "deadline");
    EXPECT_EQ(header->sortIndicatorSection(), columnOf("deadline"));
    QApplication::processEvents();
    EXPECT_EQ(names(), byDue);
    // A second click on the renamed column flips the same sort.
    Q_EMIT header->sectionClicked(columnOf("deadline"));
    ASSERT_TRUE(waitUntil([&] { return names() == QStringList{"alpha.md", "gamma.md", "beta.md"}; })) << names().join(' ').toStdString();
    EXPECT_EQ(header->sortIndicatorOrder(), Qt::DescendingOrder);

    state->undoStack()->undo();

    settle();
    ASSERT_TRUE(waitUntil([&] { return columnOf("due") >= 0; }));
    EXPECT_EQ(decoration()->propertySort(), "due");
    EXPECT_EQ(header->sortIndicatorSection(), columnOf("due"));
    EXPECT_EQ(header->sortIndicatorOrder(), Qt::DescendingOrder);
    ASSERT_TRUE(waitUntil([&] { return names() == QStringList{"alpha.md", "gamma.md", "beta.md"}; })) << names().join(' ').toStdString();
    state->undoStack()->redo();
    settle();
    ASSERT_TRUE(waitUntil([&] { return columnOf("deadline") >= 0; }));
    EXPECT_EQ(decoration()->propertySort(), "deadline");
    EXPECT_EQ(header->sortIndicatorSection(), columnOf("deadline"));

    // Deleting it still ends the sort.
    find(headerMenu("deadline").get(), {"Delete “deadline”"})->trigger();
    ASSERT_TRUE(waitUntil([&] { return !decoration()->propertySort(); }));
    EXPECT_EQ(header->sortIndicatorSection(), int(FileListModel::NameColumn));
}

TEST_F(PropertyTableTest, ADoubleClickOnAPropertyCellEditsItInPlace)
{
    click(view()->visualRect(cell(gamma, "due")).center(), /*twice=*/true);
    QApplication::processEvents();
    auto* editor = view()->viewport()->findChild<QDateEdit*>();
    ASSERT_NE(editor, nullptr);
    EXPECT_TRUE(editor->isVisible());
}

TEST_F(PropertyTableTest, AClickOnAVisibleCellNeverScrollsAndADoubleClickEditsThatCell)
{
    window->resize(700, 600);
    QApplication::processEvents();
    // The cursor's cell on alpha's status; then the table scrolled all the way right.
    pane()->click(alpha, Qt::NoModifier);
    view()->selectionModel()->setCurrentIndex(cell(alpha, "status"), QItemSelectionModel::NoUpdate);
    QScrollBar* across = view()->horizontalScrollBar();
    ASSERT_GT(across->maximum(), 0) << "the table must be wider than the pane";
    across->setValue(across->maximum());
    QApplication::processEvents();
    const int scrolled = across->value();
    const QRect due = view()->visualRect(cell(gamma, "due"));
    ASSERT_TRUE(view()->viewport()->rect().contains(due)) << "gamma's due cell in sight";

    click(due.center());
    QApplication::processEvents();
    EXPECT_EQ(across->value(), scrolled);
    EXPECT_EQ(view()->currentIndex(), cell(gamma, "due"));
    EXPECT_EQ(pane()->cursor(), gamma);

    click(due.center(), /*twice=*/true);
    QApplication::processEvents();
    EXPECT_EQ(across->value(), scrolled);
    auto* editor = view()->viewport()->findChild<QDateEdit*>();
    ASSERT_NE(editor, nullptr);
    EXPECT_TRUE(editor->isVisible());
    EXPECT_TRUE(view()->visualRect(cell(gamma, "due")).contains(editor->geometry().center()));
}

TEST_F(PropertyTableTest, OptionsAndTypesComeFromTheWholeFolderNotTheFilteredRows)
{
    FolderColumns columns = store->columns(folder);
    columns.options.clear();
    columns.filters = {{QUuid::createUuid(), "status", PropertyFilter::Condition::differs, "done"}};
    ASSERT_TRUE(store->setColumns(folder, columns));
    ASSERT_TRUE(waitUntil([&] { return pane()->items().size() == 2; })); // beta is filtered out
    PropertyCellDelegate delegate;
    QWidget parent;
    std::unique_ptr<QWidget> editor(delegate.createEditor(&parent, QStyleOptionViewItem(), cell(alpha, "status")));
    auto* combo = qobject_cast<QComboBox*>(editor.get());
    ASSERT_NE(combo, nullptr); // still a select: three values, two of them alike
    EXPECT_GE(combo->findText("done"), 0);
}
