// Reading a .trashinfo's Path line, which any program may have written: absolute paths and paths
// relative to the volume read back; a NUL or a way out of the volume is refused.

#include "platform/Trash.h"

#include <QDateTime>
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

TEST(TrashInfo, PathLines)
{
    const struct {
        const char* path;
        const FilePath& item;
        std::optional<FilePath> original;
    } rows[] = {
        // An absolute path, decoded.
        {"/home/u/My%20Files/caf%C3%A9%FF.txt", homeItem, FilePath::fromNative("/home/u/My Files/caf\xc3\xa9\xff.txt")},
        // A path relative to the volume, of either Trash folder of a disk.
        {"pictures/photo.jpg", volumeItem, FilePath::fromNative("/media/disk/pictures/photo.jpg")},
        {"pictures/photo.jpg", sharedItem, FilePath::fromNative("/media/disk/pictures/photo.jpg")},
        {"pictures/../photo.jpg", volumeItem, FilePath::fromNative("/media/disk/photo.jpg")},
        // Refused: a way out of the volume, a NUL, no path.
        {"../../etc/passwd", volumeItem, std::nullopt},
        {"..", sharedItem, std::nullopt},
        {".", volumeItem, std::nullopt},
        {"/home/u/a%00/b", homeItem, std::nullopt},
        {"a%00b", volumeItem, std::nullopt},
        {"", homeItem, std::nullopt},
    };
    for (const auto& row : rows)
        EXPECT_EQ(read(row.path, row.item), row.original) << row.path;
    EXPECT_EQ(trash::originalPathIn("[Trash Info]\r\nPath=/a/b\r\n", homeItem), FilePath::fromNative("/a/b"));
    EXPECT_EQ(trash::originalPathIn("[Trash Info]\nDeletionDate=2024-05-01T10:20:30\n", homeItem), std::nullopt) << "no Path line";
}

TEST(TrashInfo, DeletionDateLines)
{
    const Timestamp local = QDateTime(QDate(2024, 5, 1), QTime(10, 20, 30)).toMSecsSinceEpoch();
    EXPECT_EQ(trash::deletionDateIn("[Trash Info]\nPath=/a\nDeletionDate=2024-05-01T10:20:30\n"), local) << "local time";
    EXPECT_EQ(trash::deletionDateIn("[Trash Info]\r\nDeletionDate=2024-05-01T10:20:30\r\nPath=/a\r\n"), local);
    EXPECT_EQ(trash::deletionDateIn("[Trash Info]\nPath=/a\n"), std::nullopt) << "no DeletionDate line";
    EXPECT_EQ(trash::deletionDateIn("[Trash Info]\nDeletionDate=yesterday\n"), std::nullopt);
    const trash::Record record = trash::recordIn("[Trash Info]\nPath=/home/u/a%20b\nDeletionDate=2024-05-01T10:20:30\n", homeItem);
    EXPECT_EQ(record.originalPath, FilePath::fromNative("/home/u/a b"));
    EXPECT_EQ(record.deletionDate, local);
}

} // namespace
} // namespace orwick
