// FinderTags: the cache of tagged files behind the rows' dots and the sidebar's Tags section —
// read from real files, kept current by the engine's own tag changes, and bounded.

#include "places/FinderTags.h"
#include "places/KnownTags.h"

#include "fileops/FileOperations.h"
#include "files/ListingLoader.h"
#include "platform/Xattr.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <QDir>
#include <QFile>
#include <QUndoStack>
#include <gtest/gtest.h>

namespace orwick::test {
namespace {

void tag(const FilePath& file, const QByteArray& attribute) { ASSERT_TRUE(xattr::set(file, xattr::tags, attribute)); }

QStringList namesOf(const QList<FinderTag>& tags)
{
    QStringList names;
    for (const FinderTag& tag : tags)
        names.append(tag.name);
    return names;
}

TEST(FinderTags, AFolderIsReadWithTheTagsOfItsFilesOnly)
{
    TempTree tree;
    const FilePath report = tree.file("docs/report.txt", "r");
    const FilePath plain = tree.file("docs/plain.txt", "p");
    const FilePath hidden = tree.file("docs/.notes", "n");
    tag(report, "Red, project-x");
    tag(hidden, "Blue");
    FinderTags cache;
    int changed = 0;
    QObject::connect(&cache, &FinderTags::changed, [&changed] { ++changed; });
    cache.refreshFolder(report.parent());
    ASSERT_TRUE(waitUntil([&] { return changed == 1; }));

    EXPECT_EQ(cache.tagsOf(report).names(), (QStringList{"Red", "project-x"}));
    EXPECT_TRUE(cache.tagsOf(plain).isEmpty());
    EXPECT_EQ(cache.tagsOf(hidden).names(), QStringList{"Blue"}) << "a shown folder's hidden files have their dots too";
    EXPECT_EQ(cache.cache().value(report.parent()).size(), 2) << "untagged files are not kept";
    EXPECT_EQ(cache.folderOrder(), QList<FilePath>{report.parent()});
    EXPECT_EQ(namesOf(cache.inUse()), (QStringList{"Red", "Blue", "project-x"})) << "colours first, in their order";

    const quint64 revision = cache.revision();
    cache.refreshFolder(report.parent());
    waitUntil([] { return false; }, 200); // give a stray reading time to arrive
    EXPECT_EQ(cache.revision(), revision) << "reading the same tags again changes nothing";
}

TEST(FinderTags, AFolderWithoutTagsIsRememberedAsReadWithoutAChange)
{
    // Every change redraws the decorations of every row a pane shows: a folder of plain files,
    // the usual case, must not cost that.
    TempTree tree;
    const FilePath plain = tree.file("plain/a.txt", "a");
    FinderTags cache;
    int changed = 0;
    QObject::connect(&cache, &FinderTags::changed, [&changed] { ++changed; });
    const quint64 revision = cache.revision();
    cache.refreshFolder(plain.parent());
    ASSERT_TRUE(waitUntil([&] { return cache.cache().contains(plain.parent()); }));
    EXPECT_EQ(changed, 0);
    EXPECT_EQ(cache.revision(), revision);

    // Its first tag is a change.
    tag(plain, "Red");
    cache.refreshFolder(plain.parent());
    ASSERT_TRUE(waitUntil([&] { return changed == 1; }));
    EXPECT_EQ(cache.tagsOf(plain).names(), QStringList{"Red"});
}

TEST(FinderTags, TheHomeWalkIsOneChangeHoweverManyFoldersItFindsTagsIn)
{
    const FilePath home = tempHome();
    QList<FilePath> files;
    for (int i = 0; i < 5; ++i) {
        files.append(home.child(QStringLiteral("Walked/%1/file.txt").arg(i)));
        ASSERT_TRUE(writeFile(files.last(), {}));
        tag(files.last(), "Orange");
    }
    FinderTags cache;
    int changed = 0;
    QObject::connect(&cache, &FinderTags::changed, [&changed] { ++changed; });
    cache.scanHome();
    ASSERT_TRUE(waitUntil([&] { return changed >= 1; }));
    waitUntil([] { return false; }, 200); // give a stray signal time to arrive
    EXPECT_EQ(changed, 1);
    for (const FilePath& file : files)
        EXPECT_EQ(cache.tagsOf(file).names(), QStringList{"Orange"});
    QDir(home.child(QStringLiteral("Walked")).text()).removeRecursively();
}

TEST(FinderTags, TheHomeIsWalkedOnceAndAFolderReadSinceKeepsItsNewerTags)
{
    const FilePath home = tempHome();
    const FilePath deep = home.child(QStringLiteral("Projects/site/index.html"));
    const FilePath other = home.child(QStringLiteral("Projects/todo.txt"));
    for (const FilePath& path : {deep, other})
        ASSERT_TRUE(writeFile(path, {}));
    tag(deep, "Green");
    tag(other, "Yellow");
    FinderTags cache;
    cache.storeFolder(other.parent(), {{other, TagList::parse("Purple")}});
    int changed = 0;
    QObject::connect(&cache, &FinderTags::changed, [&changed] { ++changed; });
    cache.scanHome();
    ASSERT_TRUE(waitUntil([&] { return changed >= 1; }));
    EXPECT_EQ(cache.tagsOf(deep).names(), QStringList{"Green"});
    EXPECT_EQ(cache.tagsOf(other).names(), QStringList{"Purple"}) << "the newer reading stays";
    const int before = int(changed);
    cache.scanHome();
    waitUntil([] { return false; }, 200); // give a stray reading time to arrive
    EXPECT_EQ(changed, before) << "a second call walks nothing";
    QDir(home.child(QStringLiteral("Projects")).text()).removeRecursively();
}

TEST(FinderTags, OrwicksOwnTagChangesUndoAndRedoKeepTheCacheCurrent)
{
    TempTree tree;
    const FilePath file = tree.file("a.txt", "a");
    FileOperations operations;
    QUndoStack stack;
    FinderTags cache;
    cache.follow(&operations);
    cache.refreshFolder(file.parent());
    ASSERT_TRUE(waitUntil([&] { return cache.cache().contains(file.parent()); }));
    EXPECT_TRUE(cache.tagsOf(file).isEmpty());

    operations.changeTag({file}, QStringLiteral("Red"), FileOperations::TagChange::add, &stack);
    ASSERT_TRUE(waitUntil([&] { return cache.tagsOf(file).contains(QStringLiteral("Red")); }));
    stack.undo();
    ASSERT_TRUE(waitUntil([&] { return cache.tagsOf(file).isEmpty(); }));
    stack.redo();
    ASSERT_TRUE(waitUntil([&] { return cache.tagsOf(file).contains(QStringLiteral("Red")); }));
}

TEST(FinderTags, TheCacheDropsTheFoldersReadLongestAgo)
{
    FinderTags cache;
    const FilePath root = FilePath::fromText(QStringLiteral("/nowhere"));
    for (int i = 0; i < FinderTags::kMaxFolders + 5; ++i) {
        const FilePath folder = root.child(QString::number(i));
        cache.storeFolder(folder, {{folder.child(QStringLiteral("f")), TagList::parse("Red")}});
    }
    EXPECT_EQ(cache.folderOrder().size(), FinderTags::kMaxFolders);
    EXPECT_EQ(cache.cache().size(), FinderTags::kMaxFolders);
    EXPECT_FALSE(cache.cache().contains(root.child(QStringLiteral("0"))));
    EXPECT_TRUE(cache.cache().contains(root.child(QString::number(FinderTags::kMaxFolders + 4))));

    // Files count too: one large folder pushes the older ones out.
    FinderTags::FolderTags many;
    const FilePath big = root.child(QStringLiteral("big"));
    for (int i = 0; i < FinderTags::kMaxFiles; ++i)
        many.insert(big.child(QString::number(i)), TagList::parse("Blue"));
    cache.storeFolder(big, many);
    EXPECT_EQ(cache.folderOrder(), QList<FilePath>{big});
}

TEST(FinderTags, OnceTheHomeIsReadTheTagListingReadsOnlyTheTaggedFiles)
{
    const FilePath home = tempHome();
    const FilePath red = home.child(QStringLiteral("Letters/red.txt"));
    const FilePath plain = home.child(QStringLiteral("Letters/plain.txt"));
    for (const FilePath& path : {red, plain})
        ASSERT_TRUE(writeFile(path, {}));
    tag(red, "Red");
    const auto names = [](const FileItems& items) {
        QStringList list;
        for (const FileItem& item : items)
            list << item.name;
        return list;
    };
    const Listing listing = Listing::tag(QStringLiteral("Red"));
    EXPECT_FALSE(KnownTags::tagged(QStringLiteral("Red"), home)) << "not before the home has been read";
    EXPECT_EQ(names(ListingLoader::load(listing, false).items), QStringList{"red.txt"}) << "walked meanwhile";

    FinderTags& shared = FinderTags::shared();
    shared.scanHome();
    ASSERT_TRUE(waitUntil([&] { return shared.isComplete(); }));
    EXPECT_EQ(KnownTags::tagged(QStringLiteral("Red"), home), QList<FilePath>{red});
    // The listing comes from what the cache knows, not from the disk: a tag removed behind
    // Orwick's back shows until the folder is read again (a pane's watcher does that).
    ASSERT_TRUE(xattr::remove(red, xattr::tags));
    EXPECT_EQ(names(ListingLoader::load(listing, false).items), QStringList{"red.txt"});
    shared.refreshFolder(red.parent());
    ASSERT_TRUE(waitUntil([&] { return KnownTags::tagged(QStringLiteral("Red"), home)->isEmpty(); }));
    EXPECT_TRUE(ListingLoader::load(listing, false).items.isEmpty());
    QDir(red.parent().text()).removeRecursively();
}

TEST(FinderTags, DroppingATaggedFolderMakesTheCacheIncompleteButDroppingAnUntaggedOneDoesNot)
{
    FinderTags cache;
    cache.scanHome(); // an empty home
    ASSERT_TRUE(waitUntil([&] { return cache.isComplete(); }));
    const FilePath root = FilePath::fromText(QStringLiteral("/nowhere"));
    cache.storeFolder(root.child(QStringLiteral("tagged")), {{root.child(QStringLiteral("tagged/f")), TagList::parse("Red")}});
    for (int i = 0; i < FinderTags::kMaxFolders + 5; ++i)
        cache.storeFolder(root.child(QString::number(i)), {});
    EXPECT_TRUE(cache.isComplete());
    EXPECT_TRUE(cache.cache().contains(root.child(QStringLiteral("tagged")))) << "folders without tags go first";
    for (int i = 0; i < FinderTags::kMaxFolders; ++i) {
        const FilePath folder = root.child(QStringLiteral("t%1").arg(i));
        cache.storeFolder(folder, {{folder.child(QStringLiteral("f")), TagList::parse("Blue")}});
    }
    EXPECT_FALSE(cache.isComplete());
    EXPECT_FALSE(cache.cache().contains(root.child(QStringLiteral("tagged"))));
}

TEST(FinderTags, AFileWhoseTagsWentIsDroppedAndTheSectionForgetsTheTag)
{
    FinderTags cache;
    const FilePath file = FilePath::fromText(QStringLiteral("/nowhere/a.txt"));
    cache.storeFiles({{file, TagList::parse("Orange,client")}});
    EXPECT_EQ(namesOf(cache.inUse()), (QStringList{"Orange", "client"}));
    cache.storeFiles({{file, TagList()}});
    EXPECT_TRUE(cache.inUse().isEmpty());
    EXPECT_TRUE(cache.tagsOf(file).isEmpty());
}

} // namespace
} // namespace orwick::test
