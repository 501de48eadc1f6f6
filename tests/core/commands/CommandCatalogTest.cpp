#include "commands/CommandCatalog.h"
#include "state/WindowState.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <QSet>
#include <gtest/gtest.h>

using namespace orwick;

namespace {
struct CatalogFixture : ::testing::Test {
    test::TempTree tree;
    ViewPreferences preferences;
    std::unique_ptr<WindowState> window;
    void SetUp() override
    {
        tree.file("a.txt");
        tree.folder("Sub");
        window = std::make_unique<WindowState>(tree.root(), &preferences);
        ASSERT_TRUE(test::waitUntil([&] { return !window->activePane()->isLoading(); }));
    }
    bool enabled(const char* id) { return CommandCatalog::find(id)->enabledIn(*window); }
};
} // namespace

TEST_F(CatalogFixture, EveryCommandHasOneIdATitleAndAnAction)
{
    QSet<QString> ids;
    for (const AppCommand& command : CommandCatalog::all(*window)) {
        EXPECT_FALSE(ids.contains(command.id)) << command.id.toStdString();
        ids.insert(command.id);
        EXPECT_FALSE(command.title.isEmpty()) << command.id.toStdString();
        EXPECT_TRUE(command.run) << command.id.toStdString();
        if (!command.disabledNote.isEmpty())
            EXPECT_FALSE(command.enabledIn(*window)) << "a command with a note is one that is not built: " << command.id.toStdString();
    }
    // Catalogue order: the fixed commands first, in their order, then the families.
    const QList<AppCommand> all = CommandCatalog::all(*window);
    EXPECT_EQ(all.first().id, "newTab");
    EXPECT_EQ(all[1].id, "newFolder");
    EXPECT_TRUE(all.last().id.startsWith("sort.") || all.last().id.startsWith("view."));
    EXPECT_EQ(CommandCatalog::find("thisMac")->title, "This Computer");
    EXPECT_EQ(CommandCatalog::find("showInFinder")->title, "Show in System File Manager");
    EXPECT_EQ(CommandCatalog::find("nextTab")->shortcut, QKeySequence(Qt::CTRL | Qt::Key_Tab));
    EXPECT_EQ(CommandCatalog::find("dualPane")->shortcutText(), "Ctrl+\\");
    EXPECT_EQ(CommandCatalog::find("view.grid")->shortcut, QKeySequence(Qt::CTRL | Qt::Key_1));
}

TEST_F(CatalogFixture, PredicatesFollowTheWindow)
{
    EXPECT_FALSE(enabled("copyPath")); // nothing selected
    EXPECT_FALSE(enabled("openInNewTab"));
    EXPECT_FALSE(enabled("closePane")); // a single pane
    EXPECT_FALSE(enabled("reopenTab"));
    EXPECT_FALSE(enabled("airDrop"));
    EXPECT_FALSE(enabled("downloadNow"));

    window->activePane()->click(tree.path("Sub"), Qt::NoModifier);
    EXPECT_TRUE(enabled("copyPath"));
    EXPECT_TRUE(enabled("openInNewTab"));
    window->activePane()->setRenaming(tree.path("Sub"));
    EXPECT_FALSE(enabled("copyPath")) << "file commands wait while a name is edited";
    window->activePane()->setRenaming(std::nullopt);

    EXPECT_TRUE(CommandCatalog::run("dualPane", *window));
    EXPECT_TRUE(enabled("closePane"));
    EXPECT_TRUE(enabled("nextPane"));
}

TEST_F(CatalogFixture, RunningGoesThroughTheSamePredicate)
{
    EXPECT_FALSE(CommandCatalog::run("reopenTab", *window)); // disabled: not run
    EXPECT_TRUE(CommandCatalog::run("newTab", *window));
    EXPECT_EQ(window->tabs().size(), 2);
    EXPECT_TRUE(CommandCatalog::run("closeTab", *window));
    EXPECT_EQ(window->tabs().size(), 1);
    EXPECT_TRUE(CommandCatalog::run("reopenTab", *window));
    EXPECT_EQ(window->tabs().size(), 2);
    EXPECT_TRUE(CommandCatalog::run("view.table", *window));
    EXPECT_EQ(window->activePane()->viewMode(), ViewMode::table);
    EXPECT_TRUE(CommandCatalog::run("sort.size", *window));
    EXPECT_EQ(window->activePane()->sortKey(), SortKey::size);
    EXPECT_FALSE(CommandCatalog::run("no.such.command", *window));
}
