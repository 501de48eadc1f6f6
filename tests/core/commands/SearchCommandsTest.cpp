// The search commands of the catalogue: Search… opens the pane's search field; Save Search to
// Sidebar keeps the shown search and the palette then offers it as "Search: NAME".

#include "commands/CommandCatalog.h"
#include "places/SidebarStore.h"
#include "state/WindowState.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <gtest/gtest.h>

using namespace orwick;

TEST(SearchCommands, SaveSearchKeepsTheShownSearchAndThePaletteOpensIt)
{
    test::TempTree tree;
    tree.file("Taxes/return-2024.pdf");
    ViewPreferences preferences;
    WindowState window(tree.root(), &preferences);
    PaneState* pane = window.activePane();
    ASSERT_TRUE(test::waitUntil([&] { return !pane->isLoading(); }));
    const AppCommand* search = CommandCatalog::find("search");
    const AppCommand* save = CommandCatalog::find("saveSearch");
    ASSERT_TRUE(search && save);
    EXPECT_FALSE(save->enabledIn(window)) << "no search shown yet";

    search->run(window);
    EXPECT_TRUE(pane->isSearching());
    pane->setSearchText("return");
    ASSERT_TRUE(test::waitUntil([&] { return pane->listing() && !pane->isLoading(); }));
    ASSERT_TRUE(save->enabledIn(window));
    QString message;
    QObject::connect(&window, &WindowState::messageRequested, [&](const QString& text) { message = text; });
    const qsizetype before = SidebarStore::shared().searches().size();
    save->run(window);
    EXPECT_EQ(message, QStringLiteral("Saved to the sidebar"));
    ASSERT_EQ(SidebarStore::shared().searches().size(), before + 1);
    const SavedSearch kept = SidebarStore::shared().searches().last();
    EXPECT_EQ(kept.name, "return");
    EXPECT_EQ(kept.text, "return");
    EXPECT_EQ(kept.scope, "below");
    EXPECT_FALSE(kept.id.isEmpty());

    pane->endSearch();
    const QList<AppCommand> all = CommandCatalog::all(window);
    const auto row = std::find_if(all.begin(), all.end(), [&](const AppCommand& c) { return c.id == "savedSearch." + kept.id; });
    ASSERT_NE(row, all.end());
    EXPECT_EQ(row->title, QStringLiteral("Search: return"));
    row->run(window);
    ASSERT_TRUE(test::waitUntil([&] { return pane->listing() && !pane->isLoading(); }));
    EXPECT_EQ(pane->title(), "return");
    ASSERT_EQ(pane->items().size(), 1);
    EXPECT_EQ(pane->items().first().url, tree.path("Taxes/return-2024.pdf"));
}
