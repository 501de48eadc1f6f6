#include "places/Locations.h"

#include "platform/XdgPaths.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <QDir>
#include <gtest/gtest.h>

using namespace orwick;
using namespace orwick::test;

TEST(LocationsTest, CountsTheItemsInTheTrash)
{
    TempTree tree;
    EXPECT_EQ(Locations::countTrashItems(tree.root()), 0) << "no files/ folder: nothing trashed";
    tree.file(QStringLiteral("files/a.txt"));
    tree.folder(QStringLiteral("files/folder"));
    tree.file(QStringLiteral("files/.hidden"));
    tree.file(QStringLiteral("info/a.txt.trashinfo"));
    EXPECT_EQ(Locations::countTrashItems(tree.root()), 3);
}

TEST(LocationsTest, ReadsTheDrivesAndTheHomeTrashOffTheGuiThread)
{
    const FilePath files = xdg::homeTrash().child(QByteArrayView("files"));
    QDir().mkpath(files.child(QStringLiteral("one")).text());
    Locations locations;
    EXPECT_FALSE(locations.hasRead()) << "the constructor doesn't wait for the mounts";
    ASSERT_TRUE(waitUntil([&] { return locations.hasRead(); }, Locations::kReadTimeoutMs + 1000));
    EXPECT_FALSE(locations.isStale());
    EXPECT_EQ(locations.trashCount(), 1);
    const QList<Place> drives = locations.drives();
    ASSERT_FALSE(drives.isEmpty());
    EXPECT_EQ(drives.first().url, FilePath::fromNative("/")) << "the startup drive comes first";
    EXPECT_TRUE(drives.first().trailing.endsWith(QStringLiteral(" free")));
    EXPECT_GE(drives.first().fillRatio, 0.0);
    QDir(files.text()).removeRecursively();
}

TEST(LocationsTest, ARefreshReportsANewTrashCount)
{
    Locations locations;
    ASSERT_TRUE(waitUntil([&] { return locations.hasRead(); }, Locations::kReadTimeoutMs + 1000));
    const int before = locations.trashCount();
    const FilePath files = xdg::homeTrash().child(QByteArrayView("files"));
    QDir().mkpath(files.child(QStringLiteral("two")).text());
    int changes = 0;
    QObject::connect(&locations, &Locations::changed, [&changes] { ++changes; });
    locations.refresh();
    ASSERT_TRUE(waitUntil([&] { return changes > 0; }, Locations::kReadTimeoutMs + 1000));
    EXPECT_EQ(locations.trashCount(), before + 1);
    QDir(files.child(QStringLiteral("two")).text()).removeRecursively();
}
