#include "files/DirectoryLoader.h"
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
