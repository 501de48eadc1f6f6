#include "files/DirectoryLoader.h"
#include "base/NaturalCompare.h"
#include "support/TempHome.h"

#include <QDir>
#include <gtest/gtest.h>

using namespace orwick;

namespace {
QStringList names(const FileItems& items)
{
    QStringList out;
    for (const FileItem& item : items)
        out << item.name;
    out.sort();
    return out;
}
const FileItem* find(const FileItems& items, const QByteArray& nameBytes)
{
    for (const FileItem& item : items)
        if (item.url.fileNameBytes() == nameBytes)
            return &item;
    return nullptr;
}
} // namespace

TEST(DirectoryLoader, HidesDotNamesAndTheHiddenFileListUnlessAsked)
{
    test::TempTree tree;
    tree.file("shown.txt");
    tree.file(".dot");
    tree.file("listed");
    tree.file(".hidden", "listed\n");
    EXPECT_EQ(names(DirectoryLoader::load(tree.root(), false).items), QStringList{"shown.txt"});

    const FileItems all = DirectoryLoader::load(tree.root(), true).items;
    EXPECT_EQ(names(all), (QStringList{".dot", ".hidden", "listed", "shown.txt"}));
    EXPECT_TRUE(find(all, "listed")->isHidden);
    EXPECT_FALSE(find(all, "shown.txt")->isHidden);
}

TEST(DirectoryLoader, KeepsNamesThatAreNotTextAndOddNames)
{
    test::TempTree tree;
    const QByteArray latin1("caf\xe9.txt");
    const QByteArray newline("two\nlines");
    tree.file(latin1, "x");
    tree.file(newline, "y");
    const FileItems items = DirectoryLoader::load(tree.root(), false).items;
    ASSERT_EQ(items.size(), 2);
    const FileItem* odd = find(items, latin1);
    ASSERT_NE(odd, nullptr);
    EXPECT_EQ(odd->url.fileNameBytes(), latin1); // the bytes, not a lossy re-encoding
    EXPECT_EQ(test::readAll(odd->url), "x");     // and they still reach the file
    EXPECT_NE(find(items, newline), nullptr);
}

TEST(DirectoryLoader, TreatsLinkLoopsAndDanglingLinksAsBrokenLinks)
{
    test::TempTree tree;
    tree.link("a", "b");
    tree.link("b", "a");
    tree.link("self", "self");
    const FileItems items = DirectoryLoader::load(tree.root(), false).items;
    ASSERT_EQ(items.size(), 3);
    for (const FileItem& item : items) {
        EXPECT_EQ(item.kind, "Broken link") << item.name.toStdString();
        EXPECT_FALSE(item.isFolder);
    }
}

TEST(DirectoryLoader, ReportsAFolderThatCannotBeOpened)
{
    test::TempTree tree;
    const FilePath gone = tree.folder("gone");
    QDir(gone.text()).removeRecursively();
    const ListingResult missing = DirectoryLoader::load(gone, false);
    EXPECT_EQ(missing.error, QString("Can't open this folder"));
    EXPECT_TRUE(missing.items.isEmpty());

    const ListingResult notAFolder = DirectoryLoader::load(tree.file("plain.txt"), false);
    EXPECT_EQ(notAFolder.error, QString("Can't open this folder"));
}

TEST(DirectoryLoader, LargeFoldersReadInParallelGiveEveryEntryOnce)
{
    test::TempTree tree;
    const int count = 20000;
    for (int i = 0; i < count; ++i)
        tree.file(QStringLiteral("f%1.txt").arg(i));
    tree.folder("sub");
    const FileItems items = DirectoryLoader::load(tree.root(), false).items;
    ASSERT_EQ(items.size(), count + 1);
    QSet<FilePath> unique;
    for (const FileItem& item : items) {
        unique.insert(item.url);
        EXPECT_EQ(item.isFolder, item.name == "sub");
    }
    EXPECT_EQ(unique.size(), count + 1);
}

TEST(DirectoryLoader, StopsWhenCancelled)
{
    test::TempTree tree;
    tree.file("a");
    CancelFlag cancel;
    cancel.cancel();
    const ListingResult result = DirectoryLoader::load(tree.root(), false, &cancel);
    EXPECT_TRUE(result.error.has_value() || result.items.size() <= 1); // no crash, nothing trusted
}

TEST(DirectoryLoader, ReadsInNameOrderWhenAsked)
{
    test::TempTree tree;
    for (const char* name : {"file10", "File2", "b", "file1", "A", "b.txt", "sub"})
        tree.file(name);
    QStringList shown;
    for (const FileItem& item : DirectoryLoader::load(tree.root(), false, nullptr, nullptr, DirectoryLoader::Order::byName).items)
        shown << item.name;
    EXPECT_EQ(shown, QStringList({"A", "b", "b.txt", "file1", "File2", "file10", "sub"}));
}

TEST(DirectoryLoader, LargeFoldersInNameOrderGiveEveryEntryOnceInOrder)
{
    test::TempTree tree;
    const int count = 12000; // above the size a second thread takes the name order on
    for (int i = 0; i < count; ++i)
        tree.file(QStringLiteral("f%1.txt").arg(i));
    tree.folder("sub");
    LoadFeedback feedback;
    FileItems firstBatch;
    feedback.firstBatch = [&](FileItems items) { firstBatch = std::move(items); };
    const FileItems items = DirectoryLoader::load(tree.root(), false, nullptr, &feedback, DirectoryLoader::Order::byName).items;
    ASSERT_EQ(items.size(), count + 1);
    EXPECT_EQ(feedback.itemsRead.load(), count + 1);
    QSet<FilePath> unique;
    for (qsizetype i = 0; i < items.size(); ++i) {
        unique.insert(items[i].url);
        EXPECT_EQ(items[i].isFolder, items[i].name == "sub");
        if (i > 0)
            ASSERT_LT(naturalCompare(items[i - 1].name, items[i].name), 0) << items[i].name.toStdString();
    }
    EXPECT_EQ(unique.size(), count + 1);
    EXPECT_EQ(items.first().name, "f0.txt");
    EXPECT_EQ(items[10].name, "f10.txt");
    // The first batch came early, as read, and every one of it is in the result.
    ASSERT_EQ(firstBatch.size(), DirectoryLoader::kFirstBatchSize);
    for (const FileItem& item : std::as_const(firstBatch))
        EXPECT_TRUE(unique.contains(item.url));
}
