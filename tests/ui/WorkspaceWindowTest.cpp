// The window's workspaces and session: "Save Workspace…" from the palette asks for a name and
// saves the window's tabs, the workspace opens again from the palette, Esc leaves everything as
// it was, and a window made after a restart comes back with the same tabs, panes and folders.

#include "app/SessionKeeper.h"
#include "app/Settings.h"
#include "app/Workspaces.h"
#include "commands/PaletteState.h"
#include "WindowFixture.h"
#include "platform/XdgPaths.h"
#include "ui/window/CommandMenus.h"
#include "ui/window/PaletteController.h"
#include "ui/window/PaneGrid.h"
#include "ui/window/WorkspaceNamePrompt.h"

#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QStackedWidget>
#include <QTabBar>

using namespace orwick;
using test::waitUntil;

namespace {

using Grid = QList<QList<FilePath>>;

struct WorkspaceWindowTest : test::WindowTest {
    void SetUp() override
    {
        for (const char* name : {"A", "B", "C"})
            tree.file(QString::fromLatin1(name) + "/inside.txt");
        for (const Workspace& workspace : QList<Workspace>(Workspaces::shared().all()))
            ASSERT_TRUE(Workspaces::shared().remove(workspace.name));
        openSettings()->remove(Session::kSettingsKey);
        Session::beginRun();
    }
    // Opens the palette, types `query` and runs the row of `commandId`.
    void runFromPalette(const QString& query, const QString& commandId)
    {
        window->activateWindow(); // back from the prompt
        ASSERT_TRUE(waitUntil([&] { return QApplication::activeWindow() == window.get(); }));
        press(Qt::Key_K, Qt::ControlModifier);
        ASSERT_TRUE(palette()->isOpen());
        type(query);
        int row = -1;
        for (int i = 0; i < palette()->rows().size(); ++i)
            if (palette()->rows()[i].id == QStringLiteral("cmd.") + commandId)
                row = i;
        ASSERT_GE(row, 0) << commandId.toStdString();
        palette()->selectRow(row);
        press(Qt::Key_Return);
        ASSERT_FALSE(palette()->isOpen());
    }
    WorkspaceNamePrompt* prompt() { return window->findChild<WorkspaceNamePrompt*>(); }
    void awaitPrompt()
    {
        ASSERT_TRUE(waitUntil([&] { return prompt() && prompt()->isVisible() && QApplication::focusWidget() == prompt()->nameField(); }));
    }
    // Two tabs: the root alone, and A beside B with B active; the second tab is shown.
    void arrangeTabs()
    {
        TabState* tab = state->newTab(tree.path("A"));
        tab->split(tab->activePane(), PaneEdge::right, tree.path("B"));
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
};

} // namespace

TEST_F(WorkspaceWindowTest, SavedByNameFromThePaletteAndOpenedFromIt)
{
    open(tree.root());
    arrangeTabs();
    const Session arranged = state->session();

    runFromPalette(QStringLiteral("save workspace"), QStringLiteral("saveWorkspace"));
    awaitPrompt();
    EXPECT_EQ(prompt()->nameField()->text(), QStringLiteral("B")) << "the shown folder's name, to type over";
    type(QStringLiteral("Work"));
    press(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return !prompt(); }));
    EXPECT_EQ(toast(), QStringLiteral("Saved workspace “Work”"));
    ASSERT_EQ(Workspaces::shared().all().size(), 1);
    EXPECT_EQ(Workspaces::shared().all().first().session, arranged);

    // Elsewhere now: one tab on C.
    state->closeTab();
    state->activePane()->navigate(tree.path("C"));
    ASSERT_EQ(state->tabs().size(), 1);

    runFromPalette(QStringLiteral("Workspace"), QStringLiteral("workspace.Work"));
    ASSERT_EQ(state->tabs().size(), 2);
    EXPECT_EQ(state->session(), arranged);
    EXPECT_EQ(window->tabBar()->count(), 2);
    EXPECT_EQ(window->tabBar()->currentIndex(), 1);
    ASSERT_TRUE(waitUntil([&] { return !pane()->isLoading(); }));
    EXPECT_EQ(pane()->url(), tree.path("B"));
    EXPECT_EQ(window->activePaneWidget()->pane(), pane());
}

TEST_F(WorkspaceWindowTest, ReturnWithoutANameSavesNothingAndEscapeLeavesTheNameUnsaved)
{
    open(tree.root());
    runFromPalette(QStringLiteral("save workspace"), QStringLiteral("saveWorkspace"));
    awaitPrompt();
    prompt()->nameField()->clear();
    press(Qt::Key_Return);
    QApplication::processEvents();
    ASSERT_NE(prompt(), nullptr) << "still asking";
    EXPECT_TRUE(Workspaces::shared().all().isEmpty());
    type(QStringLiteral("Never"));
    press(Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([&] { return !prompt(); }));
    EXPECT_TRUE(Workspaces::shared().all().isEmpty());
    EXPECT_NE(toast(), QStringLiteral("Saved workspace “Never”"));
}

TEST_F(WorkspaceWindowTest, AfterARestartTheWindowComesBackAsItWasLeft)
{
    open(tree.root());
    SessionKeeper::keep(state.get(), true, window.get());
    arrangeTabs();
    state->selectTab(-1); // the first tab shown when the window closes
    const Session left = state->session();
    window->close(); // saves at once, not two seconds later
    window.reset();
    state.reset();

    Session::beginRun(); // the program starts again
    state = std::make_unique<WindowState>(xdg::home(), &preferences);
    SessionKeeper::keep(state.get(), true);
    window = std::make_unique<MainWindow>(state.get());
    window->show();
    EXPECT_EQ(state->session(), left);
    ASSERT_EQ(state->tabs().size(), 2);
    EXPECT_EQ(gridOf(state->tabs()[0]), Grid{{tree.root()}});
    EXPECT_EQ(gridOf(state->tabs()[1]), (Grid{{tree.path("A")}, {tree.path("B")}}));
    EXPECT_EQ(window->tabBar()->currentIndex(), 0);
    ASSERT_TRUE(waitUntil([&] { return !pane()->isLoading() && !pane()->items().isEmpty(); }));

    // The tab not shown reads its folders when it is first shown.
    TabState* second = state->tabs()[1];
    EXPECT_TRUE(second->activePane()->isWaitingToBeShown());
    window->tabBar()->setCurrentIndex(1);
    EXPECT_EQ(state->selectedTab(), second);
    for (PaneState* shown : second->panes())
        ASSERT_TRUE(waitUntil([&] { return !shown->isLoading() && shown->items().size() == 1; }));
    EXPECT_EQ(window->activePaneWidget()->pane()->url().text(), tree.path("B").text());
}

TEST_F(WorkspaceWindowTest, GoingBackToATabKeepsItsActivePane)
{
    open(tree.root());
    arrangeTabs(); // B, the right pane, is active
    TabState* split = state->selectedTab();
    state->newTab(tree.path("C"));
    state->selectTabWithID(split->id());
    EXPECT_EQ(state->activePane()->url(), tree.path("B"));
    EXPECT_EQ(window->activePaneWidget()->pane(), state->activePane());
}

TEST_F(WorkspaceWindowTest, ARestoredWindowDrawsOnlyTheShownTabsPanes)
{
    open(tree.root());
    Session session;
    for (int i = 0; i < 10; ++i)
        session.tabs.append(Session::Tab::ofGrid({{tree.path("A")}, {tree.path("B")}}, 1));
    session.selected = 3;
    state->restore(session);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // the replaced tab's widgets go
    EXPECT_EQ(window->tabBar()->count(), 10);
    EXPECT_EQ(window->findChildren<PaneWidget*>().size(), 2);
    window->tabBar()->setCurrentIndex(7);
    EXPECT_EQ(window->findChildren<PaneWidget*>().size(), 4);
    EXPECT_EQ(window->activePaneWidget()->pane()->url(), tree.path("B"));
}

TEST_F(WorkspaceWindowTest, TheWindowMenuSavesOpensAndDeletesWorkspaces)
{
    open(tree.root());
    QAction* save = window->menus()->action(QStringLiteral("saveWorkspace"));
    ASSERT_NE(save, nullptr);
    EXPECT_EQ(save->text(), QStringLiteral("Save Workspace…"));
    save->trigger();
    awaitPrompt();
    type(QStringLiteral("Menu"));
    press(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return !prompt(); }));
    ASSERT_EQ(Workspaces::shared().all().size(), 1);
    const Session saved = state->session();
    state->newTab(tree.path("C"));

    QMenu* windowMenu = nullptr;
    for (QAction* top : window->menuBar()->actions())
        if (top->text() == QStringLiteral("&Window"))
            windowMenu = top->menu();
    ASSERT_NE(windowMenu, nullptr);
    const auto submenu = [&](const QString& title) -> QMenu* {
        for (QAction* entry : windowMenu->actions())
            if (entry->menu() && entry->text() == title)
                return entry->menu();
        return nullptr;
    };
    QMenu* opening = submenu(QStringLiteral("Open Workspace"));
    ASSERT_NE(opening, nullptr);
    Q_EMIT opening->aboutToShow();
    ASSERT_EQ(opening->actions().size(), 1);
    EXPECT_EQ(opening->actions().first()->text(), QStringLiteral("Menu"));
    opening->actions().first()->trigger();
    EXPECT_EQ(state->session(), saved);

    QMenu* deleting = submenu(QStringLiteral("Delete Workspace"));
    ASSERT_NE(deleting, nullptr);
    Q_EMIT deleting->aboutToShow();
    deleting->actions().first()->trigger();
    EXPECT_EQ(toast(), QStringLiteral("Deleted workspace “Menu”"));
    Q_EMIT opening->aboutToShow();
    ASSERT_EQ(opening->actions().size(), 1);
    EXPECT_FALSE(opening->actions().first()->isEnabled()) << "No Saved Workspaces";
}
