#include "search/NameIndex.h"

#include "fileops/FileOperations.h"
#include "places/SidebarStore.h"
#include "search/NameIndexFile.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <QDir>
#include <QFile>
#include <QUndoStack>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace orwick;
using namespace orwick::test;

namespace {

struct NameIndexTest : ::testing::Test {
    TempTree tree;  // the walked folder
    TempTree data;  // where the index file lives
    FilePath indexFile = data.path(QStringLiteral("Orwick/name-index.bin"));

    NameIndex::Options options(qsizetype watchBudget = 0) const
    {
        NameIndex::Options o;
        o.file = indexFile;
        o.roots = [root = tree.root()] { return std::vector<FilePath>{root}; };
        o.settleMs = 20;
        o.saveDelayMs = 0;
        o.watchBudget = watchBudget;
        return o;
    }

    bool holds(const NameIndex& index, const QString& relative) const
    {
        return index.table().find(tree.path(relative)) != NameTable::kNone;
    }
    bool holds(const NameIndex& index, const QByteArray& relativeBytes) const
    {
        return index.table().find(FilePath::fromNative(tree.root().native() + '/' + relativeBytes)) != NameTable::kNone;
    }

    static void walk(NameIndex& index)
    {
        int walks = 0;
        QObject connection; // ends with this function
        QObject::connect(&index, &NameIndex::walkFinished, &connection, [&walks] { ++walks; });
        if (index.isStarted())
            index.refresh(); // the shared index, in a repeated run
        else
            index.start();
        ASSERT_TRUE(waitUntil([&] { return walks > 0; }, 20000));
    }
    static void walkAndSave(NameIndex& index)
    {
        int saves = 0;
        QObject connection; // ends with this function
        QObject::connect(&index, &NameIndex::saved, &connection, [&saves] { ++saves; });
        walk(index);
        ASSERT_TRUE(waitUntil([&] { return saves > 0; }, 20000));
    }
};

} // namespace

TEST_F(NameIndexTest, NothingHappensBeforeStartThenTheFirstWalkIndexesTheTree)
{
    tree.file("Documents/report.txt");
    tree.file("Documents/2024/budget.ods");
    tree.file(".config/app/settings.ini");          // hidden: searches leave it out
    tree.file("site/package.json");
    tree.file("site/node_modules/left-pad/index.js"); // a build folder: listed, not entered
    tree.link(QStringLiteral("loop"), tree.root().native()); // a link is not followed
    NameIndex index(options());
    EXPECT_FALSE(index.isStarted());
    EXPECT_FALSE(index.isReady());
    walk(index);
    EXPECT_TRUE(index.isReady());
    EXPECT_TRUE(holds(index, QStringLiteral("Documents/report.txt")));
    EXPECT_TRUE(holds(index, QStringLiteral("Documents/2024/budget.ods")));
    EXPECT_TRUE(holds(index, QStringLiteral("site/package.json")));
    EXPECT_TRUE(holds(index, QStringLiteral("site/node_modules")));
    EXPECT_FALSE(index.table().isEntered(index.table().find(tree.path(QStringLiteral("site/node_modules")))));
    EXPECT_FALSE(holds(index, QStringLiteral("site/node_modules/left-pad")));
    EXPECT_FALSE(holds(index, QStringLiteral(".config")));
    EXPECT_TRUE(holds(index, QStringLiteral("loop")));
    EXPECT_FALSE(holds(index, QStringLiteral("loop/Documents")));
}

TEST_F(NameIndexTest, TheNextStartLoadsTheSavedNamesAtOnceThenWalksAgain)
{
    tree.file("Documents/report.txt");
    tree.file(QByteArray("Documents/caf\xe9 menu.txt"), "not UTF-8");
    {
        NameIndex first(options());
        walkAndSave(first);
    }
    ASSERT_TRUE(exists(indexFile));
    tree.file("Documents/added while closed.txt");

    NameIndex second(options());
    int changes = 0;
    bool sawLoadedTable = false;
    QObject::connect(&second, &NameIndex::tableChanged, [&] {
        if (++changes == 1) // the file's names: without what came after the save
            sawLoadedTable = holds(second, QStringLiteral("Documents/report.txt"))
                             && holds(second, QByteArray("Documents/caf\xe9 menu.txt"))
                             && !holds(second, QStringLiteral("Documents/added while closed.txt"));
    });
    walk(second);
    EXPECT_TRUE(sawLoadedTable);
    EXPECT_EQ(changes, 2);
    EXPECT_TRUE(holds(second, QStringLiteral("Documents/added while closed.txt")));
    EXPECT_TRUE(holds(second, QByteArray("Documents/caf\xe9 menu.txt")));
    ::unlink((tree.root().native() + "/Documents/caf\xe9 menu.txt").constData()); // QTemporaryDir can't
}

TEST_F(NameIndexTest, ADamagedFileIsSetAsideAndTheNamesWalkedAndSavedAfresh)
{
    tree.file("notes/today.md");
    {
        NameIndex first(options());
        walkAndSave(first);
    }
    QByteArray bytes = readAll(indexFile);
    ASSERT_GT(bytes.size(), 60);
    bytes[bytes.size() - 3] = char(bytes[bytes.size() - 3] ^ 0x5a); // one name's byte changed
    ASSERT_TRUE(writeFile(indexFile, bytes));
    EXPECT_FALSE(NameIndexFile::read(indexFile)); // a checksum that doesn't match
    ASSERT_TRUE(exists(NameIndexFile::damagedPath(indexFile)));

    ASSERT_TRUE(writeFile(indexFile, bytes.left(30))); // cut short
    NameIndex second(options());
    walkAndSave(second);
    EXPECT_TRUE(holds(second, QStringLiteral("notes/today.md")));
    EXPECT_EQ(readAll(NameIndexFile::damagedPath(indexFile)), bytes.left(30));
    const auto saved = NameIndexFile::read(indexFile);
    ASSERT_TRUE(saved);
    EXPECT_NE(saved->table.find(tree.path(QStringLiteral("notes/today.md"))), NameTable::kNone);
}

TEST_F(NameIndexTest, TheWatcherBringsInNewNamesAndTakesOutGoneOnes)
{
    tree.file("inbox/old.txt");
    tree.file("archive/2019/taxes.pdf");
    NameIndex index(options());
    walk(index);
    ASSERT_TRUE(waitUntil([&] { return index.watchedFolders() == 4; }));

    tree.file("inbox/new.txt");                       // a file in a watched folder
    tree.file("inbox/project/src/main.cpp");          // a new folder: walked whole
    tree.file("inbox/project/package.json");
    tree.file("inbox/project/node_modules/left-pad/index.js"); // but not into its build folder
    ASSERT_TRUE(QFile::remove(tree.path(QStringLiteral("archive/2019/taxes.pdf")).text()));
    ASSERT_TRUE(QDir(tree.path(QStringLiteral("archive")).text()).removeRecursively());
    EXPECT_TRUE(waitUntil([&] {
        return holds(index, QStringLiteral("inbox/new.txt")) && holds(index, QStringLiteral("inbox/project/src/main.cpp"))
               && !holds(index, QStringLiteral("archive/2019")) && !holds(index, QStringLiteral("archive"));
    }));
    EXPECT_TRUE(holds(index, QStringLiteral("inbox/old.txt")));
    EXPECT_TRUE(holds(index, QStringLiteral("inbox/project/node_modules")));
    EXPECT_FALSE(holds(index, QStringLiteral("inbox/project/node_modules/left-pad")));
    // The new folders are watched in turn.
    tree.file("inbox/project/src/util.cpp");
    EXPECT_TRUE(waitUntil([&] { return holds(index, QStringLiteral("inbox/project/src/util.cpp")); }));
}

TEST_F(NameIndexTest, OrwicksOwnChangesReachFoldersTheWatcherDoesNotCover)
{
    const FilePath draft = tree.file("deep/er/draft.txt");
    NameIndex index(options(1)); // only the root is watched
    FileOperations ops;
    QUndoStack undo;
    index.follow(&ops);
    walk(index);
    ASSERT_EQ(index.watchedFolders(), 1);

    int updates = 0;
    QObject::connect(&index, &NameIndex::updated, [&updates] { ++updates; });
    ops.rename(draft, "final.txt", &undo);
    EXPECT_TRUE(waitUntil([&] {
        return holds(index, QStringLiteral("deep/er/final.txt")) && !holds(index, QStringLiteral("deep/er/draft.txt"));
    }));
    ops.trash({tree.path(QStringLiteral("deep/er/final.txt"))}, QStringLiteral("Move to Trash"), &undo);
    EXPECT_TRUE(waitUntil([&] { return ops.isIdle() && !holds(index, QStringLiteral("deep/er/final.txt")); }));
    undo.undo(); // put back
    EXPECT_TRUE(waitUntil([&] { return ops.isIdle() && holds(index, QStringLiteral("deep/er/final.txt")); }));
    EXPECT_GT(updates, 0);
}

TEST_F(NameIndexTest, RootsLeaveOutFoldersAnotherRootAlreadyReaches)
{
    const FilePath home = FilePath::fromNative("/home/ann");
    const auto roots = NameIndex::rootsFor({home, FilePath::fromNative("/home/ann/Documents"),
                                            FilePath::fromNative("/home/ann/.local/share/notes"),
                                            FilePath::fromNative("/srv/shared"), FilePath::fromNative("/srv/shared"), {}});
    EXPECT_EQ(roots, (std::vector<FilePath>{home, FilePath::fromNative("/home/ann/.local/share/notes"),
                                             FilePath::fromNative("/srv/shared")}));
}

TEST_F(NameIndexTest, AFolderOutsideTheTreeIsIndexedAsARootOfItsOwn)
{
    tree.file("mine.txt");
    TempTree elsewhere;
    elsewhere.file("team/plan.md");
    NameIndex::Options o = options();
    o.roots = [&] { return std::vector<FilePath>{tree.root(), elsewhere.root()}; };
    NameIndex index(std::move(o));
    walk(index);
    EXPECT_TRUE(holds(index, QStringLiteral("mine.txt")));
    EXPECT_NE(index.table().find(elsewhere.path(QStringLiteral("team/plan.md"))), NameTable::kNone);
}

TEST_F(NameIndexTest, TheSharedIndexCoversHomeAndFollowsTheSidebarsFolders)
{
    const FilePath letter = tempHome().child(QStringLiteral("Letters/to-the-council.txt"));
    ASSERT_TRUE(writeFile(letter, {}));
    TempTree team;
    const FilePath plan = team.file("plans/roadmap.md");
    NameIndex& index = NameIndex::shared();
    walk(index);
    EXPECT_NE(index.table().find(letter), NameTable::kNone);
    EXPECT_EQ(index.table().find(plan), NameTable::kNone);

    SidebarStore::shared().add({team.root()}, QStringLiteral("Team"));
    EXPECT_TRUE(waitUntil([&] { return index.table().find(plan) != NameTable::kNone; }, 20000));
    EXPECT_NE(index.table().find(letter), NameTable::kNone);
    EXPECT_TRUE(waitUntil([&] { return exists(NameIndexFile::defaultPath()); }, 20000));
}

TEST_F(NameIndexTest, StoppingEndsTheWalkForGood)
{
    tree.file("a/b/c.txt");
    NameIndex index(options());
    int walks = 0;
    QObject::connect(&index, &NameIndex::walkFinished, [&walks] { ++walks; });
    index.start();
    index.stop(); // before the file was even read: no walk follows it
    EXPECT_FALSE(waitUntil([&] { return walks > 0 || index.isWalking(); }, 300));
    index.refresh();
    tree.file("a/b/d.txt");
    index.folderChanged(tree.path(QStringLiteral("a/b")));
    EXPECT_FALSE(index.isWalking());
    EXPECT_FALSE(index.isUpdating());
    EXPECT_FALSE(index.isReady());
}
