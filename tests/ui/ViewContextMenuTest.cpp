// The context menu in each of the four views, as the window system delivers a right click (the
// press, then the context event on the rows' viewport) and as the Menu key and Shift+F10 reach
// the focused view: the same item commands everywhere, the Image submenu on a picture, the
// folder's menu on empty space, and the notes table's header keeping its own menu.

#include "NotesWindowFixture.h"
#include "WindowFixture.h"
#include "ui/views/ColumnsView.h"
#include "ui/views/FileGridView.h"
#include "ui/views/FileListModel.h"
#include "ui/views/FileListView.h"
#include "ui/views/FileTableView.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QImage>
#include <QMenu>
#include <QMouseEvent>
#include <QTimer>

namespace orwick {
namespace {

using test::waitUntil;

// What a popup menu said when it opened: its rows ("  " before a submenu's).
struct OpenedMenu {
    bool opened = false;
    QStringList titles;
    bool has(const QString& title) const { return titles.contains(title); }
    std::string text() const { return titles.join(u'|').toStdString(); }
};

// Runs `act`, reading and closing the popup menu it opens (menus run their own event loop).
OpenedMenu menuOpenedBy(const std::function<void()>& act)
{
    auto seen = std::make_shared<OpenedMenu>();
    QTimer::singleShot(0, [seen] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu)
            return;
        seen->opened = true;
        for (QAction* action : menu->actions()) {
            if (action->isSeparator())
                continue;
            seen->titles.append(action->text());
            if (action->menu())
                for (QAction* inner : action->menu()->actions())
                    if (!inner->isSeparator())
                        seen->titles.append(QStringLiteral("  ") + inner->text());
        }
        menu->close();
    });
    act();
    QApplication::processEvents(); // the reader runs even when nothing opened
    return *seen;
}

// A right click as X11 delivers it: the press, then the context event, both to the viewport.
void rightClick(QAbstractItemView* view, QPoint at)
{
    QWidget* viewport = view->viewport();
    const QPoint global = viewport->mapToGlobal(at);
    QMouseEvent press(QEvent::MouseButtonPress, at, global, Qt::RightButton, Qt::RightButton, Qt::NoModifier);
    QApplication::sendEvent(viewport, &press);
    QContextMenuEvent context(QContextMenuEvent::Mouse, at, global, Qt::NoModifier);
    QApplication::sendEvent(viewport, &context);
    QMouseEvent release(QEvent::MouseButtonRelease, at, global, Qt::RightButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(viewport, &release);
}

class ViewContextMenuTest : public test::WindowTest {
protected:
    FilePath photo, notes;

    void SetUp() override
    {
        QImage image(QSize(32, 24), QImage::Format_RGB32);
        image.fill(qRgb(40, 120, 200));
        photo = tree.path("photo.png");
        ASSERT_TRUE(image.save(photo.text(), "PNG"));
        notes = tree.file("notes.txt", "text");
        tree.file("readme.md", "# read me");
        open(tree.root());
    }

    QAbstractItemView* view()
    {
        PaneWidget* widget = window->activePaneWidget();
        switch (pane()->viewMode()) {
        case ViewMode::grid: return widget->gridView();
        case ViewMode::columns: return widget->columnsView()->currentColumn();
        case ViewMode::table: return widget->tableView();
        case ViewMode::list: break;
        }
        return widget->listView();
    }
    void show(ViewMode mode)
    {
        pane()->chooseViewMode(mode);
        ASSERT_TRUE(waitUntil([&] { return view()->isVisible() && view()->model()->rowCount() == 3; }));
        focusView();
    }
    void focusView()
    {
        // The offscreen platform leaves no window active after a popup closes.
        window->activateWindow();
        ASSERT_TRUE(waitUntil([&] { return QApplication::activeWindow() == window.get(); }));
        view()->setFocus(Qt::OtherFocusReason);
        ASSERT_TRUE(waitUntil([&] { return view()->hasFocus(); }));
    }
    QRect rowRect(const FilePath& item)
    {
        const QModelIndex index = view()->model()->index(pane()->row(item), FileListModel::NameColumn);
        view()->scrollTo(index);
        return view()->visualRect(index);
    }
    QStringList selectedNames() const
    {
        QStringList names;
        for (const FileItem& item : state->activePane()->selectedItems())
            names << item.name;
        return names;
    }
    // Below the last row and tile: nothing is there.
    QPoint emptySpace()
    {
        QRect rows;
        for (const FilePath& item : {photo, notes, tree.path("readme.md")})
            rows = rows.united(rowRect(item));
        const QPoint below(rows.left() + 4, rows.bottom() + 40);
        EXPECT_LT(below.y(), view()->viewport()->height()) << "the view is too short to have empty space";
        EXPECT_FALSE(view()->indexAt(below).isValid());
        return below;
    }
    void expectPictureMenu(const OpenedMenu& menu, const char* how)
    {
        ASSERT_TRUE(menu.opened) << how << ": no menu opened";
        EXPECT_TRUE(menu.has("Open")) << how << ": " << menu.text();
        EXPECT_TRUE(menu.has("Move to Trash")) << how << ": " << menu.text();
        EXPECT_TRUE(menu.has("Copy Image")) << how << ": " << menu.text();
        EXPECT_TRUE(menu.has("Image")) << how << ": " << menu.text();
        EXPECT_TRUE(menu.has("  Convert to PNG")) << how << ": " << menu.text();
        EXPECT_FALSE(menu.has("New Folder")) << how << ": " << menu.text();
    }
};

const ViewMode kModes[] = {ViewMode::list, ViewMode::table, ViewMode::grid, ViewMode::columns};

// In every view: on an unselected picture, on one row of a selection, and on empty space.
TEST_F(ViewContextMenuTest, ARightClickSelectsWhatItIsOnAndShowsItsMenuInEveryView)
{
    for (ViewMode mode : kModes) {
        SCOPED_TRACE(int(mode));
        show(mode);
        select(notes);
        const OpenedMenu picture = menuOpenedBy([&] { rightClick(view(), rowRect(photo).center()); });
        expectPictureMenu(picture, "right click");
        EXPECT_EQ(selectedNames(), QStringList{"photo.png"}) << "the clicked row is the selection";

        focusView();
        pane()->click(notes, Qt::ControlModifier);
        ASSERT_EQ(selectedNames().size(), 2);
        const OpenedMenu both = menuOpenedBy([&] { rightClick(view(), rowRect(photo).center()); });
        ASSERT_TRUE(both.opened);
        EXPECT_TRUE(both.has("Move to Trash")) << both.text();
        EXPECT_FALSE(both.has("Image")) << "not every item is a picture: " << both.text();
        EXPECT_EQ(selectedNames().size(), 2) << "a click on a selected row keeps the whole selection";

        focusView();
        const OpenedMenu folder = menuOpenedBy([&] { rightClick(view(), emptySpace()); });
        ASSERT_TRUE(folder.opened);
        EXPECT_TRUE(folder.has("New Folder")) << folder.text();
        EXPECT_TRUE(folder.has("New File")) << folder.text();
        EXPECT_FALSE(folder.has("Move to Trash")) << folder.text();
        EXPECT_TRUE(selectedNames().isEmpty()) << "the menu is for the folder, so nothing stays selected";
    }
}

TEST_F(ViewContextMenuTest, ShiftF10AndTheMenuKeyOpenTheMenuAtTheCursorRowInEveryView)
{
    for (ViewMode mode : kModes) {
        SCOPED_TRACE(int(mode));
        show(mode);
        select(photo);
        QApplication::processEvents(); // the columns view scrolls its column into sight once shown
        const QRect row(view()->viewport()->mapToGlobal(rowRect(photo).topLeft()), rowRect(photo).size());
        QPoint asked;
        const auto recording = QObject::connect(window->activePaneWidget(), &PaneWidget::contextMenuRequested,
                                                [&asked](const QPoint& at) { asked = at; });
        for (const auto& [key, modifiers] : {std::pair{int(Qt::Key_F10), Qt::KeyboardModifiers(Qt::ShiftModifier)},
                                             std::pair{int(Qt::Key_Menu), Qt::KeyboardModifiers(Qt::NoModifier)}}) {
            asked = {};
            focusView();
            const OpenedMenu menu = menuOpenedBy([&] { press(key, modifiers); });
            expectPictureMenu(menu, key == Qt::Key_Menu ? "Menu key" : "Shift+F10");
            EXPECT_TRUE(row.contains(asked)) << "the menu is asked for on the cursor's row, at (" << asked.x() << ", " << asked.y()
                                             << "), not inside " << row.x() << "," << row.y() << " " << row.width() << "x" << row.height();
        }
        QObject::disconnect(recording);
        focusView();
        const OpenedMenu plainF10 = menuOpenedBy([&] { press(Qt::Key_F10); });
        EXPECT_FALSE(plainF10.opened) << "F10 alone is not the menu key";
    }
}

TEST_F(ViewContextMenuTest, TheWindowSystemsKeyboardContextEventBesideTheMenuKeyOpensNothingOfItsOwn)
{
    // X11 sends a keyboard context event at the pointer and then the Menu key's press; the press
    // opens the menu at the cursor's row, so the event alone must not open a second one.
    show(ViewMode::grid);
    select(photo);
    const OpenedMenu menu = menuOpenedBy([&] {
        QContextMenuEvent context(QContextMenuEvent::Keyboard, QPoint(5, 5), view()->mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(view(), &context);
    });
    EXPECT_FALSE(menu.opened) << menu.text();
}

// The notes table: the header's right click opens the column menu, the rows' the item menu.
class NotesTableContextMenuTest : public test::NotesWindowTest {};

TEST_F(NotesTableContextMenuTest, TheHeaderKeepsItsColumnMenuBesideTheRowsItemMenu)
{
    FolderColumns columns;
    columns.shown = {"status"};
    writeNotes("---\nstatus: open\n---\n# Alpha\n", "# Beta\n", columns);
    openWindow();
    window->show();
    pane()->chooseViewMode(ViewMode::table);
    ASSERT_TRUE(waitUntil([&] { return !pane()->isLoading() && pane()->items().size() == 2; }));
    FileTableView* table = widget()->tableView();
    ASSERT_TRUE(waitUntil([&] { return table->isVisible(); }));
    QHeaderView* header = table->header();
    const int statusColumn = table->model()->columnCount() - 1;
    ASSERT_EQ(table->model()->headerData(statusColumn, Qt::Horizontal).toString().toLower(), QStringLiteral("status"));

    const QPoint onHeader(header->sectionViewportPosition(statusColumn) + 10, header->height() / 2);
    const OpenedMenu headerMenu = menuOpenedBy([&] {
        QContextMenuEvent context(QContextMenuEvent::Mouse, onHeader, header->viewport()->mapToGlobal(onHeader));
        QApplication::sendEvent(header->viewport(), &context);
    });
    ASSERT_TRUE(headerMenu.opened);
    EXPECT_TRUE(headerMenu.has("Hide Column")) << headerMenu.text();
    EXPECT_FALSE(headerMenu.has("Move to Trash")) << headerMenu.text();

    const QModelIndex alphaRow = table->model()->index(pane()->row(alpha), FileListModel::NameColumn);
    const OpenedMenu rowMenu = menuOpenedBy([&] { rightClick(table, table->visualRect(alphaRow).center()); });
    ASSERT_TRUE(rowMenu.opened);
    EXPECT_TRUE(rowMenu.has("Move to Trash")) << rowMenu.text();
    EXPECT_FALSE(rowMenu.has("Hide Column")) << rowMenu.text();
}

} // namespace
} // namespace orwick
