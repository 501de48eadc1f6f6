// FolderNames: a folder's names read once answer whether a name is taken, and say "don't know"
// where the answer would cost more than a stat or the folder can't give it.

#include "rename/FolderNames.h"
#include "support/TempHome.h"

#include <gtest/gtest.h>

namespace orwick::test {
namespace {

TEST(FolderNamesTest, ReadFolderTellsHeldNamesFromFreeOnes)
{
    TempTree tree;
    for (int i = 0; i < 50; ++i)
        tree.file(QStringLiteral("IMG_%1.jpg").arg(i));
    tree.file(QByteArray("caf\xe9.txt"), "x"); // not UTF-8
    const FolderNames names = FolderNames::read(tree.root(), 51);
    ASSERT_TRUE(names.isKnown());
    EXPECT_EQ(names.holds("IMG_7.jpg"), FolderNames::Answer::held);
    EXPECT_EQ(names.holds("IMG_49.jpg"), FolderNames::Answer::held);
    EXPECT_EQ(names.holds(QByteArray("caf\xe9.txt")), FolderNames::Answer::held);
    EXPECT_EQ(names.holds("IMG_50.jpg"), FolderNames::Answer::free);
    EXPECT_EQ(names.holds("img_7.jpg"), FolderNames::Answer::free) << "this disk tells letter case apart";
    EXPECT_EQ(names.holds("IMG_7.jp"), FolderNames::Answer::free);
    EXPECT_EQ(names.holds(QByteArray("IMG_7.jpg\0x", 11)), FolderNames::Answer::free);
}

TEST(FolderNamesTest, AFewLookupsInALargeFolderAreLeftToStats)
{
    TempTree tree;
    for (int i = 0; i < 2000; ++i)
        tree.file(QStringLiteral("file %1 with a long name to fill the folder.txt").arg(i));
    EXPECT_FALSE(FolderNames::read(tree.root(), 1).isKnown());
    EXPECT_EQ(FolderNames::read(tree.root(), 1).holds("file 1 with a long name to fill the folder.txt"),
              FolderNames::Answer::unknown);
    EXPECT_TRUE(FolderNames::read(tree.root(), 2000).isKnown());
}

TEST(FolderNamesTest, AFolderThatCantBeReadKnowsNothing)
{
    TempTree tree;
    EXPECT_FALSE(FolderNames::read(tree.path(QStringLiteral("missing")), 100).isKnown());
    EXPECT_FALSE(FolderNames::read(tree.file("a file"), 100).isKnown());
    EXPECT_EQ(FolderNames().holds("anything"), FolderNames::Answer::unknown);
}

TEST(FolderNamesTest, CacheReadsEachFolderOnceForTheBatch)
{
    TempTree tree;
    QList<FilePath> items;
    for (int i = 0; i < 40; ++i)
        items.append(tree.file(QStringLiteral("a/%1.txt").arg(i)));
    items.append(tree.file("b/one.txt"));
    FolderNamesCache cache;
    cache.expect(items);
    const FolderNames& first = cache.around(items.first());
    ASSERT_TRUE(first.isKnown());
    EXPECT_EQ(first.holds("39.txt"), FolderNames::Answer::held);
    EXPECT_EQ(cache.around(items.last()).holds("one.txt"), FolderNames::Answer::unknown) << "one name: a stat costs less";
    // Back in the first folder: the same read, not a new one that would see the file made since.
    tree.file("a/new.txt");
    EXPECT_EQ(&cache.around(items[3]), &first);
    EXPECT_EQ(cache.around(items[3]).holds("new.txt"), FolderNames::Answer::free);
}

} // namespace
} // namespace orwick::test
