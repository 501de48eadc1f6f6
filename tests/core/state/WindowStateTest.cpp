#include "state/WindowState.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <gtest/gtest.h>

using namespace orwick;
using test::waitUntil;

namespace {

struct WindowStateFixture : ::testing::Test {
    test::TempTree tree;
    ViewPreferences preferences;
    std::unique_ptr<WindowState> window;

    void SetUp() override
    {
        tree.folder("A");
        tree.folder("B");
        tree.file("note.txt");
        window = std::make_unique<WindowState>(tree.root(), &preferences);
        settle(window->activePane());
    }
    static void settle(PaneState* pane) { ASSERT_TRUE(waitUntil([&] { return !pane->isLoading(); })); }
    QList<FilePath> tabFolders()
    {
        QList<FilePath> folders;
        for (TabState* tab : window->tabs())
            folders << tab->activePane()->url();
        return folders;
    }
};

} // namespace

TEST_F(WindowStateFixture, TabsOpenAfterTheShownOneAndSelectionWraps)
{
    window->newTab(tree.path("A"));
    window->selectTab(-1);
    window->newTab(tree.path("B")); // right after the first, not at the end
    EXPECT_EQ(tabFolders(), (QList<FilePath>{tree.root(), tree.path("B"), tree.path("A")}));
    EXPECT_EQ(window->selectedTab()->activePane()->url(), tree.path("B"));

    window->selectTab(1);
    window->selectTab(1); // from the last tab to the first
    EXPECT_EQ(window->selectedTab(), window->tabs().first());
    window->selectTab(-1); // and back round to the last
    EXPECT_EQ(window->selectedTab(), window->tabs().last());

    window->moveTab(window->tabs().last()->id(), window->tabs().first()->id());
    EXPECT_EQ(tabFolders().first(), tree.path("A"));
}

TEST_F(WindowStateFixture, ClosingTabsRemembersThemAndTheLastClosesTheWindow)
{
    int closing = 0;
    QObject::connect(window.get(), &WindowState::closeRequested, [&] { ++closing; });
    window->closeTab();
    EXPECT_EQ(closing, 1);
    EXPECT_TRUE(window->closedTabURLs().isEmpty()); // the only tab: the window goes, nothing remembered
    EXPECT_EQ(window->tabs().size(), 1);

    window->newTab(tree.path("A"));
    window->newTab(tree.path("B"));
    window->selectTab(-1); // on A, the middle tab
    window->closeTab();
    EXPECT_EQ(window->closedTabURLs(), QList<FilePath>{tree.path("A")});
    EXPECT_EQ(window->selectedTab()->activePane()->url(), tree.path("B")); // the tab that took its place
    window->reopenClosedTab();
    EXPECT_EQ(window->selectedTab()->activePane()->url(), tree.path("A"));
    EXPECT_TRUE(window->closedTabURLs().isEmpty());
    window->reopenClosedTab(); // nothing left: nothing happens
    EXPECT_EQ(window->tabs().size(), 3);
}

TEST_F(WindowStateFixture, SplitTwiceReturnsToTheActivePaneAlone)
{
    TabState* tab = window->selectedTab();
    PaneState* first = tab->activePane();
    EXPECT_EQ(tab->otherPane(), nullptr);
    tab->toggleSplit();
    ASSERT_EQ(tab->columns().size(), 2);
    PaneState* second = tab->activePane();
    EXPECT_NE(second, first);
    EXPECT_EQ(second->url(), first->url()); // the new pane starts on the same folder
    EXPECT_EQ(tab->otherPane(), first);
    second->navigate(tree.path("B"));
    settle(second);
    tab->toggleSplit();
    ASSERT_EQ(tab->panes().size(), 1);
    EXPECT_EQ(tab->activePane()->url(), tree.path("B"));
    EXPECT_EQ(tab->otherPane(), nullptr);
}

TEST_F(WindowStateFixture, GridsGrowWithinLimitsAndShrinkWhenPanesClose)
{
    TabState* tab = window->selectedTab();
    PaneState* first = tab->activePane();
    PaneState* below = tab->split(first, PaneEdge::bottom, tree.path("A"));
    ASSERT_NE(below, nullptr);
    EXPECT_FALSE(tab->canSplit(below, PaneEdge::bottom)); // two rows at most
    EXPECT_EQ(tab->split(below, PaneEdge::top, tree.root()), nullptr);
    PaneState* right = tab->split(below, PaneEdge::right, tree.path("B"));
    PaneState* farRight = tab->split(right, PaneEdge::right, tree.path("B"));
    EXPECT_EQ(tab->columns().size(), 3);
    EXPECT_FALSE(tab->canSplit(right, PaneEdge::left)); // three columns at most

    tab->activate(first);
    tab->activateNext(1);
    EXPECT_EQ(tab->activePane(), below); // rows within a column come before the next column
    tab->activateNext(-2);
    EXPECT_EQ(tab->activePane(), farRight); // wraps backwards

    tab->activate(right);
    tab->close(right);
    EXPECT_EQ(tab->columns().size(), 2); // its emptied column went
    EXPECT_EQ(tab->activePane(), farRight) << "the most recently active pane before it";
}

TEST_F(WindowStateFixture, RenameStartsInlineForOneItemAndBlocksFileCommands)
{
    PaneState* pane = window->activePane();
    EXPECT_FALSE(window->canActOnSelection());
    pane->click(tree.path("note.txt"), Qt::NoModifier);
    EXPECT_TRUE(window->canActOnSelection());
    EXPECT_TRUE(window->beginRename());
    EXPECT_EQ(pane->renaming(), tree.path("note.txt"));
    EXPECT_FALSE(window->canActOnSelection()) << "no file command while a name is being edited";
    pane->setRenaming(std::nullopt);

    pane->click(tree.path("A"), Qt::ControlModifier);
    EXPECT_TRUE(window->beginRename()); // several: the batch rename panel, not inline
    EXPECT_FALSE(pane->renaming().has_value());
    EXPECT_EQ(window->panel(), WindowState::Panel::batchRename);
    EXPECT_EQ(window->panelItems(), pane->selection().size() == 2 ? window->selectedURLs() : QList<FilePath>{});
    EXPECT_EQ(window->panelItems().size(), 2);
    window->closePanel();
    EXPECT_TRUE(window->panelItems().isEmpty());
    window->openSelectionInNewTabs();
    EXPECT_EQ(window->tabs().size(), 2); // one new tab per selected folder
    EXPECT_EQ(window->selectedTab()->activePane()->url(), tree.path("A"));
}
