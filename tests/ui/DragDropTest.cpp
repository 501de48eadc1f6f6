// Drag and drop in a real window over real files: drops on a pane's background and on folder
// rows run one job of the engine with one undo step, the keys choose copy, move or links,
// refusals are said in a toast, listings take no drops, the tab bar opens dropped folders, and a
// press inside a selection keeps it for dragging.

#include "WindowFixture.h"
#include "fileops/FileClipboard.h"
#include "platform/DirectoryReader.h"
#include "support/ScratchMount.h"
#include "ui/views/ColumnsView.h"
#include "ui/views/FileGridView.h"
#include "ui/views/FileListView.h"
#include "ui/views/FileTableView.h"
#include "ui/views/ViewDragDrop.h"
#include "ui/window/CommandMenus.h"

#include <QAction>
#include <QDropEvent>
#include <QLabel>
#include <QMimeData>
#include <QScrollBar>
#include <QTabBar>
#include <fcntl.h>

using namespace orwick;
using test::waitUntil;

namespace {

struct DragDropTest : test::WindowTest {
    PaneWidget* widgetOf(PaneState* of)
    {
        for (PaneWidget* widget : window->findChildren<PaneWidget*>())
            if (widget->pane() == of)
                return widget;
        return nullptr;
    }
    QWidget* surfaceOf(PaneState* of) { return widgetOf(of)->listView()->viewport(); }
    // A point below the last row: the pane's background.
    QPoint background(PaneState* of) { return QPoint(40, surfaceOf(of)->height() - 10); }
    QPoint rowCentre(PaneState* of, const FilePath& item)
    {
        FileListView* view = widgetOf(of)->listView();
        [&] { ASSERT_TRUE(waitUntil([&] { return of->row(item) >= 0; })); }();
        return view->visualRect(view->model()->index(of->row(item), 0)).center();
    }
    // Drags `data` over `surface` to `at` with `modifiers` held; true when the drop is offered.
    static bool hover(QWidget* surface, const QMimeData& data, QPoint at, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        const Qt::DropActions all = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
        QDragEnterEvent enter(at, all, &data, Qt::LeftButton, modifiers);
        QApplication::sendEvent(surface, &enter);
        return offered(surface, data, at, modifiers) != Qt::IgnoreAction;
    }
    static Qt::DropAction offered(QWidget* surface, const QMimeData& data, QPoint at, Qt::KeyboardModifiers modifiers)
    {
        const Qt::DropActions all = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
        QDragMoveEvent move(at, all, &data, Qt::LeftButton, modifiers);
        QApplication::sendEvent(surface, &move);
        return move.isAccepted() ? move.dropAction() : Qt::IgnoreAction;
    }
    static void drop(QWidget* surface, const QMimeData& data, QPoint at, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        hover(surface, data, at, modifiers);
        QDropEvent dropped(at, Qt::CopyAction | Qt::MoveAction | Qt::LinkAction, &data, Qt::LeftButton, modifiers);
        QApplication::sendEvent(surface, &dropped);
    }
    static std::unique_ptr<QMimeData> files(const QList<FilePath>& items) { return makeFileClipboard(items, false); }
    // A second pane beside the first, showing `folder`; the first stays active.
    PaneState* splitTo(const FilePath& folder)
    {
        PaneState* first = pane();
        state->selectedTab()->split(first, PaneEdge::right, folder);
        state->selectedTab()->activate(first);
        PaneState* other = state->selectedTab()->otherPane();
        [&] { ASSERT_TRUE(waitUntil([&] { return widgetOf(other) && !other->isLoading() && widgetOf(other)->isVisible(); })); }();
        return other;
    }
};

TEST_F(DragDropTest, DropOnTheOtherPaneMovesAndOneUndoPutsItBack)
{
    const FilePath file = tree.file("left/report.txt", "r");
    tree.file("right/keep.txt", "k");
    open(tree.path("left"));
    PaneState* right = splitTo(tree.path("right"));
    const int steps = state->undoStack()->count();

    auto data = files({file});
    EXPECT_TRUE(hover(surfaceOf(right), *data, background(right)));
    drop(surfaceOf(right), *data, background(right));
    settle();
    const FilePath moved = tree.path("right/report.txt");
    EXPECT_FALSE(test::exists(file));
    EXPECT_EQ(test::readAll(moved), "r");
    EXPECT_EQ(toast(), QStringLiteral("Moved report.txt"));
    EXPECT_EQ(state->undoStack()->count(), steps + 1);
    EXPECT_EQ(state->undoStack()->undoText(), QStringLiteral("Move"));
    ASSERT_TRUE(waitUntil([&] { return right->selection().contains(moved); })) << "what landed is selected";

    state->undoStack()->undo();
    settle();
    EXPECT_EQ(test::readAll(file), "r");
    EXPECT_FALSE(test::exists(moved));
}

TEST_F(DragDropTest, APlainDropFromAnotherDiskCopiesFault)
{
    test::ScratchMount disk("tmpfs", "size=4m");
    if (!disk.ok())
        GTEST_SKIP() << disk.why().toStdString();
    const FilePath file = disk.root().child(QStringLiteral("camera.jpg"));
    ASSERT_TRUE(test::writeFile(file, "jpg"));
    const FilePath dest = tree.folder("dest");
    open(dest);
    auto data = files({file});
    ASSERT_TRUE(hover(surfaceOf(pane()), *data, background(pane())));
    EXPECT_EQ(offered(surfaceOf(pane()), *data, background(pane()), Qt::NoModifier), Qt::CopyAction);
    drop(surfaceOf(pane()), *data, background(pane()));
    settle();
    EXPECT_EQ(test::readAll(dest.child(QStringLiteral("camera.jpg"))), "jpg");
    EXPECT_EQ(test::readAll(file), "jpg") << "the other disk keeps its file";
    EXPECT_EQ(toast(), QStringLiteral("Copied camera.jpg"));
    EXPECT_EQ(state->undoStack()->undoText(), QStringLiteral("Copy"));
}

TEST_F(DragDropTest, ControlCopiesAndControlShiftMakesALink)
{
    const FilePath file = tree.file("left/photo.jpg", "jpg");
    open(tree.path("left"));
    PaneState* right = splitTo(tree.folder("right"));
    auto data = files({file});
    QWidget* surface = surfaceOf(right);
    hover(surface, *data, background(right));
    EXPECT_EQ(offered(surface, *data, background(right), Qt::NoModifier), Qt::MoveAction);
    EXPECT_EQ(offered(surface, *data, background(right), Qt::ControlModifier), Qt::CopyAction);
    EXPECT_EQ(offered(surface, *data, background(right), Qt::ControlModifier | Qt::ShiftModifier), Qt::LinkAction);

    drop(surface, *data, background(right), Qt::ControlModifier);
    settle();
    EXPECT_EQ(test::readAll(file), "jpg");
    EXPECT_EQ(test::readAll(tree.path("right/photo.jpg")), "jpg");
    EXPECT_EQ(toast(), QStringLiteral("Copied photo.jpg"));

    const int steps = state->undoStack()->count();
    drop(surface, *data, background(right), Qt::ControlModifier | Qt::ShiftModifier);
    settle();
    const FilePath link = tree.path("right/photo 2.jpg");
    EXPECT_EQ(readLinkAt(AT_FDCWD, link.c_str()).value_or(QByteArray()), file.native());
    EXPECT_EQ(toast(), QStringLiteral("Linked photo.jpg"));
    EXPECT_EQ(state->undoStack()->count(), steps + 1);
    state->undoStack()->undo();
    settle();
    EXPECT_FALSE(test::exists(link));
    EXPECT_EQ(test::readAll(file), "jpg");
}

TEST_F(DragDropTest, AUriListFromAnotherProgramDropsTheSame)
{
    const FilePath file = tree.file(QByteArray("elsewhere/caf\xe9 #1.txt"), "c");
    const FilePath dest = tree.folder("dest");
    open(dest);
    QMimeData other; // what a browser or another file manager puts in a drag: the URI list alone
    other.setData(QStringLiteral("text/uri-list"), file.toUrl().toEncoded() + "\r\n");
    const int steps = state->undoStack()->count();
    drop(surfaceOf(pane()), other, background(pane()), Qt::ControlModifier);
    settle();
    EXPECT_EQ(test::readAll(dest.child(QByteArrayView("caf\xe9 #1.txt"))), "c");
    EXPECT_EQ(test::readAll(file), "c");
    EXPECT_EQ(state->undoStack()->count(), steps + 1);
}

TEST_F(DragDropTest, MakeLinkInOtherPaneIsTheKeyboardsWayToLinks)
{
    const FilePath file = tree.file("left/photo.jpg", "jpg");
    open(tree.path("left"));
    PaneState* right = splitTo(tree.folder("right"));
    ASSERT_EQ(state->activePane(), pane());
    select(file);
    QAction* command = window->menus()->action(QStringLiteral("linkToOther"));
    ASSERT_NE(command, nullptr);
    command->trigger();
    settle();
    EXPECT_EQ(readLinkAt(AT_FDCWD, right->url().child(QStringLiteral("photo.jpg")).c_str()).value_or(QByteArray()), file.native());
    EXPECT_EQ(state->undoStack()->undoText(), QStringLiteral("Make Link"));
}

TEST_F(DragDropTest, AFolderRowTakesTheDropAndIsHighlightedWhileHovered)
{
    const FilePath file = tree.file("notes.md", "n");
    const FilePath archive = tree.folder("Archive");
    open(tree.root());
    QWidget* surface = surfaceOf(pane());
    auto data = files({file});
    const QPoint onFolder = rowCentre(pane(), archive);

    // A drag that starts over its own row, where it is not offered, still reaches the others.
    const Qt::DropActions all = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
    QDragEnterEvent enter(rowCentre(pane(), file), all, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(surface, &enter);
    EXPECT_TRUE(enter.isAccepted());
    EXPECT_EQ(offered(surface, *data, rowCentre(pane(), file), Qt::NoModifier), Qt::IgnoreAction);
    ASSERT_EQ(offered(surface, *data, onFolder, Qt::NoModifier), Qt::MoveAction);

    ASSERT_TRUE(hover(surface, *data, onFolder));
    QWidget* highlight = nullptr;
    for (QWidget* child : surface->findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
        if (child->isVisible() && child->geometry().contains(onFolder))
            highlight = child;
    ASSERT_NE(highlight, nullptr) << "the hovered folder row is highlighted";
    EXPECT_FALSE(highlight->geometry().contains(rowCentre(pane(), file))) << "only that row";
    // A file row is no target: the drop goes to the shown folder, where the file is already.
    EXPECT_FALSE(hover(surface, *data, rowCentre(pane(), file)));
    EXPECT_FALSE(highlight->isVisible());

    drop(surface, *data, onFolder);
    settle();
    EXPECT_EQ(test::readAll(archive.child(QStringLiteral("notes.md"))), "n");
    EXPECT_FALSE(test::exists(file));
    EXPECT_FALSE(highlight->isVisible());
}

TEST_F(DragDropTest, ADragHeldNearTheBottomEdgeScrollsTheRows)
{
    for (int i = 0; i < 200; ++i)
        tree.file(QStringLiteral("many/file %1.txt").arg(i, 3, 10, QChar('0')), "x");
    const FilePath file = tree.file("from/a.txt", "a");
    open(tree.path("many"));
    QWidget* surface = surfaceOf(pane());
    QScrollBar* bar = widgetOf(pane())->listView()->verticalScrollBar();
    ASSERT_GT(bar->maximum(), 0);
    ASSERT_EQ(bar->value(), 0);
    auto data = files({file});
    hover(surface, *data, QPoint(40, surface->height() - 4));
    EXPECT_TRUE(waitUntil([&] { return bar->value() > 0; }));
    QDragLeaveEvent leave;
    QApplication::sendEvent(surface, &leave);
    const int stopped = bar->value();
    waitUntil([] { return false; }, 200); // time for more ticks, had they gone on
    EXPECT_EQ(bar->value(), stopped) << "leaving stops the scrolling";
}

TEST_F(DragDropTest, EveryViewTakesDropsOnItsFolderRows)
{
    const FilePath folder = tree.folder("Inbox");
    open(tree.root());
    PaneWidget* widget = window->activePaneWidget();
    const QList<std::pair<ViewMode, QAbstractItemView*>> views = {
        {ViewMode::grid, widget->gridView()}, {ViewMode::table, widget->tableView()}, {ViewMode::columns, widget->columnsView()->currentColumn()}};
    for (const auto& [mode, view] : views) {
        const FilePath file = tree.file(QStringLiteral("from/%1.txt").arg(viewModeName(mode)), "v");
        pane()->chooseViewMode(mode);
        ASSERT_TRUE(waitUntil([&] { return view->isVisible() && pane()->row(folder) >= 0; })) << viewModeName(mode).toStdString();
        QApplication::processEvents();
        const QPoint onFolder = view->visualRect(view->model()->index(pane()->row(folder), 0)).center();
        auto data = files({file});
        drop(view->viewport(), *data, onFolder);
        settle();
        EXPECT_EQ(test::readAll(folder.child(file.fileName())), "v") << viewModeName(mode).toStdString();
    }
}

TEST_F(DragDropTest, RefusedDropsSayWhyAndChangeNothing)
{
    const FilePath folder = tree.folder("Project");
    const FilePath inner = tree.folder("Project/src");
    tree.file("Project/src/main.cpp", "m");
    open(inner);
    QWidget* surface = surfaceOf(pane());
    const int steps = state->undoStack()->count();

    auto itself = files({folder});
    drop(surface, *itself, background(pane()));
    settle();
    EXPECT_EQ(toast(), QStringLiteral("“Project” can't be put inside itself."));

    QMimeData web;
    web.setData(QStringLiteral("text/uri-list"), "https://example.com/page.html\r\n");
    drop(surface, web, background(pane()));
    settle();
    EXPECT_EQ(toast(), QStringLiteral("Only files on this computer can be dropped here."));
    EXPECT_EQ(state->undoStack()->count(), steps);
    EXPECT_EQ(test::readAll(tree.path("Project/src/main.cpp")), "m");
    EXPECT_TRUE(test::exists(folder));
}

TEST_F(DragDropTest, ListingsThatAreNotFoldersTakeNoDrops)
{
    const FilePath file = tree.file("a.txt", "a");
    tree.file("b.txt", "b");
    open(tree.root());
    Listing trash;
    trash.kind = Listing::Kind::trash;
    pane()->show(trash);
    ASSERT_TRUE(waitUntil([&] { return pane()->listing() && !pane()->isLoading(); }));
    auto data = files({file});
    // The list, or the text an empty Trash shows, whichever is up.
    QWidget* shown = window->activePaneWidget()->focusTarget();
    if (auto* view = qobject_cast<QAbstractScrollArea*>(shown))
        shown = view->viewport();
    for (QWidget* surface : {surfaceOf(pane()), shown})
        EXPECT_FALSE(hover(surface, *data, QPoint(20, 20)));
}

TEST_F(DragDropTest, AnEmptyFolderTakesDropsOnItsMessage)
{
    const FilePath file = tree.file("from/a.txt", "a");
    const FilePath empty = tree.folder("empty");
    open(empty);
    QWidget* message = window->activePaneWidget()->focusTarget();
    ASSERT_TRUE(qobject_cast<QLabel*>(message)) << "an empty folder shows its text";
    auto data = files({file});
    drop(message, *data, message->rect().center());
    settle();
    EXPECT_EQ(test::readAll(empty.child(QStringLiteral("a.txt"))), "a");
}

TEST_F(DragDropTest, FoldersDroppedOnTheTabBarOpenInNewTabsInOrder)
{
    const FilePath first = tree.folder("First");
    const FilePath second = tree.folder("Second");
    const FilePath file = tree.file("loose.txt", "l");
    open(tree.root());
    state->newTab(tree.root());
    QTabBar* bar = window->tabBar();
    ASSERT_TRUE(waitUntil([&] { return bar->isVisible(); }));
    const int before = int(state->tabs().size());

    auto data = files({second, file, first});
    drop(bar, *data, QPoint(10, bar->height() / 2));
    ASSERT_EQ(state->tabs().size(), before + 2);
    EXPECT_EQ(state->tabs()[before]->activePane()->url(), second);
    EXPECT_EQ(state->tabs()[before + 1]->activePane()->url(), first);
    EXPECT_EQ(state->selectedTab(), state->tabs()[before + 1]);

    auto loose = files({file});
    drop(bar, *loose, QPoint(10, bar->height() / 2));
    EXPECT_EQ(state->tabs().size(), before + 2);
    EXPECT_EQ(toast(), QStringLiteral("Only folders open in tabs; drop a folder here."));
}

TEST_F(DragDropTest, APressInsideASelectionKeepsItForDraggingAndTheReleaseSelectsTheRow)
{
    const FilePath a = tree.file("a.txt", "a");
    const FilePath b = tree.file("b.txt", "b");
    open(tree.root());
    select(a);
    pane()->click(b, Qt::ControlModifier);
    ASSERT_EQ(pane()->selection().size(), 2);
    QWidget* surface = surfaceOf(pane());
    const QPoint at = rowCentre(pane(), a);
    QMouseEvent press(QEvent::MouseButtonPress, at, surface->mapToGlobal(at), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(surface, &press);
    EXPECT_EQ(pane()->selection().size(), 2) << "kept for a drag";
    QMouseEvent release(QEvent::MouseButtonRelease, at, surface->mapToGlobal(at), Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(surface, &release);
    EXPECT_EQ(pane()->selection(), QSet<FilePath>{a});

    // What a drag carries is what other programs read.
    const auto data = ViewDragDrop::dragData({a, b});
    EXPECT_EQ(readUris(data.get()), (QList<QUrl>{a.toUrl(), b.toUrl()}));
    EXPECT_TRUE(data->hasFormat(QStringLiteral("x-special/gnome-copied-files")));
}

} // namespace
