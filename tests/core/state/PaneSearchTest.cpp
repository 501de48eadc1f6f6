#include "state/PaneState.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <QElapsedTimer>
#include <QThread>
#include <gtest/gtest.h>

using namespace orwick;
using test::waitUntil;

namespace {

// Counts the search runs a pane starts.
struct RunCounter {
    int runs = 0;
    explicit RunCounter(PaneState* pane) { QObject::connect(pane, &PaneState::searchStarted, [this] { ++runs; }); }
    int count() const { return runs; }
};

struct PaneSearch : ::testing::Test {
    test::TempTree tree;
    ViewPreferences preferences;

    std::unique_ptr<PaneState> open(const FilePath& folder)
    {
        auto pane = std::make_unique<PaneState>(folder, &preferences);
        EXPECT_TRUE(waitUntil([&] { return !pane->isLoading(); }));
        return pane;
    }
    static QStringList shown(const PaneState& pane)
    {
        QStringList out;
        for (const FileItem& item : pane.items())
            out << item.url.text();
        out.sort();
        return out;
    }
    // Runs the event loop for `ms` milliseconds.
    static void pump(int ms)
    {
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < ms) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
            QThread::msleep(2);
        }
    }
    static bool searched(const PaneState& pane)
    {
        return pane.listing() && pane.listing()->kind == Listing::Kind::search && !pane.isLoading();
    }
};

} // namespace

TEST_F(PaneSearch, TypingQuicklyRunsOneSearchAQuarterSecondAfterTheLastKey)
{
    tree.file("a/tax-2024.pdf");
    tree.file("tax.txt");
    auto pane = open(tree.root());
    RunCounter runs(pane.get());
    pane->focusSearch();
    QElapsedTimer typing;
    typing.start();
    for (const QString& text : {"t", "ta", "tax", "tax-", "tax-2"}) {
        pane->setSearchText(text);
        pump(40);
    }
    EXPECT_EQ(runs.count(), 0) << "nothing runs while keys come faster than the wait";
    pump(PaneState::kSearchDebounceMs - 60);
    EXPECT_EQ(runs.count(), 0);
    ASSERT_TRUE(waitUntil([&] { return runs.count() == 1; }, 2000));
    ASSERT_TRUE(waitUntil([&] { return searched(*pane); }));
    pump(300);
    EXPECT_EQ(runs.count(), 1);
    EXPECT_EQ(pane->listing()->query.text, "tax-2");
    EXPECT_EQ(shown(*pane), QStringList{tree.path("a/tax-2024.pdf").text()});
}

TEST_F(PaneSearch, ResultsNameTheirFolderInTheNoteAndNothingFoundSaysSo)
{
    tree.file("Documents/Résumé.odt");
    auto pane = open(tree.root());
    pane->focusSearch();
    pane->setSearchText("resume");
    ASSERT_TRUE(waitUntil([&] { return searched(*pane) && !pane->items().isEmpty(); }));
    EXPECT_EQ(pane->items().first().url, tree.path("Documents/Résumé.odt"));
    ASSERT_TRUE(pane->listingNote());
    EXPECT_EQ(*pane->listingNote(), QStringLiteral("Below ") + tree.root().fileName());
    EXPECT_EQ(pane->title(), QStringLiteral("Search “resume”"));

    pane->setSearchText("zebra");
    ASSERT_TRUE(waitUntil([&] { return searched(*pane) && pane->listing()->query.text == "zebra"; }));
    EXPECT_TRUE(pane->items().isEmpty());
    EXPECT_EQ(pane->emptyText(), QStringLiteral("Nothing matches “zebra”"));
}

TEST_F(PaneSearch, ClearingTheTextBringsTheFolderBackAndEndingClosesTheField)
{
    tree.file("one.txt");
    tree.file("two.txt");
    auto pane = open(tree.root());
    pane->focusSearch();
    pane->setSearchText("one");
    ASSERT_TRUE(waitUntil([&] { return searched(*pane); }));
    EXPECT_EQ(pane->items().size(), 1);
    pane->setSearchText("");
    ASSERT_TRUE(waitUntil([&] { return !pane->listing() && !pane->isLoading(); }));
    EXPECT_EQ(pane->items().size(), 2);
    EXPECT_TRUE(pane->isSearching());

    pane->setSearchText("two");
    ASSERT_TRUE(waitUntil([&] { return searched(*pane); }));
    pane->endSearch();
    EXPECT_FALSE(pane->isSearching());
    EXPECT_FALSE(pane->listing());
    EXPECT_FALSE(pane->listingNote());
    ASSERT_TRUE(waitUntil([&] { return !pane->isLoading(); }));
    EXPECT_EQ(pane->items().size(), 2);
}

TEST_F(PaneSearch, ScopeKindAndDateChoicesShapeTheQuery)
{
    tree.file("photo.jpg");
    tree.file("deep/photo-2.jpg");
    tree.file("deep/photo.txt");
    auto pane = open(tree.root());
    pane->focusSearch();
    pane->setSearchText("photo");
    pane->setSearchKind(SearchQuery::Kind::images);
    ASSERT_TRUE(waitUntil([&] { return searched(*pane) && pane->listing()->query.kind == SearchQuery::Kind::images; }));
    EXPECT_EQ(shown(*pane), (QStringList{tree.path("deep/photo-2.jpg").text(), tree.path("photo.jpg").text()}));
    pane->setSearchScope(SearchQuery::Scope::here);
    ASSERT_TRUE(waitUntil([&] { return searched(*pane) && pane->listing()->query.scope == SearchQuery::Scope::here; }));
    EXPECT_EQ(shown(*pane), QStringList{tree.path("photo.jpg").text()});
    EXPECT_TRUE(pane->listingNote()->contains("Images"));
}

TEST_F(PaneSearch, OpeningASavedSearchRunsItAtOnceInItsFolder)
{
    tree.file("Taxes/2024/return.pdf");
    tree.file("Taxes/notes.txt");
    auto pane = open(tree.root());
    SearchQuery query;
    query.text = "return";
    query.folder = tree.path("Taxes");
    query.kind = SearchQuery::Kind::pdfs;
    RunCounter runs(pane.get());
    pane->open(query.toSaved("Tax returns", "id-1"));
    EXPECT_EQ(runs.count(), 1);
    EXPECT_EQ(pane->url(), tree.path("Taxes"));
    ASSERT_TRUE(waitUntil([&] { return searched(*pane); }));
    EXPECT_EQ(pane->title(), "Tax returns");
    EXPECT_EQ(shown(*pane), QStringList{tree.path("Taxes/2024/return.pdf").text()});
    EXPECT_EQ(pane->searchKind(), SearchQuery::Kind::pdfs);
    pump(PaneState::kSearchDebounceMs + 100);
    EXPECT_EQ(runs.count(), 1) << "applying the fields does not run it again";
    pane->goBack();
    EXPECT_FALSE(pane->listing());
}

TEST_F(PaneSearch, NavigatingAwayDropsTheSearchAndResetsTheScope)
{
    tree.file("x/match.txt");
    auto pane = open(tree.root());
    pane->focusSearch();
    pane->setSearchScope(SearchQuery::Scope::mac);
    pane->setSearchScope(SearchQuery::Scope::below);
    pane->setSearchText("match");
    ASSERT_TRUE(waitUntil([&] { return searched(*pane); }));
    pane->navigate(tree.path("x"));
    EXPECT_FALSE(pane->listing());
    EXPECT_FALSE(pane->listingNote());
    EXPECT_EQ(pane->searchScope(), SearchQuery::Scope::below);
    EXPECT_FALSE(pane->isSearching());
}
