#include "platform/XdgPaths.h"
#include "state/WindowState.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <gtest/gtest.h>
#include <unistd.h>

using namespace orwick;
using test::waitUntil;

namespace {

using Grid = QList<QList<FilePath>>;

struct RestoreFixture : ::testing::Test {
    test::TempTree tree;
    ViewPreferences preferences;
    std::unique_ptr<WindowState> window;

    void SetUp() override
    {
        for (const char* name : {"A", "B", "C", "D"})
            tree.file(QString::fromLatin1(name) + "/inside.txt");
        window = std::make_unique<WindowState>(tree.root(), &preferences);
    }
    static Grid gridOf(TabState* tab)
    {
        Grid grid;
        for (const auto& column : tab->columns()) {
            QList<FilePath> folders;
            for (PaneState* pane : column)
                folders << pane->url();
            grid << folders;
        }
        return grid;
    }
    static Session::Tab single(const FilePath& folder) { return Session::Tab::ofGrid({{folder}}, 0); }
};

} // namespace

TEST_F(RestoreFixture, TheSessionDescribesEveryTabsGridAndActivePane)
{
    TabState* first = window->selectedTab();
    first->split(first->activePane(), PaneEdge::right, tree.path("A")); // two side by side, the right one active
    TabState* second = window->newTab(tree.path("B"));
    PaneState* right = second->split(second->activePane(), PaneEdge::right, tree.path("C"));
    second->split(right, PaneEdge::bottom, tree.path("D")); // [[B], [C, D]], D active
    window->setShowPreview(true);

    const Session session = window->session();
    ASSERT_EQ(session.tabs.size(), 2);
    EXPECT_EQ(session.selected, 1);
    EXPECT_TRUE(session.showPreview);
    EXPECT_EQ(session.tabs[0].left, tree.root());
    EXPECT_EQ(session.tabs[0].right, tree.path("A"));
    EXPECT_TRUE(session.tabs[0].rightIsActive);
    EXPECT_FALSE(session.tabs[0].columns);
    EXPECT_EQ(session.tabs[1].columns, (Grid{{tree.path("B")}, {tree.path("C"), tree.path("D")}}));
    EXPECT_EQ(session.tabs[1].active, 2);
}

TEST_F(RestoreFixture, RestoringReplacesTheTabsAndSelectsTheSavedOne)
{
    Session session;
    session.tabs = {single(tree.path("A")), Session::Tab::ofGrid({{tree.path("B")}, {tree.path("C")}}, 1),
                    Session::Tab::ofGrid({{tree.path("A"), tree.path("B")}, {tree.path("C")}, {tree.path("D")}}, 3)};
    session.selected = 2;
    session.showPreview = true;
    window->restore(session);

    ASSERT_EQ(window->tabs().size(), 3);
    EXPECT_EQ(window->selectedTab(), window->tabs()[2]);
    EXPECT_TRUE(window->showPreview());
    EXPECT_EQ(gridOf(window->tabs()[0]), Grid{{tree.path("A")}});
    EXPECT_EQ(gridOf(window->tabs()[1]), (Grid{{tree.path("B")}, {tree.path("C")}}));
    EXPECT_EQ(window->tabs()[1]->activePane()->url(), tree.path("C"));
    EXPECT_EQ(gridOf(window->tabs()[2]), (Grid{{tree.path("A"), tree.path("B")}, {tree.path("C")}, {tree.path("D")}}));
    EXPECT_EQ(window->activePane()->url(), tree.path("D")); // the fourth pane, column by column
    EXPECT_EQ(window->session(), session);
    // The other pane is one that exists, so copy to the other pane works at once.
    EXPECT_NE(window->selectedTab()->otherPane(), nullptr);
}

TEST_F(RestoreFixture, AFolderDeletedSinceOpensAtHome)
{
    Session session;
    session.tabs = {Session::Tab::ofGrid({{tree.path("A")}, {tree.path("Gone")}}, 1)};
    window->restore(session);
    EXPECT_EQ(gridOf(window->selectedTab()), (Grid{{tree.path("A")}, {xdg::home()}}));
    EXPECT_EQ(window->activePane()->url(), xdg::home());
    ASSERT_TRUE(waitUntil([&] { return !window->activePane()->isLoading(); }));
    EXPECT_FALSE(window->activePane()->error());
}

TEST_F(RestoreFixture, OnlyLeftAndRightIsActiveRestoresOnePane)
{
    Session session;
    Session::Tab tab;
    tab.left = tree.path("A");
    tab.rightIsActive = true;
    session.tabs = {tab};
    window->restore(session);
    EXPECT_EQ(gridOf(window->selectedTab()), Grid{{tree.path("A")}});
    EXPECT_FALSE(window->selectedTab()->isSplit());
}

TEST_F(RestoreFixture, AGridLargerThanATabHoldsIsCutToFit)
{
    Session session;
    Session::Tab tab = Session::Tab::ofGrid({{tree.path("A"), tree.path("B"), tree.path("C")}, {tree.path("A")}, {tree.path("B")}, {tree.path("D")}}, 0);
    session.tabs = {tab};
    session.selected = 9; // out of range: the first tab
    window->restore(session);
    EXPECT_EQ(gridOf(window->selectedTab()), (Grid{{tree.path("A"), tree.path("B")}, {tree.path("A")}, {tree.path("B")}}));
}

TEST_F(RestoreFixture, TabsNotShownReadTheirFoldersOnlyWhenFirstShown)
{
    Session session;
    for (int i = 0; i < 10; ++i)
        session.tabs.append(Session::Tab::ofGrid({{tree.path("A")}, {tree.path("B")}}, 0));
    session.selected = 4;
    window->restore(session);

    PaneState* shown = window->activePane();
    EXPECT_TRUE(shown->isLoading());
    ASSERT_TRUE(waitUntil([&] { return !shown->isLoading(); }));
    EXPECT_EQ(shown->items().size(), 1);

    TabState* hidden = window->tabs()[7];
    for (PaneState* pane : hidden->panes()) {
        EXPECT_TRUE(pane->isWaitingToBeShown());
        EXPECT_FALSE(pane->isLoading());
        EXPECT_TRUE(pane->items().isEmpty());
    }
    window->selectTabWithID(hidden->id());
    // The active pane reads first; its neighbour once the active one has its rows.
    PaneState* active = hidden->activePane();
    PaneState* neighbour = hidden->panes()[1];
    EXPECT_TRUE(active->isLoading());
    EXPECT_TRUE(neighbour->isWaitingToBeShown());
    ASSERT_TRUE(waitUntil([&] { return !active->isLoading() && active->items().size() == 1; }));
    ASSERT_TRUE(waitUntil([&] { return !neighbour->isWaitingToBeShown() && !neighbour->isLoading() && neighbour->items().size() == 1; }));
    // Both panes of the shown tab loaded; the others are still waiting.
    EXPECT_TRUE(window->tabs()[8]->activePane()->isWaitingToBeShown());
}

TEST_F(RestoreFixture, ATabsOtherPanesReadWhenTheWindowHasPaintedTheActivePanesRows)
{
    Session session;
    session.tabs = {single(tree.path("C")), Session::Tab::ofGrid({{tree.path("A")}, {tree.path("B")}}, 0)};
    window->restore(session);
    TabState* tab = window->tabs()[1];
    window->selectTabWithID(tab->id());
    PaneState* active = tab->activePane();
    PaneState* neighbour = tab->panes()[1];
    ASSERT_TRUE(waitUntil([&] { return !active->isLoading(); }));
    // Its rows came, but aren't painted yet: the neighbour doesn't compete with that paint.
    EXPECT_TRUE(neighbour->isWaitingToBeShown());
    EXPECT_TRUE(tab->hasPanesWaiting());
    tab->activePaneShown();
    EXPECT_FALSE(neighbour->isWaitingToBeShown());
    EXPECT_FALSE(tab->hasPanesWaiting());
    ASSERT_TRUE(waitUntil([&] { return !neighbour->isLoading() && neighbour->items().size() == 1; }));
}

TEST_F(RestoreFixture, ATabNotShownMakesItsPanesOnlyWhenAskedAndNamesItsFolderMeanwhile)
{
    Session session;
    session.tabs = {single(tree.path("A")), Session::Tab::ofGrid({{tree.path("B")}, {tree.path("C")}}, 1),
                    Session::Tab::ofGrid({{tree.path("Gone")}}, 0)};
    window->restore(session);
    TabState* hidden = window->tabs()[1];
    TabState* gone = window->tabs()[2];
    EXPECT_EQ(window->selectedTab()->madePanes().size(), 1);
    EXPECT_TRUE(hidden->madePanes().isEmpty());
    EXPECT_TRUE(gone->madePanes().isEmpty());

    // The tab bar's title and tooltip, and the session, come from the saved grid.
    EXPECT_EQ(hidden->title(), QStringLiteral("C"));
    EXPECT_EQ(hidden->place(), tree.path("C").abbreviated());
    EXPECT_EQ(gone->title(), PaneState::folderTitle(xdg::home()));
    const Session saved = window->session();
    EXPECT_EQ(saved.tabs[1], session.tabs[1]);
    EXPECT_EQ(saved.tabs[2].left, xdg::home());
    EXPECT_TRUE(hidden->madePanes().isEmpty()) << "neither titles nor the session make panes";

    // Asked for, the panes are made as saved, waiting to be shown.
    EXPECT_EQ(gridOf(hidden), (Grid{{tree.path("B")}, {tree.path("C")}}));
    ASSERT_EQ(hidden->madePanes().size(), 2);
    EXPECT_EQ(hidden->activePane(), hidden->panes()[1]);
    for (PaneState* pane : hidden->panes())
        EXPECT_TRUE(pane->isWaitingToBeShown());
    EXPECT_EQ(hidden->title(), QStringLiteral("C"));
    EXPECT_EQ(window->session().tabs[1], session.tabs[1]);
}

TEST_F(RestoreFixture, APaneOfATabNotShownSaysWhenItMoves)
{
    Session session;
    session.tabs = {single(tree.path("A")), single(tree.path("B"))};
    window->restore(session);
    TabState* hidden = window->tabs()[1];
    int moves = 0;
    QObject::connect(hidden, &TabState::foldersChanged, [&moves] { ++moves; });
    hidden->activePane()->navigate(tree.path("C")); // made here, on first use
    EXPECT_EQ(moves, 1);
    EXPECT_EQ(hidden->title(), QStringLiteral("C"));
    EXPECT_EQ(window->session().tabs[1].left, tree.path("C"));
}

TEST_F(RestoreFixture, AWaitingPaneKeepsWhereItWasToldToGo)
{
    Session session;
    session.tabs = {single(tree.path("A")), single(tree.path("B"))};
    window->restore(session);
    PaneState* waiting = window->tabs()[1]->activePane();
    waiting->navigate(tree.path("C"));
    EXPECT_FALSE(waiting->isLoading());
    window->selectTab(1);
    ASSERT_TRUE(waitUntil([&] { return !waiting->isLoading(); }));
    EXPECT_EQ(waiting->url(), tree.path("C"));
    ASSERT_EQ(waiting->items().size(), 1);
    EXPECT_EQ(waiting->items().first().url, tree.path("C/inside.txt"));
}

TEST_F(RestoreFixture, AFolderThatIsNotUtf8IsRestored)
{
    const FilePath odd = tree.root().child(QByteArrayView("caf\xe9"));
    tree.file(QByteArray("caf\xe9/x"), "");
    Session session;
    session.tabs = {single(odd)};
    const auto decoded = Session::decode(session.encoded());
    ASSERT_TRUE(decoded);
    window->restore(*decoded);
    EXPECT_EQ(window->activePane()->url().native(), odd.native());
    ASSERT_TRUE(waitUntil([&] { return !window->activePane()->isLoading(); }));
    EXPECT_EQ(window->activePane()->items().size(), 1);
    // Qt's temporary folder can't remove a name that isn't UTF-8.
    window.reset();
    ::unlink(odd.child(QByteArrayView("x")).c_str());
    ::rmdir(odd.c_str());
}
