// A window opening on a restored session: a split paints its active pane first and makes the
// other pane's widget right after, showing everything that pane's state holds (folder, cursor,
// view, history) and keeping the divider where it stood; a tab not shown at the start shows its
// panes, their folders and its active pane once it is selected, and is named in the tab bar
// before its panes are made, in a bar shown at its full height; a start that opens a folder
// reopens the session with the folder in its active pane.

#include "WindowFixture.h"
#include "app/OpenRouter.h"
#include "app/SessionKeeper.h"
#include "app/Settings.h"
#include "ui/preview/PreviewPanel.h"
#include "ui/window/Windows.h"
#include "ui/views/FileGridView.h"
#include "ui/views/FileTableView.h"
#include "platform/XdgPaths.h"
#include "ui/window/PaneGrid.h"

#include <QSplitter>
#include <QTabBar>

using namespace orwick;
using test::waitUntil;

namespace {

struct RestoredWindowTest : test::WindowTest {
    void SetUp() override
    {
        for (const char* name : {"A/one.txt", "A/two.txt", "A/sub/inner.txt", "B/inside.txt", "C/inside.txt", "D/inside.txt"})
            tree.file(QString::fromLatin1(name));
    }
    // A window state as a start of the app makes it: restored before any folder is read.
    void restore(const Session& session)
    {
        state = std::make_unique<WindowState>(tree.root(), &preferences, nullptr, PaneState::Start::whenShown);
        state->restore(session);
        state->selectedTab()->loadPanes();
    }
    PaneWidget* widgetOf(const PaneState* of) const
    {
        for (PaneWidget* widget : window->findChildren<PaneWidget*>())
            if (widget->pane() == of)
                return widget;
        return nullptr;
    }
    static bool loaded(const PaneState* pane) { return !pane->isWaitingToBeShown() && !pane->isLoading() && !pane->items().isEmpty(); }
};

} // namespace

TEST_F(RestoredWindowTest, ASplitPaintsItsActivePaneFirstAndTheOtherPaneKeepsItsState)
{
    Session session;
    session.tabs = {Session::Tab::ofGrid({{tree.path("A")}, {tree.path("B")}}, 1)};
    restore(session);
    PaneState* left = state->selectedTab()->panes()[0];
    PaneState* right = state->selectedTab()->panes()[1];
    ASSERT_TRUE(waitUntil([&] { return loaded(left) && loaded(right); }));
    // The left pane's state moves on before any widget draws it: history, view and cursor.
    left->navigate(tree.path("A/sub"));
    ASSERT_TRUE(waitUntil([&] { return loaded(left) && left->url() == tree.path("A/sub"); }));
    left->goBack();
    ASSERT_TRUE(waitUntil([&] { return loaded(left) && left->url() == tree.path("A"); }));
    left->chooseViewMode(ViewMode::table);
    left->click(tree.path("A/two.txt"), Qt::NoModifier);

    window = std::make_unique<MainWindow>(state.get());
    auto* grid = window->findChild<PaneGrid*>();
    ASSERT_NE(grid, nullptr);
    // Before the first paint only the active pane has a widget; the other has a blank place.
    EXPECT_TRUE(grid->hasWaitingPanes());
    ASSERT_EQ(window->findChildren<PaneWidget*>().size(), 1);
    EXPECT_EQ(window->findChildren<PaneWidget*>().first()->pane(), right);
    window->show();
    ASSERT_TRUE(waitUntil([&] { return !grid->hasWaitingPanes(); }));
    ASSERT_EQ(window->findChildren<PaneWidget*>().size(), 2);

    PaneWidget* made = widgetOf(left);
    ASSERT_NE(made, nullptr);
    EXPECT_TRUE(made->isVisible());
    EXPECT_EQ(made->itemsView(), made->tableView());
    EXPECT_EQ(made->tableView()->currentIndex().row(), left->row(tree.path("A/two.txt")));
    EXPECT_EQ(left->selection(), QSet<FilePath>{tree.path("A/two.txt")});
    EXPECT_EQ(left->forwardStack(), QList<FilePath>{tree.path("A/sub")});
    EXPECT_EQ(window->activePaneWidget()->pane(), right);
    // The divider stays where the blank place held it: two halves.
    auto* columns = qobject_cast<QSplitter*>(made->parentWidget()->parentWidget());
    ASSERT_NE(columns, nullptr);
    const QList<int> sizes = columns->sizes();
    ASSERT_EQ(sizes.size(), 2);
    EXPECT_LE(std::abs(sizes[0] - sizes[1]), 4) << sizes[0] << " against " << sizes[1];
}

TEST_F(RestoredWindowTest, AWaitingPaneIsMadeAtOnceWhenItBecomesActive)
{
    Session session;
    session.tabs = {Session::Tab::ofGrid({{tree.path("A")}, {tree.path("B")}}, 1)};
    restore(session);
    window = std::make_unique<MainWindow>(state.get());
    ASSERT_EQ(window->findChildren<PaneWidget*>().size(), 1);
    PaneState* left = state->selectedTab()->panes()[0];
    state->selectedTab()->activate(left);
    ASSERT_NE(widgetOf(left), nullptr);
    EXPECT_EQ(window->activePaneWidget()->pane(), left);
}

TEST_F(RestoredWindowTest, ARestoredTabShownLaterHasItsPanesState)
{
    Session session;
    session.tabs = {Session::Tab::ofGrid({{tree.path("A")}}, 0),
                    Session::Tab::ofGrid({{tree.path("C")}, {tree.path("D")}}, 1)};
    restore(session);
    TabState* hidden = state->tabs()[1];
    PaneState* first = hidden->panes()[0];
    PaneState* second = hidden->panes()[1];
    // Chosen while the tab is still waiting to be shown.
    first->chooseViewMode(ViewMode::grid);
    window = std::make_unique<MainWindow>(state.get());
    window->show();
    ASSERT_TRUE(waitUntil([&] { return loaded(state->activePane()); }));
    EXPECT_TRUE(first->isWaitingToBeShown());
    EXPECT_EQ(widgetOf(first), nullptr);

    window->tabBar()->setCurrentIndex(1);
    ASSERT_EQ(state->selectedTab(), hidden);
    ASSERT_TRUE(waitUntil([&] { return loaded(first) && loaded(second); }));
    PaneWidget* left = widgetOf(first);
    PaneWidget* right = widgetOf(second);
    ASSERT_NE(left, nullptr);
    ASSERT_NE(right, nullptr);
    EXPECT_EQ(first->url(), tree.path("C"));
    EXPECT_EQ(second->url(), tree.path("D"));
    EXPECT_EQ(window->activePaneWidget(), right);
    EXPECT_EQ(left->itemsView(), left->gridView());
    EXPECT_EQ(left->gridView()->model()->rowCount(), 1);
    EXPECT_EQ(right->listView()->model()->rowCount(), 1);
    EXPECT_TRUE(left->isVisible() && right->isVisible());
}

TEST_F(RestoredWindowTest, TheTabBarNamesTabsWhosePanesAreNotMadeYet)
{
    Session session;
    session.tabs = {Session::Tab::ofGrid({{tree.path("A")}, {tree.path("B")}}, 0)};
    for (const char* name : {"C", "D", "Gone"})
        session.tabs.append(Session::Tab::ofGrid({{tree.path("B")}, {tree.path(name)}}, 1));
    restore(session);
    window = std::make_unique<MainWindow>(state.get());
    window->show();
    ASSERT_TRUE(waitUntil([&] { return loaded(state->activePane()); }));
    QTabBar* bar = window->tabBar();
    ASSERT_EQ(bar->count(), 4);
    // Shown at its full height above the panes: the bar got its tabs before the window's layout
    // first asked it for its size.
    EXPECT_TRUE(bar->isVisible());
    EXPECT_EQ(bar->height(), bar->sizeHint().height());
    EXPECT_GE(window->activePaneWidget()->mapTo(window.get(), QPoint()).y(), bar->mapTo(window.get(), QPoint(0, bar->height())).y());
    EXPECT_EQ(bar->tabText(0), QStringLiteral("A"));
    EXPECT_EQ(bar->tabText(1), QStringLiteral("C"));
    EXPECT_EQ(bar->tabToolTip(2), tree.path("D").abbreviated());
    EXPECT_EQ(bar->tabText(3), PaneState::folderTitle(xdg::home())) << "a folder gone since opens as home";
    for (int i = 1; i < 4; ++i)
        EXPECT_TRUE(state->tabs()[i]->madePanes().isEmpty()) << "tab " << i;

    bar->setCurrentIndex(2);
    ASSERT_TRUE(waitUntil([&] { return loaded(state->activePane()); }));
    EXPECT_EQ(state->activePane()->url(), tree.path("D"));
    EXPECT_EQ(widgetOf(state->activePane()), window->activePaneWidget());
    EXPECT_TRUE(state->tabs()[1]->madePanes().isEmpty());
}

TEST_F(RestoredWindowTest, AStartThatOpensAFolderReopensTheSessionWithTheFolderInItsActivePane)
{
    Session session;
    session.tabs = {Session::Tab::ofGrid({{tree.path("A")}, {tree.path("B")}}, 1), Session::Tab::ofGrid({{tree.path("C")}}, 0)};
    openSettings()->setValue(QLatin1StringView(Session::kSettingsKey), session.encoded());
    Session::beginRun();
    Windows windows(&preferences);
    windows.setPrepare([](WindowState& state) { SessionKeeper::restore(&state); });
    OpenRouter router;
    windows.serve(router);

    MainWindow* opened = windows.open(OpenRequests{{tree.path("D"), false}});
    WindowState* restored = opened->state();
    ASSERT_EQ(restored->tabs().size(), 2);
    PaneState* active = restored->activePane();
    EXPECT_EQ(active, restored->selectedTab()->panes()[1]) << "the session's active pane";
    EXPECT_EQ(active->url(), tree.path("D"));
    EXPECT_EQ(active->backStack(), QList<FilePath>{tree.path("B")}) << "Back goes to where the session left it";
    EXPECT_EQ(restored->selectedTab()->panes()[0]->url(), tree.path("A"));
    EXPECT_TRUE(restored->tabs()[1]->madePanes().isEmpty()) << "the other tab waits to be shown";
    ASSERT_TRUE(waitUntil([&] { return loaded(active); }));
    openSettings()->remove(QLatin1StringView(Session::kSettingsKey));
}

TEST_F(RestoredWindowTest, APaneSplitOffInAnOpenWindowGetsHalfTheRoomAsARestoredOneDoes)
{
    Session session;
    session.tabs = {Session::Tab::ofGrid({{tree.path("A")}}, 0)};
    restore(session);
    window = std::make_unique<MainWindow>(state.get());
    window->show();
    ASSERT_TRUE(waitUntil([&] { return loaded(state->activePane()); }));
    TabState* tab = state->selectedTab();
    for (PaneEdge edge : {PaneEdge::bottom, PaneEdge::right}) {
        PaneState* added = tab->split(tab->activePane(), edge, tree.path("B"));
        ASSERT_TRUE(waitUntil([&] { return widgetOf(added) && widgetOf(added)->isVisible(); }));
        QApplication::processEvents();
        auto* splitter = qobject_cast<QSplitter*>(widgetOf(added)->parentWidget());
        if (edge == PaneEdge::right) // a column of its own, beside the first
            splitter = qobject_cast<QSplitter*>(splitter->parentWidget());
        ASSERT_NE(splitter, nullptr);
        const QList<int> sizes = splitter->sizes();
        ASSERT_GE(sizes.size(), 2);
        EXPECT_LE(std::abs(sizes[0] - sizes[1]), 4) << (edge == PaneEdge::bottom ? "down: " : "right: ") << sizes[0] << " against " << sizes[1];
    }
}

TEST_F(RestoredWindowTest, APreviewColumnRestoredAsShownOpensAtTheWidthToggledOnesDo)
{
    Session session;
    session.tabs = {Session::Tab::ofGrid({{tree.path("A")}}, 0)};
    session.showPreview = true;
    restore(session);
    window = std::make_unique<MainWindow>(state.get());
    window->resize(1200, 760);
    window->show();
    ASSERT_TRUE(waitUntil([&] { return window->previewPanel() && window->previewPanel()->isVisible() && loaded(state->activePane()); }));
    QApplication::processEvents();
    const int room = window->previewPanel()->width() + window->activePaneWidget()->width();
    EXPECT_GE(window->previewPanel()->width(), std::min(380, room / 2) - 10) << "of " << room;
}
