// Reading a .trashinfo's Path line, which any program may have written: absolute paths and paths
// relative to the volume read back; a NUL or a way out of the volume is refused.

#include "platform/Trash.h"

#include <gtest/gtest.h>

namespace orwick {
namespace {

const FilePath homeItem = FilePath::fromNative("/home/u/.local/share/Trash/files/report.txt");
const FilePath volumeItem = FilePath::fromNative("/media/disk/.Trash-1000/files/photo.jpg");
const FilePath sharedItem = FilePath::fromNative("/media/disk/.Trash/1000/files/photo.jpg");

std::optional<FilePath> read(const char* path, const FilePath& item)
{
    return trash::originalPathIn("[Trash Info]\nPath=" + QByteArray(path) + "\nDeletionDate=2024-05-01T10:20:30\n", item);
}

TEST(TrashInfo, ReadsAnAbsolutePathDecoded)
{
    EXPECT_EQ(read("/home/u/My%20Files/caf%C3%A9%FF.txt", homeItem),
              FilePath::fromNative("/home/u/My Files/caf\xc3\xa9\xff.txt"));
    EXPECT_EQ(trash::originalPathIn("[Trash Info]\r\nPath=/a/b\r\n", homeItem), FilePath::fromNative("/a/b"));
}

TEST(TrashInfo, ReadsAPathRelativeToTheVolume)
{
    EXPECT_EQ(read("pictures/photo.jpg", volumeItem), FilePath::fromNative("/media/disk/pictures/photo.jpg"));
    EXPECT_EQ(read("pictures/photo.jpg", sharedItem), FilePath::fromNative("/media/disk/pictures/photo.jpg"));
    EXPECT_EQ(read("pictures/../photo.jpg", volumeItem), FilePath::fromNative("/media/disk/photo.jpg"));
}

TEST(TrashInfo, RefusesARelativePathThatLeavesTheVolume)
{
    EXPECT_EQ(read("../../etc/passwd", volumeItem), std::nullopt);
    EXPECT_EQ(read("..", sharedItem), std::nullopt);
    EXPECT_EQ(read(".", volumeItem), std::nullopt);
}

TEST(TrashInfo, RefusesAPathHoldingNul)
{
    EXPECT_EQ(read("/home/u/a%00/b", homeItem), std::nullopt);
    EXPECT_EQ(read("a%00b", volumeItem), std::nullopt);
}

TEST(TrashInfo, NoPathLineGivesNothing)
{
    EXPECT_EQ(trash::originalPathIn("[Trash Info]\nDeletionDate=2024-05-01T10:20:30\n", homeItem), std::nullopt);
    EXPECT_EQ(read("", homeItem), std::nullopt);
}

} // namespace
} // namespace orwick
