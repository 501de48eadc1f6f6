#include "state/PaneState.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using namespace orwick;
using test::waitUntil;

namespace {

bool loaded(const PaneState& pane) { return !pane.isLoading(); }

struct PaneFixture : ::testing::Test {
    test::TempTree tree;
    ViewPreferences preferences;

    std::unique_ptr<PaneState> open(const FilePath& folder)
    {
        auto pane = std::make_unique<PaneState>(folder, &preferences);
        EXPECT_TRUE(waitUntil([&] { return loaded(*pane); }));
        return pane;
    }
    void settle(PaneState& pane)
    {
        QCoreApplication::processEvents();
        ASSERT_TRUE(waitUntil([&] { return loaded(pane); }));
    }
    QStringList shown(const PaneState& pane)
    {
        QStringList out;
        for (const FileItem& item : pane.items())
            out << item.name;
        return out;
    }
};

} // namespace

TEST_F(PaneFixture, NavigatesWithHistoryAndSelectsTheFolderLeft)
{
    tree.folder("A/Inner");
    tree.folder("B");
    auto pane = open(tree.root());
    pane->navigate(tree.path("A"));
    settle(*pane);
    EXPECT_EQ(pane->backStack(), QList<FilePath>{tree.root()});

    pane->navigate(tree.path("A")); // the folder already shown: no history
    EXPECT_EQ(pane->backStack().size(), 1);

    pane->goBack();
    settle(*pane);
    EXPECT_EQ(pane->url(), tree.root());
    EXPECT_EQ(pane->forwardStack(), QList<FilePath>{tree.path("A")});
    EXPECT_EQ(pane->selection(), QSet<FilePath>{tree.path("A")}); // the folder that was left
    EXPECT_EQ(pane->cursor(), tree.path("A"));

    pane->goForward();
    settle(*pane);
    EXPECT_EQ(pane->url(), tree.path("A"));
    pane->navigate(tree.path("A/Inner"));
    settle(*pane);
    EXPECT_TRUE(pane->forwardStack().isEmpty()); // a new way forward forgets the old one
    pane->goUp();
    settle(*pane);
    EXPECT_EQ(pane->url(), tree.path("A"));
    EXPECT_EQ(pane->cursor(), tree.path("A/Inner"));

    pane->goBack(); // empty-handed pops do nothing harmful
    pane->goBack();
    pane->goBack();
    pane->goBack();
    settle(*pane);
    EXPECT_TRUE(pane->backStack().isEmpty());
}

TEST_F(PaneFixture, BackFromAListingReturnsWithoutTouchingHistory)
{
    tree.folder("A");
    auto pane = open(tree.root());
    pane->navigate(tree.path("A"));
    settle(*pane);
    pane->show(Listing::of(Listing::Kind::trash));
    settle(*pane);
    ASSERT_TRUE(pane->listing().has_value());
    pane->goBack();
    settle(*pane);
    EXPECT_FALSE(pane->listing().has_value());
    EXPECT_EQ(pane->url(), tree.path("A"));
    EXPECT_EQ(pane->backStack(), QList<FilePath>{tree.root()});
}

TEST_F(PaneFixture, AFolderThatGoesAwayShowsWhyAndBackStillWorks)
{
    tree.folder("Doomed");
    tree.file("Doomed/x.txt");
    auto pane = open(tree.root());
    pane->navigate(tree.path("Doomed"));
    settle(*pane);
    ASSERT_EQ(pane->items().size(), 1);
    QDir(tree.path("Doomed").text()).removeRecursively();
    ASSERT_TRUE(waitUntil([&] { return pane->error().has_value(); }, 5000)); // the watcher's reload fails
    EXPECT_EQ(pane->emptyText(), "Can't open this folder");
    EXPECT_TRUE(pane->items().isEmpty());
    pane->goBack();
    settle(*pane);
    EXPECT_EQ(pane->url(), tree.root());
    EXPECT_FALSE(pane->error().has_value());
}

TEST_F(PaneFixture, OutsideChangesReloadAndKeepSelectionByPath)
{
    tree.file("keep.txt");
    tree.file("drop.txt");
    auto pane = open(tree.root());
    pane->click(tree.path("keep.txt"), Qt::NoModifier);
    pane->click(tree.path("drop.txt"), Qt::ControlModifier);
    ASSERT_EQ(pane->selection().size(), 2);

    QFile::remove(tree.path("drop.txt").text());
    tree.file("arrived.txt");
    ASSERT_TRUE(waitUntil([&] { return shown(*pane) == QStringList{"arrived.txt", "keep.txt"}; }));
    EXPECT_EQ(pane->selection(), QSet<FilePath>{tree.path("keep.txt")});
    EXPECT_EQ(pane->cursor(), tree.path("keep.txt")); // the cursor was on the file that went: the next row takes it
}

TEST_F(PaneFixture, ReloadsAreSpacedByTheLastLoadTime)
{
    auto pane = open(tree.root());
    EXPECT_EQ(pane->reloadDelayMs(), 150); // a quick load waits the minimum
}

TEST_F(PaneFixture, CursorMovesExtendsAndClicksSelectLikeADesktop)
{
    for (const char* name : {"a", "b", "c", "d", "e"})
        tree.file(name);
    auto pane = open(tree.root());
    pane->moveCursor(1, false); // no cursor yet: the first row
    EXPECT_EQ(pane->cursor(), tree.path("a"));
    pane->moveCursor(1, false);
    pane->moveCursor(2, true);
    EXPECT_EQ(pane->selection(), (QSet<FilePath>{tree.path("b"), tree.path("c"), tree.path("d")}));
    EXPECT_EQ(pane->anchor(), tree.path("b"));
    pane->moveCursor(-3, true); // past the anchor, clamped to the top
    EXPECT_EQ(pane->selection(), (QSet<FilePath>{tree.path("a"), tree.path("b")}));
    pane->moveCursor(50, false);
    EXPECT_EQ(pane->selection(), QSet<FilePath>{tree.path("e")});

    pane->click(tree.path("b"), Qt::NoModifier);
    pane->click(tree.path("d"), Qt::ShiftModifier);
    EXPECT_EQ(pane->selection().size(), 3);
    pane->click(tree.path("c"), Qt::ControlModifier);
    EXPECT_EQ(pane->selection(), (QSet<FilePath>{tree.path("b"), tree.path("d")}));
    pane->invertSelection();
    EXPECT_EQ(pane->selection(), (QSet<FilePath>{tree.path("a"), tree.path("c"), tree.path("e")}));
    pane->selectAll();
    EXPECT_EQ(pane->selection().size(), 5);
    EXPECT_EQ(pane->selectedItems().first().name, "a"); // in shown order
}

TEST_F(PaneFixture, TypeSelectBuildsAPrefixWithinASecond)
{
    tree.file("Bravo");
    tree.file("Abacus");
    tree.file("alpha");
    auto pane = open(tree.root());
    pane->typeAhead("a", 10'000);
    EXPECT_EQ(pane->cursor(), tree.path("Abacus"));
    pane->typeAhead("b", 10'500);
    EXPECT_EQ(pane->cursor(), tree.path("Abacus")); // "ab", not "b"
    pane->typeAhead("b", 12'000);                   // a pause starts over
    EXPECT_EQ(pane->cursor(), tree.path("Bravo"));
    pane->typeAhead("z", 12'100);                   // no match keeps the selection
    EXPECT_EQ(pane->selection(), QSet<FilePath>{tree.path("Bravo")});
}

TEST_F(PaneFixture, TypeSelectFoldsAccentsAsTheFilterDoes)
{
    tree.file("Notes");
    tree.file(QStringLiteral("R\u00e9sum\u00e9 final.txt"));
    auto pane = open(tree.root());
    pane->typeAhead("resu", 10'000);
    EXPECT_EQ(pane->cursor(), tree.path(QStringLiteral("R\u00e9sum\u00e9 final.txt")));
    pane->typeAhead(QStringLiteral("N"), 20'000);
    EXPECT_EQ(pane->cursor(), tree.path("Notes"));
    pane->typeAhead(QStringLiteral("R\u00c9S"), 30'000);
    EXPECT_EQ(pane->cursor(), tree.path(QStringLiteral("R\u00e9sum\u00e9 final.txt")));
}

TEST_F(PaneFixture, SortDirectionFollowsTheKeyAndFlipsOnRepeat)
{
    tree.file("small", "1");
    tree.file("large", "1234567890");
    tree.folder("Folder");
    auto pane = open(tree.root());
    EXPECT_EQ(shown(*pane), (QStringList{"Folder", "large", "small"}));
    pane->sort(SortKey::size);
    EXPECT_FALSE(pane->sortAscending());
    EXPECT_EQ(shown(*pane), (QStringList{"Folder", "large", "small"})); // largest first, folders still first
    pane->sort(SortKey::size);
    EXPECT_EQ(shown(*pane), (QStringList{"Folder", "small", "large"}));
    pane->setGroupByDate(true);
    pane->sort(SortKey::name);
    EXPECT_TRUE(pane->sortAscending());
    EXPECT_FALSE(pane->groupByDate()); // choosing a sort ends grouping
}

TEST_F(PaneFixture, OpeningChoosesBetweenEnteringAndHandingOn)
{
    tree.folder("Sub");
    tree.file("doc.txt");
    tree.link("dangling", "nowhere");
    auto pane = open(tree.root());
    FileItems handedOn;
    QString message;
    QObject::connect(pane.get(), &PaneState::openRequested, [&](const FileItems& files) { handedOn = files; });
    QObject::connect(pane.get(), &PaneState::messageRequested, [&](const QString& text) { message = text; });

    pane->click(tree.path("doc.txt"), Qt::NoModifier);
    pane->openSelection();
    ASSERT_EQ(handedOn.size(), 1);
    EXPECT_EQ(handedOn.first().name, "doc.txt");

    pane->click(tree.path("dangling"), Qt::NoModifier);
    pane->openSelection();
    EXPECT_EQ(message, "“dangling” is a broken link");

    pane->click(tree.path("Sub"), Qt::NoModifier);
    pane->openSelection();
    settle(*pane);
    EXPECT_EQ(pane->url(), tree.path("Sub"));
}

TEST_F(PaneFixture, HiddenFilesToggleAndPendingSelectionAppliesOnArrival)
{
    tree.file(".secret");
    tree.file("plain");
    auto pane = open(tree.root());
    EXPECT_EQ(shown(*pane), QStringList{"plain"});
    pane->setShowHidden(true);
    settle(*pane);
    EXPECT_EQ(shown(*pane), (QStringList{".secret", "plain"}));

    pane->setPendingSelection({tree.path("made-later")});
    tree.file("made-later");
    ASSERT_TRUE(waitUntil([&] { return pane->selection().contains(tree.path("made-later")); }));
    EXPECT_EQ(pane->cursor(), tree.path("made-later"));
}
