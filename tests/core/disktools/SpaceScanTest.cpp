#include "DiskTestSupport.h"
#include "disktools/SpaceScan.h"
#include "platform/DirectoryReader.h"
#include "support/TempHome.h"

#include <gtest/gtest.h>

using namespace orwick;
using namespace orwick::test;

namespace {

std::unique_ptr<SpaceNode> scanOf(const FilePath& folder)
{
    CancelFlag never;
    SpaceScan::Shared shared(never);
    return SpaceScan::scan(folder, shared);
}

qint64 allocated(const FilePath& path) { return statPath(path)->allocatedBytes(); }

const SpaceNode* childNamed(const SpaceNode& node, const QByteArray& name)
{
    for (const auto& child : node.children)
        if (child->name == name)
            return child.get();
    return nullptr;
}

// Every folder's size is its own blocks, its small files and its children.
void expectConsistent(const SpaceNode& node)
{
    qint64 sum = node.direct + node.smallFiles;
    for (const auto& child : node.children) {
        EXPECT_EQ(child->parent, &node);
        sum += child->size;
        if (child->isFolder)
            expectConsistent(*child);
    }
    EXPECT_EQ(node.size, sum) << node.name.constData();
    for (size_t i = 1; i < node.children.size(); ++i)
        EXPECT_GE(node.children[i - 1]->size, node.children[i]->size) << "largest first";
}

} // namespace

TEST(SpaceScan, KeepsFoldersAndLargeFilesAndFoldsSmallOnes)
{
    TempTree tree;
    const auto big = put(tree, "big.bin", patternBytes(3000000, 1));
    const auto small1 = put(tree, "small1", patternBytes(5000, 2));
    const auto small2 = put(tree, "small2", patternBytes(90000, 3));
    put(tree, "sub/deeper/x", patternBytes(2000000, 4));
    put(tree, QByteArray("sub/na\xefve"), patternBytes(100, 5));
    put(tree, "Photos.PhotosLibrary/db", patternBytes(100, 6));

    const auto root = scanOf(tree.root());
    ASSERT_TRUE(root);
    expectConsistent(*root);
    EXPECT_EQ(root->rootURL, tree.root());
    EXPECT_EQ(root->smallCount, 2);
    EXPECT_EQ(root->smallFiles, allocated(small1) + allocated(small2));
    const SpaceNode* bigNode = childNamed(*root, "big.bin");
    ASSERT_TRUE(bigNode);
    EXPECT_FALSE(bigNode->isFolder);
    EXPECT_EQ(bigNode->size, allocated(big));
    EXPECT_EQ(bigNode->url(), big);
    const SpaceNode* sub = childNamed(*root, "sub");
    ASSERT_TRUE(sub);
    EXPECT_TRUE(sub->isFolder);
    EXPECT_EQ(childNamed(*sub, "deeper")->url(), tree.path("sub/deeper"));
    EXPECT_EQ(sub->smallCount, 1) << "a name that is not UTF-8 is measured like any other";
    EXPECT_TRUE(childNamed(*root, "Photos.PhotosLibrary")->isPackage) << "package extensions in any case";
    EXPECT_EQ(root->children.front()->name, "big.bin") << "children largest first";

    CancelFlag never;
    EXPECT_EQ(SpaceScan::measure(tree.root(), never), root->size) << "measure and scan agree";
    ::unlink(tree.path(QStringLiteral("sub")).child(QByteArrayView("na\xefve")).c_str());
}

TEST(SpaceScan, AnEmptyFolderWeighsOnlyItself)
{
    TempTree tree;
    const auto root = scanOf(tree.root());
    EXPECT_TRUE(root->children.empty());
    EXPECT_EQ(root->size, allocated(tree.root()));
}

TEST(SpaceScan, LinksAddNothingAndAreCounted)
{
    TempTree tree;
    put(tree, "data/large", patternBytes(2000000, 1));
    tree.folder("links");
    tree.link("links/to-data", tree.path("data").native());
    tree.link("links/loop", ".");
    const auto root = scanOf(tree.root());
    const SpaceNode* links = childNamed(*root, "links");
    ASSERT_TRUE(links);
    EXPECT_EQ(links->links, 2);
    EXPECT_EQ(links->size, allocated(tree.path("links")));
}

TEST(SpaceScan, UnreadableFoldersCountAsEmpty)
{
    TempTree tree;
    put(tree, "locked/inside", patternBytes(2000000, 1));
    setMode(tree.path("locked"), 0);
    std::unique_ptr<SpaceNode> root;
    {
        WithoutPermissionOverride asUser;
        root = scanOf(tree.root());
    }
    setMode(tree.path("locked"), 0755);
    const SpaceNode* locked = childNamed(*root, "locked");
    ASSERT_TRUE(locked);
    EXPECT_LT(locked->size, 1000000);
}

TEST(SpaceScan, AnotherMountedFileSystemContributesNothing)
{
    TempTree tree;
    const auto mountPoint = tree.folder("mounted");
    TemporaryMount mount(mountPoint);
    if (!mount.isMounted())
        GTEST_SKIP() << "no permission to mount a tmpfs here";
    put(tree, "mounted/file", patternBytes(2000000, 1));
    const auto root = scanOf(tree.root());
    EXPECT_EQ(childNamed(*root, "mounted")->size, 0);
    CancelFlag never;
    EXPECT_LT(*SpaceScan::measure(tree.root(), never), 1000000);
}

TEST(SpaceScan, RemovingANodeShrinksEveryAncestor)
{
    TempTree tree;
    put(tree, "a/b/big", patternBytes(2000000, 1));
    put(tree, "a/other", patternBytes(10, 2));
    auto root = scanOf(tree.root());
    SpaceNode* a = root->children.front().get();
    SpaceNode* b = const_cast<SpaceNode*>(childNamed(*a, "b"));
    const SpaceNode* big = childNamed(*b, "big");
    const qint64 bigSize = big->size, rootBefore = root->size, aBefore = a->size;
    b->remove(big);
    EXPECT_EQ(b->children.size(), 0u);
    EXPECT_EQ(a->size, aBefore - bigSize);
    EXPECT_EQ(root->size, rootBefore - bigSize);
}

TEST(SpaceScan, CancelledScanGivesNothing)
{
    TempTree tree;
    for (int i = 0; i < 20; ++i)
        put(tree, "f/" + QByteArray::number(i) + "/x", "y");
    CancelFlag cancel;
    cancel.cancel();
    SpaceScan::Shared shared(cancel);
    EXPECT_EQ(SpaceScan::scan(tree.root(), shared), nullptr);
    EXPECT_EQ(SpaceScan::measure(tree.root(), cancel), std::nullopt);
}

TEST(SpaceScan, CountsHardLinksAgainAndSeesEveryEntry)
{
    TempTree tree;
    const auto file = put(tree, "one", patternBytes(2000000, 1));
    makeHardLink(file, tree.path("two"));
    CancelFlag never;
    SpaceScan::Shared shared(never);
    const auto root = SpaceScan::scan(tree.root(), shared);
    EXPECT_EQ(root->children.size(), 2u);
    EXPECT_EQ(shared.scanned.load(), 2);
}

TEST(SpaceScan, ANodeCountsTheEntriesTheWalkSawUnderIt)
{
    TempTree tree;
    put(tree, "a/b/big", patternBytes(2000000, 1));
    put(tree, "a/b/small", patternBytes(10, 2));
    put(tree, "a/small", patternBytes(10, 3));
    put(tree, "loose", patternBytes(1500000, 4));
    tree.link("link", "a");
    CancelFlag never;
    SpaceScan::Shared shared(never);
    const auto root = SpaceScan::scan(tree.root(), shared);
    ASSERT_TRUE(root);
    // The root itself is no entry of the walk; everything below it is.
    EXPECT_EQ(root->entryCount() - 1, shared.scanned.load());
    const SpaceNode* a = childNamed(*root, "a");
    ASSERT_TRUE(a);
    EXPECT_EQ(a->entryCount(), 5) << "a, b, big, b's small file and a's small file";
}
