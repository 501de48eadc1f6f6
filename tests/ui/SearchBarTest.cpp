// The pane's search field in a real window: opened from the filter field with Ctrl+F or by the
// Search… command, typed into, its choices reached with Tab, and closed with Esc, from the field
// or from the results.

#include "WindowFixture.h"
#include "commands/CommandCatalog.h"
#include "ui/pane/FilterBar.h"
#include "ui/pane/SearchBar.h"

#include <QComboBox>
#include <QLineEdit>

namespace orwick::test {

namespace {

bool showsSearchOf(PaneState* pane, const QString& text)
{
    return pane->listing() && pane->listing()->kind == Listing::Kind::search && pane->listing()->query.text == text
        && !pane->isLoading();
}

} // namespace

TEST_F(WindowTest, CtrlFTwiceSearchesBelowTheFolderAndEscBringsItBack)
{
    tree.file("deep/inside/tax-2024.pdf");
    tree.file("tax.txt");
    tree.file("other.txt");
    open(tree.root());
    SearchBar* bar = window->activePaneWidget()->searchBar();
    press(Qt::Key_F, Qt::ControlModifier);
    type("tax");
    EXPECT_FALSE(bar->isVisible());
    press(Qt::Key_F, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return bar->isVisible() && bar->field()->hasFocus(); }));
    EXPECT_EQ(bar->field()->text(), "tax");
    ASSERT_TRUE(waitUntil([&] { return showsSearchOf(pane(), "tax") && pane()->items().size() == 2; }));

    press(Qt::Key_Tab);
    EXPECT_TRUE(bar->scopeBox()->hasFocus());
    press(Qt::Key_Tab);
    EXPECT_TRUE(bar->kindBox()->hasFocus());
    bar->kindBox()->setCurrentIndex(bar->kindBox()->findData(int(SearchQuery::Kind::pdfs)));
    ASSERT_TRUE(waitUntil([&] { return showsSearchOf(pane(), "tax") && pane()->items().size() == 1; }));
    EXPECT_EQ(pane()->items().first().url, tree.path("deep/inside/tax-2024.pdf"));

    press(Qt::Key_Escape);
    EXPECT_FALSE(bar->isVisible());
    EXPECT_FALSE(pane()->listing());
    ASSERT_TRUE(waitUntil([&] { return !pane()->isLoading() && pane()->items().size() == 3; }));
}

TEST_F(WindowTest, DownFromTheSearchFieldSelectsTheFirstResult)
{
    tree.file("deep/tax-2024.pdf");
    tree.file("tax.txt");
    tree.file("other.txt");
    open(tree.root());
    SearchBar* bar = window->activePaneWidget()->searchBar();
    press(Qt::Key_F, Qt::ControlModifier);
    press(Qt::Key_F, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return bar->isVisible() && bar->field()->hasFocus(); }));
    type("tax");
    ASSERT_TRUE(waitUntil([&] { return showsSearchOf(pane(), "tax") && pane()->items().size() == 2; }));
    press(Qt::Key_Down);
    EXPECT_FALSE(bar->isAncestorOf(QApplication::focusWidget()));
    EXPECT_TRUE(window->activePaneWidget()->isAncestorOf(QApplication::focusWidget()));
    const FilePath first = pane()->items().first().url;
    EXPECT_EQ(pane()->cursor(), first);
    EXPECT_EQ(pane()->selection(), QSet<FilePath>{first});
    // Down again walks the results, as in any list.
    press(Qt::Key_Down);
    EXPECT_EQ(pane()->cursor(), pane()->items().at(1).url);
}

TEST_F(WindowTest, TheSearchCommandOpensTheFieldAndNothingFoundSaysSo)
{
    tree.file("a.txt");
    open(tree.root());
    const AppCommand* command = CommandCatalog::find(QStringLiteral("search"));
    ASSERT_TRUE(command);
    ASSERT_TRUE(command->enabledIn(*state));
    command->run(*state);
    SearchBar* bar = window->activePaneWidget()->searchBar();
    ASSERT_TRUE(waitUntil([&] { return bar->isVisible() && bar->field()->hasFocus(); }));
    type("zebra");
    ASSERT_TRUE(waitUntil([&] { return showsSearchOf(pane(), "zebra"); }));
    EXPECT_EQ(pane()->emptyText(), QStringLiteral("Nothing matches “zebra”"));
    press(Qt::Key_Down);
    EXPECT_FALSE(bar->field()->hasFocus());
    EXPECT_TRUE(bar->isVisible());
}

TEST_F(WindowTest, EscInTheResultsEndsTheSearchAndCtrlFThereGoesBackToTheSearchField)
{
    tree.file("a.txt");
    tree.file("sub/b.txt");
    tree.file("c.md");
    open(tree.root());
    SearchBar* bar = window->activePaneWidget()->searchBar();
    FilterBar* filter = window->activePaneWidget()->filterBar();
    press(Qt::Key_F, Qt::ControlModifier);
    press(Qt::Key_F, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return bar->isVisible() && bar->field()->hasFocus(); }));
    type("txt");
    ASSERT_TRUE(waitUntil([&] { return showsSearchOf(pane(), "txt") && pane()->items().size() == 2; }));
    press(Qt::Key_Return); // into the results
    ASSERT_FALSE(bar->isAncestorOf(QApplication::focusWidget()));

    // Ctrl+F in the results goes back to the search field; no filter field opens above it.
    press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(bar->field()->hasFocus());
    EXPECT_FALSE(pane()->isFiltering());
    EXPECT_FALSE(filter->isVisible());
    EXPECT_TRUE(showsSearchOf(pane(), "txt"));

    // Esc in the results (a row selected or not) brings the folder back, as in the field.
    press(Qt::Key_Return);
    press(Qt::Key_Down);
    ASSERT_FALSE(pane()->selection().isEmpty());
    press(Qt::Key_Escape);
    EXPECT_FALSE(bar->isVisible());
    EXPECT_FALSE(pane()->listing());
    ASSERT_TRUE(waitUntil([&] { return !pane()->isLoading() && pane()->items().size() == 3; }));
    EXPECT_TRUE(window->activePaneWidget()->isAncestorOf(QApplication::focusWidget()));
}

} // namespace orwick::test
