// How a pane moves between folders while loads run: the place left is gone from the view at
// once, a large folder shows its first batch before the rest, stale results are dropped, and a
// cursor whose row goes away moves to its neighbour.

#include "state/PaneState.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>
#include <fcntl.h>
#include <unistd.h>

using namespace orwick;
using test::waitUntil;

namespace {

struct PaneLoadingTest : ::testing::Test {
    test::TempTree tree;
    ViewPreferences preferences;

    std::unique_ptr<PaneState> open(const FilePath& folder)
    {
        auto pane = std::make_unique<PaneState>(folder, &preferences);
        EXPECT_TRUE(waitUntil([&] { return !pane->isLoading(); }));
        return pane;
    }
    void settle(PaneState& pane)
    {
        QCoreApplication::processEvents();
        ASSERT_TRUE(waitUntil([&] { return !pane.isLoading() && !pane.items().isEmpty(); }));
    }
    // `count` empty files named item00000.txt… in a new folder.
    FilePath manyFiles(const char* name, int count)
    {
        const FilePath folder = tree.folder(name);
        for (int i = 0; i < count; ++i) {
            const QByteArray path = folder.native() + QByteArray("/item") + QByteArray::number(i).rightJustified(5, '0') + ".txt";
            const int fd = ::open(path.constData(), O_CREAT | O_WRONLY, 0644);
            if (fd >= 0)
                ::close(fd);
        }
        return folder;
    }
    static QStringList names(const FileItems& items)
    {
        QStringList out;
        for (const FileItem& item : items)
            out << item.name;
        return out;
    }
};

} // namespace

TEST_F(PaneLoadingTest, LeavingAFolderTakesItsRowsAndSelectionAwayAtOnce)
{
    tree.file("Old/a.txt", "a");
    const FilePath b = tree.file("Old/b.txt", "b");
    tree.file("New/x.txt", "x");
    auto pane = open(tree.path("Old"));
    pane->click(b, Qt::NoModifier);
    int emptied = 0;
    QObject::connect(pane.get(), &PaneState::itemsChanged, [&] { emptied += pane->items().isEmpty() ? 1 : 0; });

    pane->navigate(tree.path("New"));
    // Before any event is handled: nothing of the old folder is left to act on.
    EXPECT_TRUE(pane->items().isEmpty());
    EXPECT_TRUE(pane->selection().isEmpty());
    EXPECT_TRUE(pane->selectedItems().isEmpty());
    EXPECT_EQ(pane->cursor(), std::nullopt);
    EXPECT_EQ(pane->row(b), -1);
    EXPECT_TRUE(pane->isLoading()) << "shows loading, not an empty folder";
    EXPECT_EQ(emptied, 1) << "the views are told";
    pane->moveCursor(1, false); // a key held down meanwhile finds nothing
    EXPECT_TRUE(pane->selection().isEmpty());

    settle(*pane);
    EXPECT_EQ(names(pane->items()), QStringList{QStringLiteral("x.txt")});
}

TEST_F(PaneLoadingTest, GoingAwayAndBackDuringALoadShowsOnlyTheLastFolder)
{
    tree.file("A/in-a.txt", "a");
    tree.file("B/in-b.txt", "b");
    auto pane = open(tree.path("A"));
    pane->navigate(tree.path("B"));
    pane->goBack();
    pane->goForward();
    pane->goBack();
    settle(*pane);
    QCoreApplication::processEvents();
    waitUntil([] { return false; }, 100); // late results of B, if any, arrive here and are dropped
    EXPECT_EQ(pane->url(), tree.path("A"));
    EXPECT_EQ(names(pane->items()), QStringList{QStringLiteral("in-a.txt")});
}

TEST_F(PaneLoadingTest, LargeFolderShowsASortedFirstBatchThenTheWholeKeepingTheCursor)
{
    const int count = 12000;
    const FilePath big = manyFiles("Big", count);
    tree.file("Small/s.txt", "s");
    auto pane = open(tree.path("Small"));
    QList<qsizetype> sizes;
    std::optional<FilePath> chosen;
    QObject::connect(pane.get(), &PaneState::itemsChanged, [&] {
        sizes.append(pane->items().size());
        if (pane->showsFirstBatch() && !chosen) {
            // The batch is usable: the user moves in it before the rest is in.
            EXPECT_LT(pane->items().size(), count);
            QStringList shown = names(pane->items());
            QStringList sorted = shown;
            sorted.sort();
            EXPECT_EQ(shown, sorted) << "sorted within itself";
            pane->moveCursor(1, false);
            pane->moveCursor(1, false);
            chosen = pane->cursor();
        }
    });
    pane->navigate(big);
    ASSERT_TRUE(waitUntil([&] { return !pane->isLoading() && pane->items().size() == count; }, 20000));
    ASSERT_TRUE(chosen.has_value()) << "no first batch was shown";
    EXPECT_EQ(sizes.first(), 0) << "the small folder went first";
    EXPECT_EQ(sizes.at(1), DirectoryLoader::kFirstBatchSize);
    EXPECT_EQ(pane->cursor(), chosen);
    EXPECT_EQ(pane->selection(), QSet<FilePath>{*chosen});
    EXPECT_FALSE(pane->showsFirstBatch());
    EXPECT_EQ(pane->items().first().name, QStringLiteral("item00000.txt"));
}

TEST_F(PaneLoadingTest, AFolderDeletedWhileShownLeavesNothingToActOn)
{
    const FilePath file = tree.file("Gone/a.txt", "a");
    auto pane = open(tree.path("Gone"));
    pane->click(file, Qt::NoModifier);
    ASSERT_TRUE(QDir(tree.path("Gone").text()).removeRecursively());
    pane->reload();
    ASSERT_TRUE(waitUntil([&] { return !pane->isLoading(); }));
    EXPECT_EQ(pane->error(), emptyText::cantOpen);
    EXPECT_TRUE(pane->items().isEmpty());
    EXPECT_TRUE(pane->selectedItems().isEmpty());
    EXPECT_TRUE(pane->selection().isEmpty());
}

TEST_F(PaneLoadingTest, NoLoadingWordForAQuickLoad)
{
    tree.file("Q/a.txt", "a");
    auto pane = open(tree.root());
    int changes = 0;
    QObject::connect(pane.get(), &PaneState::loadProgressChanged, [&] { ++changes; });
    pane->navigate(tree.path("Q"));
    EXPECT_EQ(pane->loadingText(), QString());
    settle(*pane);
    EXPECT_EQ(pane->loadingText(), QString());
    EXPECT_EQ(changes, 0);
}

// --- The cursor when its row goes away

TEST_F(PaneLoadingTest, TrashedRowGivesTheCursorAndSelectionToTheNextRow)
{
    tree.file("a.txt", "a");
    const FilePath b = tree.file("b.txt", "b");
    const FilePath c = tree.file("c.txt", "c");
    auto pane = open(tree.root());
    pane->click(b, Qt::NoModifier);
    ASSERT_TRUE(QFile::remove(b.text()));
    pane->reload();
    settle(*pane);
    EXPECT_EQ(pane->cursor(), c);
    EXPECT_EQ(pane->selection(), QSet<FilePath>{c});
    EXPECT_EQ(pane->anchor(), c);
}

TEST_F(PaneLoadingTest, TheLastRowGoneGivesThemToThePreviousRow)
{
    const FilePath a = tree.file("a.txt", "a");
    const FilePath b = tree.file("b.txt", "b");
    const FilePath c = tree.file("c.txt", "c");
    auto pane = open(tree.root());
    pane->click(b, Qt::NoModifier);
    pane->click(c, Qt::ShiftModifier);
    ASSERT_TRUE(QFile::remove(b.text()));
    ASSERT_TRUE(QFile::remove(c.text()));
    pane->reload();
    settle(*pane);
    EXPECT_EQ(pane->cursor(), a);
    EXPECT_EQ(pane->selection(), QSet<FilePath>{a});
}

TEST_F(PaneLoadingTest, ARowFilteredOutGivesTheCursorToTheNextShownRow)
{
    const FilePath alpha = tree.file("alpha.txt", "a");
    tree.file("beta.txt", "b");
    const FilePath gamma = tree.file("gamma.txt", "c");
    auto pane = open(tree.root());
    pane->click(alpha, Qt::NoModifier);
    pane->setFiltering(true);
    pane->setFilter(QStringLiteral("gam"));
    EXPECT_EQ(pane->cursor(), gamma);
    EXPECT_EQ(pane->selection(), QSet<FilePath>{gamma});
}

TEST_F(PaneLoadingTest, AnEmptySelectionStaysEmptyWhenTheCursorMoves)
{
    tree.file("a.txt", "a");
    const FilePath b = tree.file("b.txt", "b");
    const FilePath c = tree.file("c.txt", "c");
    auto pane = open(tree.root());
    pane->click(b, Qt::NoModifier);
    pane->clearSelection();
    ASSERT_TRUE(QFile::remove(b.text()));
    pane->reload();
    settle(*pane);
    EXPECT_EQ(pane->cursor(), c);
    EXPECT_TRUE(pane->selection().isEmpty());
}
