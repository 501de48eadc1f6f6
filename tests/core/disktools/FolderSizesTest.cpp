// "Calculate Folder Sizes" on a pane over a real tree: every folder row gets the size the space
// scan gives that folder, sorting by size uses it, leaving the folder forgets it, and stopping
// the walk drops what it would still have said. The command is there only for a real folder.

#include "DiskTestSupport.h"
#include "commands/CommandCatalog.h"
#include "disktools/FolderSizes.h"
#include "disktools/SpaceScan.h"
#include "state/WindowState.h"
#include "support/TestMain.h"

#include <QThreadPool>
#include <gtest/gtest.h>

using namespace orwick;
using namespace orwick::test;

namespace {

struct FolderSizesTest : ::testing::Test {
    TempTree tree;
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
            out << item.name;
        return out;
    }
};

TEST_F(FolderSizesTest, EachFolderRowGetsTheSizeTheSpaceScanGivesIt)
{
    put(tree, "big/inner/deep/large", patternBytes(2500000, 1));
    put(tree, "big/note.txt", patternBytes(5000, 2));
    put(tree, "mid/a", patternBytes(300000, 3));
    put(tree, "mid/b", patternBytes(200000, 4));
    tree.link("mid/to-big", "../big"); // links add nothing
    tree.folder("empty");
    tree.link("big-link", "big");      // a link to a folder is not measured
    put(tree, "file.bin", patternBytes(900000, 5));
    const auto pane = open(tree.root());
    int finished = 0;
    QObject::connect(pane->folderSizes(), &FolderSizes::finished, [&] { ++finished; });
    pane->measureFolderSizes();
    EXPECT_TRUE(pane->folderSizes()->isPending(tree.path("big")));
    ASSERT_TRUE(waitUntil([&] { return finished == 1; }));

    CancelFlag never;
    SpaceScan::Shared shared(never);
    const auto root = SpaceScan::scan(tree.root(), shared);
    int compared = 0;
    for (const auto& child : root->children) {
        if (!child->isFolder)
            continue;
        EXPECT_EQ(pane->folderSizes()->size(child->url()), child->size) << child->name.constData();
        ++compared;
    }
    EXPECT_EQ(compared, 3);
    EXPECT_GT(*pane->folderSizes()->size(tree.path("big")), 2500000);
    EXPECT_FALSE(pane->folderSizes()->size(tree.path("big-link")).has_value());
    EXPECT_FALSE(pane->folderSizes()->isPending(tree.path("big")));

    pane->sort(SortKey::size); // largest first, folders first
    EXPECT_EQ(shown(*pane).mid(0, 3), (QStringList{"big", "mid", "empty"}));
    pane->sort(SortKey::size);
    EXPECT_EQ(shown(*pane).mid(1, 3), (QStringList{"empty", "mid", "big"})) << "the unmeasured link sorts as smallest";

    pane->click(tree.path("big"), Qt::NoModifier);
    pane->click(tree.path("file.bin"), Qt::ControlModifier);
    EXPECT_EQ(pane->selectedSize(), *pane->folderSizes()->size(tree.path("big")) + 900000)
        << "a selected folder counts with its calculated size";

    pane->navigate(tree.path("mid"));
    EXPECT_TRUE(pane->folderSizes()->isEmpty()) << "sizes last until the folder is left";
    EXPECT_FALSE(pane->folderSizes()->size(tree.path("big")).has_value());
}

TEST_F(FolderSizesTest, SortingBySizeTakesInSizesAsTheyArrive)
{
    put(tree, "a/one", patternBytes(100000, 1));
    put(tree, "b/two", patternBytes(3000000, 2));
    const auto pane = open(tree.root());
    pane->sort(SortKey::size); // largest first; unmeasured folders tie and keep load order
    pane->measureFolderSizes();
    ASSERT_TRUE(waitUntil([&] { return !pane->folderSizes()->isMeasuring(); }));
    EXPECT_EQ(shown(*pane), (QStringList{"b", "a"}));
    pane->sort(SortKey::size);
    EXPECT_EQ(shown(*pane), (QStringList{"a", "b"}));
}

TEST_F(FolderSizesTest, StoppingDropsTheWalkAndItsLateResults)
{
    for (int i = 0; i < 40; ++i)
        for (int j = 0; j < 10; ++j)
            put(tree, QStringLiteral("f%1/g%2/file").arg(i).arg(j).toUtf8(), "x");
    FolderSizes sizes;
    int finished = 0;
    QObject::connect(&sizes, &FolderSizes::finished, [&] { ++finished; });
    QList<FilePath> folders;
    for (int i = 0; i < 40; ++i)
        folders.append(tree.path(QStringLiteral("f%1").arg(i)));
    sizes.measure(tree.root(), folders);
    EXPECT_TRUE(sizes.isMeasuring());
    sizes.clear();
    EXPECT_FALSE(sizes.isMeasuring());
    ASSERT_TRUE(QThreadPool::globalInstance()->waitForDone(10000));
    QCoreApplication::processEvents();
    EXPECT_TRUE(sizes.isEmpty()) << "nothing measured before the stop shows after it";
    EXPECT_EQ(finished, 0);

    // Measuring another folder forgets the sizes of the one before.
    sizes.measure(tree.root(), folders.mid(0, 2));
    ASSERT_TRUE(waitUntil([&] { return finished == 1; }));
    EXPECT_TRUE(sizes.size(folders[0]).has_value());
    sizes.measure(folders[5], {folders[5].child(QStringLiteral("g1"))});
    EXPECT_FALSE(sizes.size(folders[0]).has_value());
    ASSERT_TRUE(waitUntil([&] { return finished == 2; }));
}

TEST_F(FolderSizesTest, TheCommandIsForARealFolderOnly)
{
    tree.folder("sub");
    WindowState window(tree.root(), &preferences);
    ASSERT_TRUE(waitUntil([&] { return !window.activePane()->isLoading(); }));
    const AppCommand* command = CommandCatalog::find(QStringLiteral("folderSizes"));
    ASSERT_TRUE(command);
    EXPECT_TRUE(command->enabledIn(window));
    command->run(window);
    EXPECT_TRUE(waitUntil([&] { return window.activePane()->folderSizes()->size(tree.path("sub")).has_value(); }));

    window.activePane()->show(Listing::of(Listing::Kind::recents));
    EXPECT_FALSE(command->enabledIn(window));
    EXPECT_TRUE(window.activePane()->folderSizes()->isEmpty());
}

} // namespace
