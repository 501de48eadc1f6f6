#include "places/SidebarStore.h"

#include "app/Settings.h"
#include "platform/JsonFile.h"
#include "platform/StoreNotices.h"
#include "platform/XdgPaths.h"
#include "support/ScratchMount.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <QDir>
#include <QJsonArray>
#include <gtest/gtest.h>
#include <optional>

using namespace orwick;
using namespace orwick::test;

namespace {

struct SidebarStoreFixture : ::testing::Test {
    TempTree tree;
    FilePath file = tree.path(QStringLiteral("data/sidebar.json"));

    void SetUp() override
    {
        StoreNotices::takePending();
        // The home's user folders: Desktop and Documents exist, Music doesn't.
        const FilePath home = xdg::home();
        QDir().mkpath(home.child(QStringLiteral("Desktop")).text());
        QDir().mkpath(home.child(QStringLiteral("Documents")).text());
        QDir().mkpath(home.child(QStringLiteral("Downloads")).text());
    }

    static QStringList names(const QList<Place>& places)
    {
        QStringList list;
        for (const Place& place : places)
            list.append(place.name);
        return list;
    }
    static qsizetype countOf(const QList<Place>& places, const FilePath& path)
    {
        return std::count_if(places.begin(), places.end(), [&path](const Place& p) { return p.url == path; });
    }
    QJsonObject onDisk() const
    {
        const auto document = readJsonFile(file);
        return document ? document->object() : QJsonObject{};
    }
    void waitSaved(SidebarStore& store) const { ASSERT_TRUE(waitUntil([&store] { return !store.isSaving(); })); }
};

TEST_F(SidebarStoreFixture, DefaultsShowEverySectionAndTheExistingUserFolders)
{
    SidebarStore store(file);
    EXPECT_TRUE(store.groups().isEmpty());
    EXPECT_TRUE(store.searches().isEmpty());
    EXPECT_EQ(store.layout().sectionOrder, SidebarLayout::defaultSectionOrder());
    for (const QString& id : {section::favorites, section::recent, section::locations, section::cloud, section::tags})
        EXPECT_TRUE(store.isShown(id)) << id.toStdString();
    const QStringList shown = names(store.allFavorites());
    EXPECT_EQ(shown.first(), xdg::home().fileName());
    EXPECT_TRUE(shown.contains("Desktop"));
    EXPECT_TRUE(shown.contains("Documents"));
    EXPECT_FALSE(shown.contains("Music")) << "a user folder that doesn't exist is left out";
}

TEST_F(SidebarStoreFixture, UserDirsFileNamesTheFolders)
{
    const FilePath papers = tree.folder(QStringLiteral("Papers"));
    tree.file(QStringLiteral("config/user-dirs.dirs"), QByteArray("XDG_DOCUMENTS_DIR=\"") + papers.native() + "\"\n");
    qputenv("XDG_CONFIG_HOME", tree.path(QStringLiteral("config")).native());
    const QList<Place> favorites = SidebarStore(file).allFavorites();
    qputenv("XDG_CONFIG_HOME", xdg::home().child(QStringLiteral(".config")).native());
    EXPECT_EQ(countOf(favorites, papers), 1);
    EXPECT_EQ(countOf(favorites, xdg::home().child(QStringLiteral("Documents"))), 0);
}

TEST_F(SidebarStoreFixture, HiddenBuiltInAddedAgainShowsOnce)
{
    const FilePath desktop = xdg::home().child(QStringLiteral("Desktop"));
    {
        SidebarStore store(file);
        store.removeFavorite(desktop);
        EXPECT_EQ(countOf(store.allFavorites(), desktop), 0);
        store.addFavorite(desktop);
        EXPECT_EQ(countOf(store.allFavorites(), desktop), 1);
        EXPECT_FALSE(store.layout().hiddenFavorites.contains(desktop));
        EXPECT_FALSE(store.layout().customFavorites.contains(desktop)) << "a built-in place is never added twice";
    } // its saves, made in the background, are done before the file is written by hand below
    // A file written by hand may hold a path both as added and hidden.
    tree.file(QStringLiteral("data/sidebar.json"), QStringLiteral(R"({"customFavorites":["%1"],"hiddenFavorites":["%1"]})").arg(desktop.text()).toUtf8());
    EXPECT_EQ(countOf(SidebarStore(file).allFavorites(), desktop), 1);
}

TEST_F(SidebarStoreFixture, AFavoriteWhoseFolderIsGoneIsKeptWithItsNameAndMarkedMissing)
{
    const FilePath old = tree.folder(QStringLiteral("Projects"));
    const FilePath never = tree.path(QStringLiteral("never-made"));
    SidebarStore store(file);
    store.addFavorite(never);
    store.addFavorite(old);
    store.renameFavorite(old, QStringLiteral("Work"));
    ASSERT_EQ(::rename(old.c_str(), tree.path(QStringLiteral("Renamed")).c_str()), 0);
    const QList<Place> favorites = store.allFavorites();
    const auto work = std::find_if(favorites.begin(), favorites.end(), [&old](const Place& p) { return p.url == old; });
    ASSERT_NE(work, favorites.end());
    EXPECT_EQ(work->name, "Work");
    EXPECT_TRUE(work->isMissing);
    EXPECT_EQ(countOf(favorites, never), 1);
    EXPECT_TRUE(favorites.at(favorites.size() - 2).isMissing) << "added while missing";
    EXPECT_FALSE(favorites.first().isMissing);
    waitSaved(store);
    EXPECT_EQ(SidebarStore(file).allFavorites(), favorites) << "names, order and missing marks read back alike";
}

TEST_F(SidebarStoreFixture, FavoritesFollowTheUsersOrder)
{
    SidebarStore store(file);
    const FilePath a = tree.folder(QStringLiteral("a")), documents = xdg::home().child(QStringLiteral("Documents"));
    store.addFavorite(a);
    EXPECT_EQ(store.allFavorites().last().url, a);
    store.moveFavorite(a, -100);
    EXPECT_EQ(store.allFavorites().first().url, a);
    store.moveFavorite(documents, 1);
    const QList<Place> order = store.allFavorites();
    waitSaved(store);
    EXPECT_EQ(SidebarStore(file).allFavorites(), order);
    // A favourite the order doesn't name follows the named ones.
    const FilePath b = tree.folder(QStringLiteral("b"));
    store.addFavorite(b);
    EXPECT_EQ(store.allFavorites().last().url, b);
}

TEST_F(SidebarStoreFixture, EveryChangeIsWrittenWithThePersistedKeysOnly)
{
    {
        SidebarStore store(file);
        store.add({tree.folder(QStringLiteral("x"))});
        store.setRenamingGroup(store.groups().first().id);
        waitSaved(store);
        QStringList keys = onDisk().keys();
        keys.sort();
        QStringList expected{"groups", "searches", "sectionOrder", "customFavorites", "favoriteOrder", "favoriteNames", "hiddenFavorites",
                             "showFavorites", "showRecent", "showLocations", "showCloud", "showTags", "collapsed", "servers"};
        expected.sort();
        EXPECT_EQ(keys, expected);
        store.setShown(section::tags, false);
        store.setCollapsed(section::recent, true); // still unsaved when the store goes
    }
    SidebarStore again(file);
    EXPECT_FALSE(again.isShown(section::tags));
    EXPECT_TRUE(again.isCollapsed(section::recent));
    EXPECT_TRUE(again.renamingGroup().isEmpty());
    ASSERT_EQ(again.groups().size(), 1);
    EXPECT_EQ(again.groups().first().name, "Pinned");
}

TEST_F(SidebarStoreFixture, DamagedFileGivesDefaultsIsSetAsideAndIsOverwrittenByTheNextChange)
{
    tree.file(QStringLiteral("data/sidebar.json"), "{\"groups\": [");
    SidebarStore store(file);
    EXPECT_TRUE(store.groups().isEmpty());
    EXPECT_EQ(readAll(tree.path(QStringLiteral("data/sidebar.damaged.json"))), "{\"groups\": [");
    EXPECT_EQ(StoreNotices::takePending().size(), 1);
    store.add({tree.folder(QStringLiteral("x"))});
    waitSaved(store);
    EXPECT_EQ(onDisk().value("groups").toArray().size(), 1);
    EXPECT_TRUE(StoreNotices::takePending().isEmpty());
    // JSON that is not an object is damaged too.
    tree.file(QStringLiteral("data/sidebar.json"), "[1, 2]");
    EXPECT_EQ(SidebarStore(file).layout(), SidebarLayout{});
    EXPECT_EQ(readAll(tree.path(QStringLiteral("data/sidebar.damaged 2.json"))), "[1, 2]");
}

TEST_F(SidebarStoreFixture, WronglyShapedValuesReadAsTheirDefaultsAndKeepTheRest)
{
    tree.file(QStringLiteral("data/sidebar.json"), R"({
        "groups": [{"id": "g1", "name": "Work", "items": [{"id": "i1", "path": "/tmp"}, {"id": 3}, "x"]}, 7, {"name": "no id"}],
        "searches": [{"id": "s1", "name": "Notes", "text": "todo"}, [], {"name": "no id"}],
        "sectionOrder": "favorites",
        "customFavorites": ["/srv", 5, "relative/path"],
        "favoriteNames": {"/srv": "Served", "/x": 3},
        "hiddenFavorites": {"a": 1},
        "showFavorites": "no", "showRecent": false, "showTags": 0,
        "collapsed": [1, "recent"]
    })");
    SidebarStore store(file);
    ASSERT_EQ(store.groups().size(), 1);
    EXPECT_EQ(store.groups().first().name, "Work");
    ASSERT_EQ(store.groups().first().items.size(), 1);
    EXPECT_EQ(store.groups().first().items.first().path, FilePath::fromNative("/tmp"));
    ASSERT_EQ(store.searches().size(), 1);
    EXPECT_EQ(store.searches().first().text, "todo");
    EXPECT_EQ(store.layout().sectionOrder, SidebarLayout::defaultSectionOrder());
    EXPECT_EQ(store.layout().customFavorites, QList<FilePath>{FilePath::fromNative("/srv")});
    EXPECT_EQ(store.layout().favoriteNames.size(), 1);
    EXPECT_TRUE(store.layout().hiddenFavorites.isEmpty());
    EXPECT_TRUE(store.isShown(section::favorites));
    EXPECT_FALSE(store.isShown(section::recent));
    EXPECT_TRUE(store.isShown(section::tags));
    EXPECT_EQ(store.layout().collapsed, QStringList{"recent"});
    EXPECT_FALSE(exists(tree.path(QStringLiteral("data/sidebar.damaged.json"))));
}

TEST_F(SidebarStoreFixture, NonUtf8PathsRoundTrip)
{
    const FilePath odd = tree.root().child(QByteArrayView("caf\xe9"));
    ASSERT_EQ(::mkdir(odd.c_str(), 0700), 0);
    {
        SidebarStore store(file);
        store.add({odd});
        store.addFavorite(odd);
        store.renameFavorite(odd, QStringLiteral("Café"));
        waitSaved(store);
    }
    EXPECT_TRUE(onDisk().value("customFavorites").toArray().first().toString().startsWith("file:"));
    SidebarStore again(file);
    EXPECT_EQ(again.groups().first().items.first().path, odd);
    EXPECT_EQ(countOf(again.allFavorites(), odd), 1);
    EXPECT_EQ(again.layout().favoriteNames.value(odd), QStringLiteral("Café"));
    ::rmdir(odd.c_str()); // QTemporaryDir can't remove a name that isn't UTF-8
}

TEST_F(SidebarStoreFixture, AddGoesToPinnedOnceAndToANamedGroupAndTogglePinnedAddsThenRemoves)
{
    SidebarStore store(file);
    int groups = 0;
    QObject::connect(&store, &SidebarStore::groupsChanged, [&groups] { ++groups; });
    const FilePath a = tree.folder(QStringLiteral("a")), b = tree.folder(QStringLiteral("b")), c = tree.folder(QStringLiteral("c"));
    const QString pinned = store.add({a, b});
    EXPECT_EQ(store.add({a}), pinned);
    EXPECT_EQ(store.group(pinned)->items.size(), 2);
    EXPECT_EQ(store.group(pinned)->name, "Pinned");
    const QString work = store.add({a}, QStringLiteral("Work"));
    EXPECT_NE(work, pinned);
    EXPECT_EQ(store.groups().size(), 2);
    EXPECT_EQ(groups, 3);

    EXPECT_FALSE(store.arePinned({a, c}));
    store.togglePinned({a, c}); // not all pinned: adds
    EXPECT_TRUE(store.arePinned({a, c}));
    store.togglePinned({a, c});
    EXPECT_FALSE(store.arePinned({a}));
    EXPECT_FALSE(store.arePinned({c}));
    EXPECT_FALSE(store.arePinned({}));
}

TEST_F(SidebarStoreFixture, NewGroupStartsRenamingWhenAsked)
{
    SidebarStore store(file);
    int renaming = 0;
    QObject::connect(&store, &SidebarStore::renamingChanged, [&renaming] { ++renaming; });
    const QString quiet = store.newGroup(QStringLiteral("Quiet"), {tree.folder(QStringLiteral("a"))}, false);
    EXPECT_TRUE(store.renamingGroup().isEmpty());
    const QString id = store.newGroup(QString(), {}, true);
    EXPECT_EQ(store.renamingGroup(), id);
    EXPECT_EQ(store.group(id)->name, "New Group");
    EXPECT_EQ(renaming, 1);
    EXPECT_NE(quiet, id);
}

TEST_F(SidebarStoreFixture, GroupsAndItemsMoveRenameAndGo)
{
    SidebarStore store(file);
    const FilePath a = tree.folder(QStringLiteral("a")), b = tree.folder(QStringLiteral("b"));
    const QString one = store.newGroup(QStringLiteral("One"), {a, b}, false);
    const QString two = store.newGroup(QStringLiteral("Two"), {}, false);
    store.moveGroup(two, -1);
    EXPECT_EQ(store.groups().first().id, two);
    store.moveGroup(two, -1); // already first
    EXPECT_EQ(store.groups().first().id, two);
    store.renameGroup(one, QStringLiteral("  Uno "));
    EXPECT_EQ(store.group(one)->name, "Uno");
    store.renameGroup(one, QStringLiteral("   ")); // a blank name is refused
    EXPECT_EQ(store.group(one)->name, "Uno");
    const QString itemB = store.group(one)->items.at(1).id;
    store.moveItem(one, itemB, -1);
    EXPECT_EQ(store.group(one)->items.first().path, b);
    store.renameItem(one, itemB, QStringLiteral("Bee"));
    EXPECT_EQ(store.group(one)->items.first().name, QStringLiteral("Bee"));
    store.renameItem(one, itemB, QString());
    EXPECT_FALSE(store.group(one)->items.first().name.has_value());
    store.removeItem(one, itemB);
    EXPECT_EQ(store.group(one)->items.size(), 1);
    store.setCollapsed(two, true);
    store.removeGroup(two);
    EXPECT_EQ(store.group(two), nullptr);
    EXPECT_FALSE(store.isCollapsed(two)) << "a removed group leaves no fold behind";
}

TEST_F(SidebarStoreFixture, SavedSearchesAreKeptByIdAndRead)
{
    SidebarStore store(file);
    SavedSearch search{QString(), QStringLiteral("Invoices"), QStringLiteral("invoice"), QStringLiteral("below"),
                       tree.root().text(), QStringLiteral("pdfs"), QStringLiteral("year")};
    store.save(search);
    ASSERT_EQ(store.searches().size(), 1);
    SavedSearch kept = store.searches().first();
    EXPECT_FALSE(kept.id.isEmpty());
    kept.text = QStringLiteral("bill");
    store.save(kept);
    EXPECT_EQ(store.searches().size(), 1);
    store.renameSearch(kept.id, QStringLiteral("Bills"));
    waitSaved(store);
    SidebarStore again(file);
    ASSERT_EQ(again.searches().size(), 1);
    EXPECT_EQ(again.searches().first().name, "Bills");
    EXPECT_EQ(again.searches().first().text, "bill");
    again.removeSearch(kept.id);
    EXPECT_TRUE(again.searches().isEmpty());
}

TEST_F(SidebarStoreFixture, LegacyPinnedFoldersBecomeThePinnedGroup)
{
    const FilePath a = tree.folder(QStringLiteral("a"));
    openSettings()->setValue(SidebarStore::kLegacyPinnedKey, QStringList{a.text()});
    {
        SidebarStore store(file);
        ASSERT_EQ(store.groups().size(), 1);
        EXPECT_EQ(store.groups().first().name, "Pinned");
        EXPECT_EQ(store.groups().first().items.first().path, a);
        EXPECT_FALSE(openSettings()->contains(SidebarStore::kLegacyPinnedKey));
    }
    EXPECT_EQ(SidebarStore(file).groups().size(), 1) << "the key is read once";
}

TEST_F(SidebarStoreFixture, UnknownSectionOrderKeepsEveryKnownSection)
{
    tree.file(QStringLiteral("data/sidebar.json"), R"({"sectionOrder": ["tags", "somethingNew"]})");
    SidebarStore store(file);
    EXPECT_EQ(store.layout().sectionOrder.first(), "tags");
    for (const QString& id : SidebarLayout::defaultSectionOrder())
        EXPECT_TRUE(store.layout().sectionOrder.contains(id));
}

TEST_F(SidebarStoreFixture, AFileThatCantBeWrittenKeepsTheChangeInMemory)
{
    // Root writes into a read-only folder, not onto a read-only file system.
    std::optional<test::ScratchMount> mount;
    FilePath locked = tree.folder(QStringLiteral("locked"));
    if (::geteuid() == 0) {
        mount.emplace("tmpfs");
        if (!mount->ok())
            GTEST_SKIP() << mount->why().toStdString();
        locked = mount->root();
    }
    SidebarStore store(locked.child(QStringLiteral("sidebar.json")));
    ASSERT_TRUE(mount ? mount->makeReadOnly() : ::chmod(locked.c_str(), 0500) == 0);
    store.add({tree.folder(QStringLiteral("a"))});
    waitSaved(store);
    if (!mount)
        ::chmod(locked.c_str(), 0700);
    EXPECT_EQ(store.groups().size(), 1);
    EXPECT_EQ(StoreNotices::takePending().size(), 1);
}

} // namespace
