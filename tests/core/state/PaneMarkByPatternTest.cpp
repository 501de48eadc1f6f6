// Select by Pattern and Deselect by Pattern on a pane over real files.
#include "state/PaneState.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <gtest/gtest.h>

using namespace orwick;
using test::waitUntil;

namespace {
struct MarkFixture : ::testing::Test {
    test::TempTree tree;
    ViewPreferences preferences;
    std::unique_ptr<PaneState> pane;
    void SetUp() override
    {
        for (const char* name : {"a.txt", "b.txt", "c.md", "draft.txt", "photo.JPG"})
            tree.file(name);
        tree.folder("docs.txt.d");
        pane = std::make_unique<PaneState>(tree.root(), &preferences);
        ASSERT_TRUE(waitUntil([&] { return !pane->isLoading() && pane->items().size() == 6; }));
    }
    QStringList selectedNames() const
    {
        QStringList names;
        for (const FileItem& item : pane->selectedItems())
            names << item.name;
        return names;
    }
};
} // namespace

TEST_F(MarkFixture, SelectAddsTheTakenItemsAndAPatternThatTakesNothingChangesNothing)
{
    pane->click(tree.path("c.md"), Qt::NoModifier);
    EXPECT_EQ(pane->markMatching(NamePattern(u"*.txt"), PaneState::Mark::select), 3);
    EXPECT_EQ(selectedNames(), (QStringList{"a.txt", "b.txt", "c.md", "draft.txt"}));
    EXPECT_EQ(pane->cursor(), tree.path("c.md")) << "the cursor stays on a selected item";
    // A pattern that takes nothing changes nothing.
    pane->click(tree.path("a.txt"), Qt::NoModifier);
    EXPECT_EQ(pane->markMatching(NamePattern(u"*.pdf"), PaneState::Mark::select), 0);
    EXPECT_EQ(selectedNames(), QStringList{"a.txt"});
}

TEST_F(MarkFixture, DeselectTakesOnlyTheMatchingOnesAwayAndSelectMovesACursorOutsideToTheFirstTaken)
{
    pane->selectAll();
    EXPECT_EQ(pane->markMatching(NamePattern(u"draft*; *.jpg"), PaneState::Mark::deselect), 2);
    EXPECT_EQ(selectedNames(), (QStringList{"docs.txt.d", "a.txt", "b.txt", "c.md"}));
    // A cursor outside the selection goes to the first item taken.
    pane->click(tree.path("photo.JPG"), Qt::NoModifier);
    pane->clearSelection();
    EXPECT_EQ(pane->markMatching(NamePattern(u"*.txt | draft*"), PaneState::Mark::select), 2);
    EXPECT_EQ(selectedNames(), (QStringList{"a.txt", "b.txt"}));
    EXPECT_EQ(pane->cursor(), tree.path("a.txt"));
}

TEST_F(MarkFixture, OnlyShownItemsAreTaken)
{
    pane->setFilter(QStringLiteral("b"));
    ASSERT_TRUE(waitUntil([&] { return pane->items().size() < 6; }));
    pane->markMatching(NamePattern(u"*.txt"), PaneState::Mark::select);
    for (const FilePath& url : pane->selection())
        EXPECT_GE(pane->row(url), 0) << url.text().toStdString() << " is not shown";
}
