#include "app/WorkspaceActions.h"
#include "commands/CommandCatalog.h"
#include "commands/PaletteRanking.h"
#include "commands/WorkspaceCommands.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <gtest/gtest.h>

using namespace orwick;

namespace {

struct WorkspaceCommandsFixture : ::testing::Test {
    test::TempTree tree;
    ViewPreferences preferences;
    std::unique_ptr<WindowState> window;
    QStringList messages;

    void SetUp() override
    {
        tree.folder("A");
        tree.folder("B");
        for (const Workspace& workspace : QList<Workspace>(Workspaces::shared().all()))
            ASSERT_TRUE(Workspaces::shared().remove(workspace.name));
        window = std::make_unique<WindowState>(tree.root(), &preferences);
        QObject::connect(window.get(), &WindowState::messageRequested, [this](const QString& text) { messages << text; });
    }
    const AppCommand* command(const QList<AppCommand>& all, const QString& id)
    {
        for (const AppCommand& c : all)
            if (c.id == id)
                return &c;
        return nullptr;
    }
    QStringList ids() const
    {
        QStringList list;
        for (const AppCommand& c : CommandCatalog::all(*window))
            list << c.id;
        return list;
    }
};

} // namespace

TEST_F(WorkspaceCommandsFixture, SavingAskesTheWindowForAName)
{
    int asked = 0;
    QObject::connect(window.get(), &WindowState::workspaceNameRequested, [&asked] { ++asked; });
    const AppCommand* save = CommandCatalog::find("saveWorkspace");
    ASSERT_NE(save, nullptr);
    EXPECT_EQ(save->title, "Save Workspace…");
    EXPECT_EQ(save->symbol, "square.stack");
    EXPECT_TRUE(CommandCatalog::run("saveWorkspace", *window));
    EXPECT_EQ(asked, 1);
}

TEST_F(WorkspaceCommandsFixture, EachSavedWorkspaceIsACommandAfterTheSortOrders)
{
    EXPECT_FALSE(ids().contains("workspace.Work"));
    window->newTab(tree.path("A"));
    ASSERT_TRUE(workspaceActions::save(*window, "  Work "));
    EXPECT_EQ(messages.last(), "Saved workspace “Work”");
    ASSERT_TRUE(workspaceActions::save(*window, "home"));

    const QList<AppCommand> all = CommandCatalog::all(*window);
    const QStringList list = ids();
    const qsizetype first = list.indexOf("workspace.home");
    ASSERT_GE(first, 0);
    EXPECT_GT(first, list.indexOf("sort.kind"));
    EXPECT_EQ(list.mid(first, 5), (QStringList{"workspace.home", "workspace.Work", "saveWorkspace", "deleteWorkspace.home", "deleteWorkspace.Work"}));
    const AppCommand* open = command(all, "workspace.Work");
    EXPECT_EQ(open->title, "Workspace: Work");
    EXPECT_EQ(open->symbol, "square.stack");
    EXPECT_EQ(command(all, "deleteWorkspace.Work")->title, "Delete Workspace: Work");
}

TEST_F(WorkspaceCommandsFixture, OpeningAWorkspaceRestoresItsTabs)
{
    window->newTab(tree.path("A"));
    window->selectedTab()->split(window->activePane(), PaneEdge::right, tree.path("B"));
    ASSERT_TRUE(workspaceActions::save(*window, "Work"));
    const Session saved = window->session();

    WindowState other(tree.path("B"), &preferences);
    ASSERT_TRUE(CommandCatalog::run("workspace.Work", other));
    EXPECT_EQ(other.session(), saved);
    EXPECT_EQ(other.tabs().size(), 2);
}

TEST_F(WorkspaceCommandsFixture, DeletingAWorkspaceSaysSoAndDropsItsCommands)
{
    ASSERT_TRUE(workspaceActions::save(*window, "Work"));
    ASSERT_TRUE(CommandCatalog::run("deleteWorkspace.Work", *window));
    EXPECT_EQ(messages.last(), "Deleted workspace “Work”");
    EXPECT_TRUE(Workspaces::shared().all().isEmpty());
    EXPECT_FALSE(ids().contains("workspace.Work"));
    EXPECT_FALSE(ids().contains("deleteWorkspace.Work"));
    EXPECT_FALSE(CommandCatalog::run("workspace.Work", *window));
}

TEST_F(WorkspaceCommandsFixture, AnEmptyNameSavesNothing)
{
    EXPECT_FALSE(workspaceActions::save(*window, "   "));
    EXPECT_TRUE(messages.isEmpty());
    EXPECT_TRUE(Workspaces::shared().all().isEmpty());
}

TEST_F(WorkspaceCommandsFixture, ThePaletteFindsWorkspacesByTheWordWorkspace)
{
    ASSERT_TRUE(workspaceActions::save(*window, "Work"));
    QList<PaletteCommand> commands;
    for (const AppCommand& c : CommandCatalog::all(*window))
        commands.append({c.id, c.title, c.keywords, c.symbol, c.shortcutText(), c.disabledNote, c.enabledIn(*window)});
    const QList<PaletteSection> sections = PaletteRanking::rank(u"Workspace", commands, {}, {});
    QStringList rows;
    for (const PaletteSection& section : sections)
        for (const PaletteItem& item : section.items)
            rows << item.commandId;
    EXPECT_TRUE(rows.contains("workspace.Work"));
    EXPECT_TRUE(rows.contains("saveWorkspace"));
}
