#include "app/SessionKeeper.h"
#include "app/Settings.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <QHideEvent>
#include <gtest/gtest.h>

using namespace orwick;
using test::waitUntil;

namespace {

struct KeeperFixture : ::testing::Test {
    test::TempTree tree;
    ViewPreferences preferences;
    std::unique_ptr<WindowState> window;
    SessionKeeper* keeper = nullptr;

    void SetUp() override
    {
        tree.folder("A");
        tree.folder("B");
        openSettings()->remove(Session::kSettingsKey);
        Session::beginRun();
        window = std::make_unique<WindowState>(tree.root(), &preferences);
        keeper = SessionKeeper::keep(window.get(), false);
        keeper->setDelay(150);
    }
    static std::optional<Session> stored()
    {
        return Session::decode(openSettings()->value(Session::kSettingsKey).toByteArray());
    }
    // Waits for the pending save to reach the store.
    void awaitSave()
    {
        int saved = 0;
        const auto connection = QObject::connect(keeper, &SessionKeeper::saved, [&saved] { ++saved; });
        ASSERT_TRUE(waitUntil([&] { return saved > 0; }));
        QObject::disconnect(connection);
    }
};

} // namespace

TEST_F(KeeperFixture, SavesAWhileAfterAChangeNotAtOnce)
{
    EXPECT_EQ(SessionKeeper::kDelayMs, 2000);
    EXPECT_FALSE(keeper->hasPendingSave());
    window->newTab(tree.path("A"));
    EXPECT_TRUE(keeper->hasPendingSave());
    EXPECT_FALSE(stored()); // not yet
    awaitSave();
    ASSERT_TRUE(stored());
    EXPECT_EQ(*stored(), window->session());
    EXPECT_EQ(stored()->tabs.size(), 2);
}

TEST_F(KeeperFixture, ChangesInQuickSuccessionAreOneWrite)
{
    int saved = 0;
    QObject::connect(keeper, &SessionKeeper::saved, [&saved] { ++saved; });
    window->newTab(tree.path("A"));
    window->newTab(tree.path("B"));
    window->selectTab(1);
    ASSERT_TRUE(waitUntil([&] { return saved > 0; }));
    EXPECT_FALSE(waitUntil([&] { return saved > 1; }, 400));
    EXPECT_EQ(*stored(), window->session());
}

TEST_F(KeeperFixture, FollowsPanesFoldersTheActivePaneAndThePreviewOfNewTabs)
{
    TabState* tab = window->newTab(tree.path("A"));
    awaitSave();

    PaneState* added = tab->split(tab->activePane(), PaneEdge::right, tree.path("B"));
    EXPECT_TRUE(keeper->hasPendingSave()) << "a split";
    awaitSave();
    EXPECT_EQ(stored()->tabs[1].right, tree.path("B"));

    tab->activate(tab->panes().first());
    EXPECT_TRUE(keeper->hasPendingSave()) << "the active pane";
    awaitSave();
    EXPECT_FALSE(stored()->tabs[1].rightIsActive);

    added->navigate(tree.root());
    EXPECT_TRUE(keeper->hasPendingSave()) << "a folder";
    awaitSave();
    EXPECT_EQ(stored()->tabs[1].right, tree.root());

    window->setShowPreview(true);
    EXPECT_TRUE(keeper->hasPendingSave()) << "the preview";
    awaitSave();
    EXPECT_TRUE(stored()->showPreview);
}

TEST_F(KeeperFixture, FollowsThePanesOfARestoredTabMadeAfterTheStart)
{
    Session session;
    session.tabs = {Session::Tab::ofGrid({{tree.path("A")}}, 0), Session::Tab::ofGrid({{tree.path("B")}}, 0)};
    window->restore(session);
    awaitSave();
    TabState* hidden = window->tabs()[1];
    ASSERT_TRUE(hidden->madePanes().isEmpty());
    hidden->activePane()->navigate(tree.root()); // its pane is made now, after the keeper began
    EXPECT_TRUE(keeper->hasPendingSave());
    awaitSave();
    EXPECT_EQ(stored()->tabs[1].left, tree.root());
}

TEST_F(KeeperFixture, ClosingTheWindowSavesAtOnce)
{
    window->newTab(tree.path("A"));
    window->closeTab();
    window->closeTab(); // the last tab asks the window to close
    EXPECT_FALSE(keeper->hasPendingSave());
    ASSERT_TRUE(stored());
    EXPECT_EQ(stored()->tabs.size(), 1);
}

TEST_F(KeeperFixture, TheFirstWindowOfARunRestoresAndTheSecondStartsFresh)
{
    window->newTab(tree.path("A"));
    window->newTab(tree.path("B"));
    keeper->saveNow();
    const Session saved = window->session();

    Session::beginRun(); // the program starts again
    WindowState first(tree.path("B"), &preferences);
    SessionKeeper::keep(&first, true);
    EXPECT_EQ(first.session(), saved);
    EXPECT_FALSE(first.findChild<SessionKeeper*>()->hasPendingSave()); // restoring is no change

    WindowState second(tree.path("B"), &preferences);
    SessionKeeper::keep(&second, true);
    EXPECT_EQ(second.tabs().size(), 1);
    EXPECT_EQ(second.activePane()->url(), tree.path("B"));
}

TEST_F(KeeperFixture, AFirstWindowKeptWithoutRestoringUsesUpTheRunsRestore)
{
    window->newTab(tree.path("A"));
    keeper->saveNow();
    Session::beginRun();
    WindowState opened(tree.path("B"), &preferences);
    SessionKeeper::keep(&opened, false);
    EXPECT_EQ(opened.tabs().size(), 1);
    WindowState later(tree.path("B"), &preferences);
    SessionKeeper::keep(&later, true);
    EXPECT_EQ(later.tabs().size(), 1);
}

TEST_F(KeeperFixture, TheWindowsCloseSavesAPendingChangeAtOnce)
{
    QObject drawn; // stands for the window that draws the state
    WindowState closing(tree.root(), &preferences);
    SessionKeeper* keeping = SessionKeeper::keep(&closing, false, &drawn);
    closing.newTab(tree.path("B"));
    ASSERT_TRUE(keeping->hasPendingSave());
    delete std::exchange(keeper, nullptr); // the fixture's window is gone: this one is the last
    QHideEvent closed;
    QCoreApplication::sendEvent(&drawn, &closed);
    EXPECT_FALSE(keeping->hasPendingSave());
    EXPECT_EQ(stored()->tabs.size(), 2);
}

TEST_F(KeeperFixture, TheFrontWindowIsKeptAndTheOneLeftStandingReopens)
{
    // Besides the fixture's window, two drawn windows; the one made last is in front.
    QObject drawnFirst, drawnSecond;
    WindowState first(tree.path("A"), &preferences), second(tree.path("B"), &preferences);
    SessionKeeper* firstKeeper = SessionKeeper::keep(&first, false, &drawnFirst);
    SessionKeeper* secondKeeper = SessionKeeper::keep(&second, false, &drawnSecond);
    firstKeeper->setDelay(150);
    secondKeeper->setDelay(150);
    second.newTab(tree.path("B"));
    ASSERT_TRUE(waitUntil([&] { return stored() == second.session(); }));

    QEvent activate(QEvent::WindowActivate);
    QCoreApplication::sendEvent(&drawnFirst, &activate); // the first comes to the front…
    ASSERT_TRUE(waitUntil([&] { return stored() == first.session(); })) << "…and its session is kept a while later";
    second.newTab(tree.path("A")); // a window behind changes: the front one's session stays
    EXPECT_FALSE(waitUntil([&] { return stored() == second.session(); }, 500));

    QHideEvent closed;
    QCoreApplication::sendEvent(&drawnFirst, &closed); // the front window closes: the next one is kept
    EXPECT_EQ(stored(), second.session());
    QCoreApplication::sendEvent(&drawnSecond, &closed);
    EXPECT_EQ(stored(), window->session()) << "the fixture's window is the one left standing";
    delete std::exchange(keeper, nullptr);
    window->newTab(tree.path("A"));
    QCoreApplication::sendEvent(&drawnSecond, &closed); // a window gone already changes nothing
    EXPECT_NE(stored(), window->session());
}
