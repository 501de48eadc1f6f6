// The four views of one pane, keys pressed as the window gets them: the same keys move and select
// the same way in each, Return, Backspace and Esc run the catalogue's pane commands in each,
// Ctrl+1…4 switch views and remember them per folder, Ctrl+Alt+1…4 sort, the filter field
// narrows and clears, Vim keys move when they are on, and a folder that changes under an open
// filter keeps the filter. The list's columns fit their text in a pane of its own.

#include "platform/XdgPaths.h"
#include "state/WindowState.h"
#include "support/KeyPress.h"
#include "support/TempHome.h"
#include "support/TestMain.h"
#include "ui/pane/FilterBar.h"
#include "ui/pane/PaneWidget.h"
#include "ui/views/ColumnsView.h"
#include "ui/views/FolderColumnModel.h"
#include "ui/views/FileGridView.h"
#include "ui/views/FileListView.h"
#include "ui/views/FileTableView.h"
#include "ui/window/MainWindow.h"

#include <QApplication>
#include <QDir>
#include <QHeaderView>
#include <QKeyEvent>
#include <gtest/gtest.h>

namespace orwick {
namespace {

using test::TempTree;
using test::waitUntil;

// The folder of every test: six files and a folder with one file inside.
class PaneViewsFixture : public ::testing::Test {
protected:
    void writeTree()
    {
        for (const char* name : {"alpha.txt", "beta.txt", "gamma.txt", "delta.txt", "epsilon.txt", "zeta.txt"})
            tree.file(QString::fromLatin1(name), "x");
        tree.folder(QStringLiteral("folder"));
        tree.file(QStringLiteral("folder/inside.txt"), "y");
        preferences.setGridForMedia(false);
    }
    QStringList selectedNames() const
    {
        QStringList names;
        for (const FileItem& item : pane->selectedItems())
            names << item.name;
        return names;
    }
    QString cursorName() const { return pane->cursor() ? pane->cursor()->fileName() : QString(); }
    QStringList shownNames() const
    {
        QStringList names;
        for (const FileItem& item : pane->items())
            names << item.name;
        return names;
    }

    TempTree tree;
    ViewPreferences preferences;
    PaneState* pane = nullptr;
    PaneWidget* widget = nullptr;
};

// The keys as the window gets them: a real window on the folder, each key offered to the
// window's shortcuts first (the catalogue's commands), then to the focused view.
class PaneViewsTest : public PaneViewsFixture {
protected:
    void SetUp() override
    {
        writeTree();
        state = std::make_unique<WindowState>(tree.root(), &preferences);
        window = std::make_unique<MainWindow>(state.get());
        window->resize(1100, 700);
        window->show();
        window->activateWindow();
        ASSERT_TRUE(waitUntil([&] { return QApplication::activeWindow() == window.get(); }));
        pane = state->activePane();
        widget = window->activePaneWidget();
        ASSERT_TRUE(waitUntil([&] { return pane->items().size() == 7; }));
    }

    QWidget* keyTarget(ViewMode mode) const
    {
        switch (mode) {
        case ViewMode::grid: return widget->gridView();
        case ViewMode::columns: return widget->columnsView()->currentColumn();
        case ViewMode::table: return widget->tableView();
        case ViewMode::list: break;
        }
        return widget->listView();
    }
    void press(QWidget* target, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier, const QString& text = {})
    {
        target->setFocus();
        test::pressKey(target, key, modifiers, text);
    }
    void pressInView(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier, const QString& text = {})
    {
        press(keyTarget(pane->viewMode()), key, modifiers, text);
    }

    std::unique_ptr<WindowState> state;
    std::unique_ptr<MainWindow> window;
};

// The list's columns in a pane of its own, resized at will.
class PaneListColumnsTest : public PaneViewsFixture {
protected:
    void SetUp() override
    {
        writeTree();
        ownPane = std::make_unique<PaneState>(tree.root(), &preferences);
        ownWidget = std::make_unique<PaneWidget>(ownPane.get());
        pane = ownPane.get();
        widget = ownWidget.get();
        widget->resize(900, 600);
        widget->show();
        ASSERT_TRUE(waitUntil([&] { return pane->items().size() == 7; }));
    }

    std::unique_ptr<PaneState> ownPane;
    std::unique_ptr<PaneWidget> ownWidget;
};

TEST_F(PaneViewsTest, MovingAndSelectingAreTheSameInEveryView)
{
    struct Outcome {
        QStringList selected;
        QString cursor;
        bool operator==(const Outcome&) const = default;
    };
    QList<Outcome> outcomes;
    for (ViewMode mode : {ViewMode::list, ViewMode::table, ViewMode::grid, ViewMode::columns}) {
        SCOPED_TRACE(viewModeName(mode).toStdString());
        pane->chooseViewMode(mode);
        ASSERT_TRUE(waitUntil([&] { return widget->itemsView()->isVisible(); }));
        pane->typeAhead(QString(), -10'000); // type-select starts over at the next letter
        pane->clearSelection();
        pane->moveCursorToEnd(false, false);
        // Down twice (a row in the grid is one tile here: one column is forced below), extend
        // one more, type-select, select all, invert.
        pane->setGridColumns(1);
        if (mode == ViewMode::grid)
            pressInView(Qt::Key_Right);
        else
            pressInView(Qt::Key_Down);
        pressInView(Qt::Key_Down);
        pressInView(Qt::Key_Down, Qt::ShiftModifier);
        Outcome moved{selectedNames(), cursorName()};
        pressInView(Qt::Key_Z, Qt::NoModifier, QStringLiteral("z"));
        Outcome typed{selectedNames(), cursorName()};
        pressInView(Qt::Key_A, Qt::ControlModifier);
        const qsizetype all = pane->selection().size();
        pane->click(pane->items().first().url, Qt::NoModifier);
        pressInView(Qt::Key_I, Qt::ControlModifier | Qt::ShiftModifier);
        const qsizetype inverted = pane->selection().size();
        EXPECT_EQ(all, 7);
        EXPECT_EQ(inverted, 6);
        EXPECT_EQ(typed.selected, QStringList{"zeta.txt"});
        outcomes << moved;
    }
    EXPECT_EQ(outcomes[0].selected, QStringList({"beta.txt", "delta.txt"}));
    EXPECT_EQ(outcomes[0].cursor, "delta.txt");
    for (const Outcome& outcome : outcomes)
        EXPECT_EQ(outcome, outcomes[0]);
}

TEST_F(PaneViewsTest, ReturnBackspaceAndEscapeAreThePanesCommandsInEveryView)
{
    const FilePath folder = tree.path(QStringLiteral("folder"));
    for (ViewMode mode : {ViewMode::list, ViewMode::table, ViewMode::grid, ViewMode::columns}) {
        SCOPED_TRACE(viewModeName(mode).toStdString());
        pane->chooseViewMode(mode);
        ASSERT_TRUE(waitUntil([&] { return widget->itemsView()->isVisible(); }));
        pane->click(folder, Qt::NoModifier);
        pressInView(Qt::Key_Return);
        ASSERT_TRUE(waitUntil([&] { return pane->url() == folder && !pane->isLoading(); }));
        pressInView(Qt::Key_Backspace);
        ASSERT_TRUE(waitUntil([&] { return pane->url() == tree.root() && !pane->isLoading(); }));
        pane->click(tree.path(QStringLiteral("beta.txt")), Qt::NoModifier);
        pane->setFiltering(true);
        pressInView(Qt::Key_Escape);
        EXPECT_TRUE(pane->selection().isEmpty());
        EXPECT_TRUE(pane->isFiltering()) << "the selection goes first";
        pressInView(Qt::Key_Escape);
        EXPECT_FALSE(pane->isFiltering());
    }
    // In the filter field the keys are the field's: Return goes into the list, opening nothing.
    pane->chooseViewMode(ViewMode::list);
    pane->click(folder, Qt::NoModifier);
    pane->setFiltering(true);
    press(widget->filterBar(), Qt::Key_Return);
    EXPECT_EQ(pane->url(), tree.root());
}

TEST_F(PaneViewsTest, ViewAndSortKeysSwitchAndViewsAreRememberedPerFolder)
{
    pressInView(Qt::Key_1, Qt::ControlModifier);
    EXPECT_EQ(pane->viewMode(), ViewMode::grid);
    EXPECT_EQ(widget->itemsView(), widget->gridView());
    pressInView(Qt::Key_4, Qt::ControlModifier);
    EXPECT_EQ(pane->viewMode(), ViewMode::table);
    EXPECT_EQ(preferences.mode(tree.root(), false).first, ViewMode::table);
    pressInView(Qt::Key_3, Qt::ControlModifier);
    EXPECT_EQ(pane->viewMode(), ViewMode::columns);
    // Ctrl+Alt+1…4 sort (the direction rules are the pane's own, checked headless).
    pressInView(Qt::Key_3, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_EQ(pane->sortKey(), SortKey::size);

    // Columns stay on while moving into a folder and out again (Right and Left).
    pane->click(tree.path(QStringLiteral("folder")), Qt::NoModifier);
    pressInView(Qt::Key_Right);
    ASSERT_TRUE(waitUntil([&] { return pane->url() == tree.path(QStringLiteral("folder")) && !pane->isLoading(); }));
    EXPECT_EQ(pane->viewMode(), ViewMode::columns);
    pressInView(Qt::Key_Left);
    ASSERT_TRUE(waitUntil([&] { return pane->url() == tree.root() && !pane->isLoading(); }));
    EXPECT_EQ(cursorName(), "folder");
}

TEST_F(PaneViewsTest, ColumnsOfADeepFolderScrollToItsOwnColumn)
{
    const FilePath deep = tree.folder(QStringLiteral("a/b/c/d/e/f/g"));
    tree.file(QStringLiteral("a/b/c/d/e/f/g/inner.txt"), "z");
    pane->navigate(deep);
    ASSERT_TRUE(waitUntil([&] { return pane->url() == deep && !pane->isLoading(); }));
    pressInView(Qt::Key_3, Qt::ControlModifier);
    ASSERT_EQ(pane->viewMode(), ViewMode::columns);
    ColumnsView* columns = widget->columnsView();
    auto inSight = [columns] {
        QWidget* own = columns->currentColumn();
        const QRect rect(own->mapTo(columns->viewport(), QPoint()), own->size());
        return columns->viewport()->rect().contains(rect);
    };
    EXPECT_TRUE(waitUntil(inSight)) << "the folder's own column is scrolled into sight";
    pressInView(Qt::Key_Down);
    EXPECT_TRUE(waitUntil(inSight));
}

// The side columns each read a folder: a pane shown as a list doesn't read its ancestors at
// every move, and they come as soon as the columns are shown.
TEST_F(PaneViewsTest, SideColumnsAreMadeOnlyWhileTheColumnsAreShown)
{
    ColumnsView* columns = widget->columnsView();
    auto sideColumns = [columns] { return columns->findChildren<FolderColumnModel*>().size(); };
    const FilePath deep = tree.folder(QStringLiteral("a/b"));
    ASSERT_NE(pane->viewMode(), ViewMode::columns);
    pane->navigate(deep);
    ASSERT_TRUE(waitUntil([&] { return pane->url() == deep && !pane->isLoading(); }));
    EXPECT_EQ(sideColumns(), 0) << "not shown as columns";

    pressInView(Qt::Key_3, Qt::ControlModifier);
    ASSERT_EQ(pane->viewMode(), ViewMode::columns);
    qsizetype levels = 0;
    for (FilePath level = deep; !level.isRoot(); level = level.parent())
        ++levels;
    EXPECT_EQ(sideColumns(), levels) << "one column for each enclosing folder, from the root down";

    pressInView(Qt::Key_2, Qt::ControlModifier);
    ASSERT_EQ(pane->viewMode(), ViewMode::list);
    pane->navigate(tree.root());
    ASSERT_TRUE(waitUntil([&] { return pane->url() == tree.root() && !pane->isLoading(); }));
    EXPECT_EQ(sideColumns(), 0) << "the columns went with the move made in the list";
}

// Most panes are only ever shown as a list: the other views are made the first time they show.
TEST_F(PaneViewsTest, TheOtherViewsAreMadeWhenFirstShown)
{
    ASSERT_EQ(pane->viewMode(), ViewMode::list);
    EXPECT_EQ(widget->findChild<FileTableView*>(), nullptr);
    EXPECT_EQ(widget->findChild<FileGridView*>(), nullptr);
    EXPECT_EQ(widget->findChild<ColumnsView*>(), nullptr);
    EXPECT_FALSE(widget->hasTableView());
    pressInView(Qt::Key_1, Qt::ControlModifier);
    ASSERT_EQ(pane->viewMode(), ViewMode::grid);
    ASSERT_NE(widget->findChild<FileGridView*>(), nullptr);
    EXPECT_TRUE(widget->findChild<FileGridView*>()->hasFocus());
    pressInView(Qt::Key_4, Qt::ControlModifier);
    ASSERT_EQ(pane->viewMode(), ViewMode::table);
    auto* table = widget->findChild<FileTableView*>();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(widget->itemsView(), table);
    EXPECT_TRUE(table->isVisible());
    EXPECT_EQ(table->model()->rowCount(), pane->items().size());
    EXPECT_TRUE(table->hasFocus()) << "the keys went along to the new view";
}

TEST_F(PaneViewsTest, FilterFieldNarrowsAndEscapeClears)
{
    pressInView(Qt::Key_F, Qt::ControlModifier);
    FilterBar* field = widget->filterBar();
    ASSERT_TRUE(field->isVisible());
    EXPECT_TRUE(pane->isFiltering());
    for (const QString& letter : {QStringLiteral("t"), QStringLiteral("a")})
        press(field, letter.at(0).toUpper().unicode(), Qt::NoModifier, letter);
    ASSERT_TRUE(waitUntil([&] { return pane->filter() == "ta"; }));
    EXPECT_EQ(shownNames(), QStringList({"beta.txt", "delta.txt", "zeta.txt"}));

    press(field, Qt::Key_Z, Qt::NoModifier, QStringLiteral("z"));
    EXPECT_TRUE(pane->items().isEmpty());
    EXPECT_EQ(pane->emptyText(), QStringLiteral("Nothing matches “taz”"));

    press(field, Qt::Key_Escape);
    EXPECT_FALSE(field->isVisible());
    EXPECT_FALSE(pane->isFiltering());
    EXPECT_TRUE(pane->filter().isEmpty());
    EXPECT_EQ(pane->items().size(), 7);
}

TEST_F(PaneViewsTest, FilterStaysWhileTheFolderChanges)
{
    pane->setFiltering(true);
    pane->setFilter(QStringLiteral("beta"));
    ASSERT_EQ(shownNames(), QStringList({"beta.txt"}));
    tree.file(QStringLiteral("alphabet.md"), "new");
    tree.file(QStringLiteral("best data.txt"), "new");
    ASSERT_TRUE(waitUntil([&] { return pane->items().size() == 2; }, 10000));
    EXPECT_EQ(pane->filter(), "beta");
    EXPECT_TRUE(widget->filterBar()->isVisible());
    EXPECT_EQ(shownNames(), QStringList({"best data.txt", "beta.txt"}));
}

TEST_F(PaneViewsTest, VimKeysMoveOnlyWhenOn)
{
    pane->moveCursorToEnd(false, false);
    pressInView(Qt::Key_J, Qt::NoModifier, QStringLiteral("j"));
    EXPECT_EQ(cursorName(), "folder"); // off: type-select of "j" finds nothing, keeps the caret
    preferences.setVimKeys(true);
    pane->moveCursorToEnd(false, false);
    pressInView(Qt::Key_J, Qt::NoModifier, QStringLiteral("j"));
    pressInView(Qt::Key_J, Qt::NoModifier, QStringLiteral("j"));
    EXPECT_EQ(cursorName(), "beta.txt");
    pressInView(Qt::Key_K, Qt::NoModifier, QStringLiteral("k"));
    EXPECT_EQ(cursorName(), "alpha.txt");
    pressInView(Qt::Key_J, Qt::ShiftModifier, QStringLiteral("J"));
    EXPECT_EQ(selectedNames(), QStringList({"alpha.txt", "beta.txt"}));
    pressInView(Qt::Key_G, Qt::ShiftModifier, QStringLiteral("G"));
    EXPECT_EQ(cursorName(), "zeta.txt");
    pressInView(Qt::Key_G, Qt::NoModifier, QStringLiteral("g"));
    EXPECT_EQ(cursorName(), "zeta.txt"); // one g waits for the second
    pressInView(Qt::Key_G, Qt::NoModifier, QStringLiteral("g"));
    EXPECT_EQ(cursorName(), "folder");
    pressInView(Qt::Key_Z, Qt::NoModifier, QStringLiteral("z"));
    EXPECT_EQ(cursorName(), "folder"); // letters no longer jump to names

    pressInView(Qt::Key_Slash, Qt::NoModifier, QStringLiteral("/"));
    EXPECT_TRUE(widget->filterBar()->isVisible());
    press(widget->filterBar(), Qt::Key_Escape);

    pressInView(Qt::Key_L, Qt::NoModifier, QStringLiteral("l"));
    ASSERT_TRUE(waitUntil([&] { return pane->url() == tree.path(QStringLiteral("folder")) && !pane->isLoading(); }));
    pressInView(Qt::Key_H, Qt::NoModifier, QStringLiteral("h"));
    ASSERT_TRUE(waitUntil([&] { return pane->url() == tree.root() && !pane->isLoading(); }));

    // In the grid, h and l move left and right.
    pane->chooseViewMode(ViewMode::grid);
    pane->setGridColumns(3);
    pane->moveCursorToEnd(false, false);
    pressInView(Qt::Key_L, Qt::NoModifier, QStringLiteral("l"));
    EXPECT_EQ(cursorName(), "alpha.txt");
    pressInView(Qt::Key_J, Qt::NoModifier, QStringLiteral("j"));
    EXPECT_EQ(cursorName(), "epsilon.txt");
    pressInView(Qt::Key_H, Qt::NoModifier, QStringLiteral("h"));
    EXPECT_EQ(cursorName(), "delta.txt");
    EXPECT_EQ(pane->url(), tree.root());
}

TEST_F(PaneListColumnsTest, FitTheirTextAndGiveWayInANarrowPane)
{
    pane->chooseViewMode(ViewMode::list);
    FileListView* view = widget->listView();
    QHeaderView* head = view->header();
    const QFontMetrics metrics = view->fontMetrics();
    auto width = [&](FileListModel::Column column) { return head->sectionSize(column); };
    const int date = metrics.horizontalAdvance(QStringLiteral("30 Sep 2026 00:00"));
    const int size = metrics.horizontalAdvance(QStringLiteral("999.9 MB"));
    EXPECT_GT(width(FileListModel::ModifiedColumn), date) << "a date fits";
    EXPECT_LT(width(FileListModel::ModifiedColumn), date * 3 / 2) << "and the column isn't half empty";
    EXPECT_GT(width(FileListModel::SizeColumn), size);

    widget->resize(420, 600);
    QApplication::processEvents();
    const int viewport = view->viewport()->width();
    EXPECT_GE(width(FileListModel::NameColumn), viewport / 3 - 1) << "Name keeps a third";
    EXPECT_GT(width(FileListModel::SizeColumn), size) << "a size is never cut";
    EXPECT_LE(width(FileListModel::NameColumn) + width(FileListModel::ModifiedColumn) + width(FileListModel::SizeColumn)
                  + width(FileListModel::KindColumn),
              viewport + 1)
        << "nothing runs off the pane's edge";

    // Narrower still: Kind and then Date Modified leave rather than show a few cut letters.
    widget->resize(230, 600);
    QApplication::processEvents();
    EXPECT_TRUE(head->isSectionHidden(FileListModel::KindColumn));
    EXPECT_TRUE(head->isSectionHidden(FileListModel::ModifiedColumn));
    EXPECT_FALSE(head->isSectionHidden(FileListModel::SizeColumn));
    EXPECT_GE(width(FileListModel::NameColumn), view->viewport()->width() / 3 - 1) << "Name keeps a third";
    widget->resize(900, 600);
    QApplication::processEvents();
    EXPECT_FALSE(head->isSectionHidden(FileListModel::KindColumn)) << "back when there is room";
    EXPECT_FALSE(head->isSectionHidden(FileListModel::ModifiedColumn));
    EXPECT_GT(width(FileListModel::ModifiedColumn), date);

    head->resizeSection(FileListModel::KindColumn, 333); // the user's own width stays
    widget->resize(900, 600);
    QApplication::processEvents();
    EXPECT_EQ(width(FileListModel::KindColumn), 333);
}

TEST_F(PaneListColumnsTest, TheTrashShowsWhereEachItemCameFromAndWhenItWasDeletedAndSortsByThem)
{
    // Three items in the real Trash of the temporary home, as any program leaves them.
    const FilePath trashFolder = xdg::homeTrash();
    QDir(trashFolder.text()).removeRecursively();
    const FilePath files = trashFolder.child(QByteArrayView("files"));
    const auto trashed = [&](const char* name, const FilePath& from, const char* when) {
        ASSERT_TRUE(test::writeFile(files.child(QByteArrayView(name)), "x"));
        ASSERT_TRUE(test::writeFile(trashFolder.child(QByteArrayView("info")).child(QByteArrayView(QByteArray(name) + ".trashinfo")),
                                    "[Trash Info]\nPath=" + from.native().toPercentEncoding("/") + "\nDeletionDate=" + when + "\n"));
    };
    trashed("b.txt", tree.path(QStringLiteral("Work/b.txt")), "2024-05-01T10:20:30");
    trashed("a.txt", tree.path(QStringLiteral("Zoo/a.txt")), "2023-01-02T03:04:05");
    trashed("c.txt", tree.path(QStringLiteral("Art/c.txt")), "2025-12-24T18:00:00");

    pane->chooseViewMode(ViewMode::list);
    FileListView* view = widget->listView();
    QHeaderView* head = view->header();
    QAbstractItemModel* model = view->model();
    EXPECT_TRUE(head->isSectionHidden(FileListModel::OriginalLocationColumn)) << "a folder has no such column";
    EXPECT_TRUE(head->isSectionHidden(FileListModel::DeletedColumn));

    pane->show(Listing::of(Listing::Kind::trash));
    ASSERT_TRUE(waitUntil([&] { return !pane->isLoading() && pane->items().size() == 3; }));
    QApplication::processEvents();
    EXPECT_EQ(model->headerData(FileListModel::OriginalLocationColumn, Qt::Horizontal).toString(), QStringLiteral("Original Location"));
    EXPECT_EQ(model->headerData(FileListModel::DeletedColumn, Qt::Horizontal).toString(), QStringLiteral("Date Deleted"));
    EXPECT_FALSE(head->isSectionHidden(FileListModel::OriginalLocationColumn));
    EXPECT_FALSE(head->isSectionHidden(FileListModel::DeletedColumn));
    EXPECT_EQ(head->visualIndex(FileListModel::OriginalLocationColumn), 1) << "right after the name";
    EXPECT_EQ(head->visualIndex(FileListModel::DeletedColumn), 2);
    EXPECT_GT(head->sectionSize(FileListModel::DeletedColumn), view->fontMetrics().horizontalAdvance(QStringLiteral("24 Dec 2025 18:00")));
    const auto cell = [&](const QString& name, int column) {
        return model->index(pane->row(files.child(name)), column).data().toString();
    };
    EXPECT_EQ(cell(QStringLiteral("b.txt"), FileListModel::OriginalLocationColumn), tree.path(QStringLiteral("Work")).abbreviated());
    EXPECT_EQ(cell(QStringLiteral("b.txt"), FileListModel::DeletedColumn), QStringLiteral("1 May 2024 10:20"));
    EXPECT_EQ(model->index(pane->row(files.child(QStringLiteral("b.txt"))), FileListModel::OriginalLocationColumn)
                  .data(Qt::ToolTipRole).toString(),
              tree.path(QStringLiteral("Work/b.txt")).abbreviated());

    // A click on a title sorts by it, newest deletion first; a second click turns it round.
    Q_EMIT head->sectionClicked(FileListModel::DeletedColumn);
    EXPECT_EQ(pane->sortKey(), SortKey::dateDeleted);
    ASSERT_TRUE(waitUntil([&] { return shownNames() == QStringList({"c.txt", "b.txt", "a.txt"}); })) << shownNames().join(' ').toStdString();
    EXPECT_EQ(head->sortIndicatorSection(), int(FileListModel::DeletedColumn));
    Q_EMIT head->sectionClicked(FileListModel::DeletedColumn);
    ASSERT_TRUE(waitUntil([&] { return shownNames() == QStringList({"a.txt", "b.txt", "c.txt"}); })) << shownNames().join(' ').toStdString();
    Q_EMIT head->sectionClicked(FileListModel::OriginalLocationColumn);
    EXPECT_EQ(pane->sortKey(), SortKey::originalLocation);
    ASSERT_TRUE(waitUntil([&] { return shownNames() == QStringList({"c.txt", "b.txt", "a.txt"}); })) << "Art, Work, Zoo";

    // The table shows them too.
    pane->chooseViewMode(ViewMode::table);
    QHeaderView* tableHead = widget->tableView()->header();
    ASSERT_TRUE(waitUntil([&] { return widget->tableView()->isVisible(); }));
    EXPECT_FALSE(tableHead->isSectionHidden(FileListModel::OriginalLocationColumn));
    EXPECT_FALSE(tableHead->isSectionHidden(FileListModel::DeletedColumn));
    EXPECT_EQ(tableHead->sortIndicatorSection(), int(FileListModel::OriginalLocationColumn));

    // Back in a folder the columns go, and so does the sort by them.
    pane->chooseViewMode(ViewMode::list);
    pane->navigate(tree.root());
    ASSERT_TRUE(waitUntil([&] { return !pane->isLoading() && pane->items().size() == 7; }));
    EXPECT_TRUE(head->isSectionHidden(FileListModel::OriginalLocationColumn));
    EXPECT_TRUE(head->isSectionHidden(FileListModel::DeletedColumn));
    EXPECT_EQ(pane->sortKey(), SortKey::name);
    EXPECT_EQ(head->sortIndicatorSection(), int(FileListModel::NameColumn));

    // A width the user gives a Trash column is still its width the next time the Trash shows.
    pane->show(Listing::of(Listing::Kind::trash));
    ASSERT_TRUE(waitUntil([&] { return !pane->isLoading() && pane->items().size() == 3; }));
    QApplication::processEvents();
    const int wide = head->sectionSize(FileListModel::OriginalLocationColumn) + 57;
    head->resizeSection(FileListModel::OriginalLocationColumn, wide);
    pane->navigate(tree.root());
    ASSERT_TRUE(waitUntil([&] { return !pane->isLoading() && pane->items().size() == 7; }));
    pane->show(Listing::of(Listing::Kind::trash));
    ASSERT_TRUE(waitUntil([&] { return !pane->isLoading() && pane->items().size() == 3; }));
    QApplication::processEvents();
    EXPECT_EQ(head->sectionSize(FileListModel::OriginalLocationColumn), wide);
}

TEST_F(PaneListColumnsTest, ASizeKeepsAGutterBeforeTheKind)
{
    pane->chooseViewMode(ViewMode::list);
    FileListView* view = widget->listView();
    QApplication::processEvents();
    const QImage shot = view->viewport()->grab().toImage();
    const QRect row = view->visualRect(view->model()->index(1, FileListModel::NameColumn));
    const QHeaderView* head = view->header();
    const QColor ground = shot.pixelColor(head->sectionPosition(FileListModel::SizeColumn) + 2, row.center().y());
    // The ink of the row's size ("1 byte", right-aligned) and of its kind, column by column.
    auto inked = [&](int x) {
        for (int y = row.top(); y <= row.bottom() - 2; ++y) // above the caret's bar
            if (shot.pixelColor(x, y) != ground)
                return true;
        return false;
    };
    const int sizeStart = head->sectionPosition(FileListModel::SizeColumn), kindStart = head->sectionPosition(FileListModel::KindColumn);
    int sizeEnds = -1, kindBegins = -1;
    for (int x = sizeStart; x < kindStart; ++x)
        if (inked(x))
            sizeEnds = x;
    for (int x = kindStart; x < kindStart + head->sectionSize(FileListModel::KindColumn) && kindBegins < 0; ++x)
        if (inked(x))
            kindBegins = x;
    ASSERT_GE(sizeEnds, 0) << "no size drawn";
    ASSERT_GE(kindBegins, 0) << "no kind drawn";
    EXPECT_GE(kindBegins - sizeEnds, 2 * view->fontMetrics().averageCharWidth()) << "a size stays clear of the kind beside it";
}

} // namespace
} // namespace orwick
