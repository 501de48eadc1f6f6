// The Trash of another file system: listed, counted and emptied with the home's; and a Trash
// that can't be emptied (its disk turned read-only) is reported item by item, never counted
// as done. Needs root for the mount.

#include "FileOpsFixture.h"

#include "fileops/TrashContents.h"
#include "files/ListingLoader.h"
#include "platform/AllTrashes.h"
#include "platform/XdgPaths.h"
#include "support/ScratchMount.h"

#include <unistd.h>

namespace orwick::test {
namespace {

class EmptyTrashMountFault : public FileOpsTest {
protected:
    FilePath volumeTrash(const ScratchMount& disk) const
    {
        return disk.root().child(QByteArrayView(".Trash-" + QByteArray::number(getuid())));
    }
    bool lists(const FileItems& items, const FilePath& path) const
    {
        return std::any_of(items.begin(), items.end(), [&path](const FileItem& item) { return item.url == path; });
    }
};

TEST_F(EmptyTrashMountFault, OtherDisksTrashIsListedCountedAndEmptied)
{
    ScratchMount disk("tmpfs", "size=4m");
    if (!disk.ok())
        GTEST_SKIP() << disk.why().toStdString();
    const FilePath onDisk = disk.root().child(QStringLiteral("away.txt"));
    ASSERT_TRUE(QFile(onDisk.text()).open(QIODevice::WriteOnly));
    ops.trash({onDisk, file("home.txt", "h")}, QStringLiteral("Move to Trash"), &stack, false);
    settle();
    ASSERT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
    const FilePath awayInTrash = volumeTrash(disk).child(QStringLiteral("files/away.txt"));
    const FilePath homeInTrash = homeTrashFiles().child(QStringLiteral("home.txt"));
    ASSERT_TRUE(exists(awayInTrash));

    EXPECT_TRUE(trash::allTrashFolders().contains(volumeTrash(disk)));
    const FileItems listed = ListingLoader::load(Listing::of(Listing::Kind::trash), false).items;
    EXPECT_TRUE(lists(listed, awayInTrash));
    EXPECT_TRUE(lists(listed, homeInTrash));
    EXPECT_EQ(trash::countItems(volumeTrash(disk)) + trash::countItems(xdg::homeTrash()), 2);

    const TrashContents contents = TrashContents::measure({xdg::homeTrash(), volumeTrash(disk)});
    ASSERT_EQ(contents.items.size(), 2);
    ops.emptyTrash(contents.items, &stack);
    settle();
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
    EXPECT_FALSE(exists(awayInTrash));
    EXPECT_FALSE(exists(volumeTrash(disk).child(QStringLiteral("info/away.txt.trashinfo"))));
    EXPECT_FALSE(exists(homeInTrash));
    EXPECT_EQ(lastToast(), QStringLiteral("Emptied the Trash"));
}

TEST_F(EmptyTrashMountFault, ItemThatCantBeDeletedIsReportedAndStays)
{
    ScratchMount disk("tmpfs", "size=4m");
    if (!disk.ok())
        GTEST_SKIP() << disk.why().toStdString();
    const FilePath onDisk = disk.root().child(QStringLiteral("stuck.txt"));
    ASSERT_TRUE(QFile(onDisk.text()).open(QIODevice::WriteOnly));
    ops.trash({onDisk, file("free.txt", "f")}, QStringLiteral("Move to Trash"), &stack, false);
    settle();
    ASSERT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
    const TrashContents contents = TrashContents::measure({xdg::homeTrash(), volumeTrash(disk)});
    ASSERT_EQ(contents.items.size(), 2);
    ASSERT_TRUE(disk.makeReadOnly());

    ops.emptyTrash(contents.items, &stack);
    settle();
    ASSERT_EQ(errors.size(), 1);
    EXPECT_TRUE(errors.first().startsWith(QStringLiteral("Couldn’t delete “stuck.txt”: "))) << errors.first().toStdString();
    ASSERT_EQ(reports.size(), 1);
    EXPECT_EQ(reports.first().done, 1) << "the one deleted counts; the one that failed doesn't";
    EXPECT_FALSE(reports.first().isSuccess());
    EXPECT_TRUE(toasts.isEmpty()) << "a partial result is never announced as success";
    EXPECT_TRUE(exists(volumeTrash(disk).child(QStringLiteral("files/stuck.txt"))));
    EXPECT_TRUE(exists(volumeTrash(disk).child(QStringLiteral("info/stuck.txt.trashinfo"))));
    EXPECT_FALSE(exists(homeTrashFiles().child(QStringLiteral("free.txt"))));
}

} // namespace
} // namespace orwick::test
