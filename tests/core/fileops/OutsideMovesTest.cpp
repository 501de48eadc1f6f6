// Renames made by other programs in a watched folder: a note, picture or folder renamed outside
// Orwick is offered for a link update ("Update links to “NAME”?"), accepting it rewrites the
// links as one "Update Links" step, and the engine's own renames and editors' saves through
// temporary files are never offered.

#include "FileOpsFixture.h"

#include "fileops/LinkUpdater.h"
#include "fileops/OutsideMoves.h"
#include "files/DirectoryWatcher.h"

#include <QElapsedTimer>
#include <cstdio>

namespace orwick::test {
namespace {

class OutsideMovesTest : public FileOpsTest {
protected:
    OutsideMovesTest()
    {
        LinkUpdater::setEnabled(true);
        tree.folder("vault/.obsidian");
        watcher = std::make_unique<DirectoryWatcher>(tree.path("vault"));
        QObject::connect(watcher.get(), &DirectoryWatcher::itemMoved, &outside, &OutsideMoves::observe);
        QObject::connect(&outside, &OutsideMoves::offered, [this](const QList<FileMove>& moves, const QString& text) {
            offers.append({moves, text});
        });
        QObject::connect(&updater, &LinkUpdater::linksUpdated, [this](LinkUpdateCount) { ++updates; });
    }
    // Lets the watcher and the settling time pass.
    void quietFor(int ms)
    {
        QElapsedTimer clock;
        clock.start();
        waitUntil([&] { return clock.elapsed() > ms; }, ms + 1000);
    }

    LinkUpdater updater{&ops};
    OutsideMoves outside{&ops, &updater};
    std::unique_ptr<DirectoryWatcher> watcher;
    QList<std::pair<QList<FileMove>, QString>> offers;
    int updates = 0;
};

TEST_F(OutsideMovesTest, RenameByAnotherProgramIsOfferedAndAcceptingUpdatesLinks)
{
    const FilePath old = file("vault/Note.md", "N\n");
    const FilePath linking = file("vault/index.md", "[n](Note.md) [[Note|the note]]\n");
    const FilePath renamed = tree.path("vault/Renamed.md");
    ASSERT_TRUE(watcher->isWatching());
    ASSERT_EQ(std::rename(old.c_str(), renamed.c_str()), 0);
    ASSERT_TRUE(waitUntil([&] { return !offers.isEmpty(); }, 5000));
    ASSERT_EQ(offers.size(), 1);
    EXPECT_EQ(offers[0].second, QStringLiteral("Update links to “Renamed.md”?"));
    EXPECT_EQ(offers[0].first, QList<FileMove>({{old, renamed}}));
    EXPECT_EQ(readAll(linking), "[n](Note.md) [[Note|the note]]\n"); // nothing until accepted

    outside.accept(offers[0].first, &stack);
    ASSERT_TRUE(waitUntil([&] { return updates == 1 && ops.isIdle(); }, 10000));
    EXPECT_EQ(readAll(linking), "[n](Renamed.md) [[Renamed|the note]]\n");
    EXPECT_EQ(stack.undoText(), QStringLiteral("Update Links"));
    undo();
    EXPECT_EQ(readAll(linking), "[n](Note.md) [[Note|the note]]\n");
}

TEST_F(OutsideMovesTest, NeitherTheEnginesOwnRenameNorAnEditorsSaveNorAnythingWithTheSettingOffIsOffered)
{
    const FilePath old = file("vault/Note.md", "N\n");
    file("vault/index.md", "[n](Note.md)\n");
    ops.rename(old, "Renamed.md", &stack);
    ASSERT_TRUE(waitUntil([&] { return updates == 1 && ops.isIdle(); }, 10000)); // the engine's own update
    quietFor(OutsideMoves::kSettleMs * 3);
    EXPECT_TRUE(offers.isEmpty());
    // Nor an editor saving through a temporary file.
    file("vault/Note.md", "N\n");
    const FilePath temporary = file("vault/.Note.md.swp", "N2\n");
    const FilePath other = file("vault/draft.tmp", "N3\n");
    ASSERT_EQ(std::rename(temporary.c_str(), tree.path("vault/Note.md").c_str()), 0);
    ASSERT_EQ(std::rename(other.c_str(), tree.path("vault/Note.md").c_str()), 0);
    quietFor(OutsideMoves::kSettleMs * 3);
    EXPECT_TRUE(offers.isEmpty());
    // Nor anything with the setting off.
    LinkUpdater::setEnabled(false);
    ASSERT_EQ(std::rename(tree.path("vault/Note.md").c_str(), tree.path("vault/Other.md").c_str()), 0);
    quietFor(OutsideMoves::kSettleMs * 3);
    EXPECT_TRUE(offers.isEmpty());
    LinkUpdater::setEnabled(true);
}

} // namespace
} // namespace orwick::test
