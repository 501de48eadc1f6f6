// The information panel's facts about an item, read from real files.

#include "files/FileInfo.h"
#include "platform/Xattr.h"
#include "support/TempHome.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick::test {
namespace {

TEST(FileInfoTest, AFileShowsItsKindSizeModeOwnerTagsAndAttributes)
{
    TempTree tree;
    const FilePath file = tree.file("notes/report.txt", "hello world");
    ASSERT_EQ(::chmod(file.c_str(), 0640), 0);
    ASSERT_TRUE(xattr::set(file, xattr::tags, "Red,project"));
    ASSERT_TRUE(xattr::set(file, "user.origin", QByteArray("\x01\x02", 2)));

    const FileInfo info = loadFileInfo(file);
    EXPECT_TRUE(info.error.isEmpty()) << info.error.toStdString();
    EXPECT_EQ(info.name, QStringLiteral("report.txt"));
    EXPECT_EQ(info.mimeType, QStringLiteral("text/plain"));
    EXPECT_FALSE(info.kind.isEmpty());
    EXPECT_EQ(info.size, 11);
    EXPECT_EQ(info.access.mode, 0640u);
    EXPECT_EQ(info.access.owner, ::getuid());
    EXPECT_FALSE(info.ownerName.isEmpty());
    EXPECT_EQ(info.tags, (QStringList{QStringLiteral("Red"), QStringLiteral("project")}));
    ASSERT_TRUE(info.modified.has_value());
    EXPECT_LT(qAbs(info.modified->secsTo(QDateTime::currentDateTime())), 60);
    bool sawBinary = false;
    for (const FileInfo::Attribute& attribute : info.attributes)
        if (attribute.name == "user.origin")
            sawBinary = attribute.value == QStringLiteral("01 02");
    EXPECT_TRUE(sawBinary) << "bytes that aren't text show as hex";
    EXPECT_EQ(FileAccess::permissionText(info.access.mode), QStringLiteral("rw-r-----"));
}

TEST(FileInfoTest, ALinkShowsItsTargetAndIsNotFollowed)
{
    TempTree tree;
    tree.folder("real");
    const FilePath link = tree.link("shortcut", "real");
    const FileInfo info = loadFileInfo(link);
    EXPECT_TRUE(info.isLink);
    EXPECT_FALSE(info.isFolder);
    EXPECT_EQ(info.linkTarget, QStringLiteral("real"));
    EXPECT_EQ(info.mimeType, QStringLiteral("inode/symlink"));
}

TEST(FileInfoTest, AMissingItemSaysWhy)
{
    TempTree tree;
    const FileInfo info = loadFileInfo(tree.path(QStringLiteral("gone")));
    EXPECT_FALSE(info.error.isEmpty());
    EXPECT_FALSE(info.modified.has_value());
}

TEST(FileInfoTest, UnknownDatesReadAsADash)
{
    EXPECT_EQ(infoDateText(std::nullopt), QStringLiteral("—"));
    EXPECT_NE(infoDateText(QDateTime::currentDateTime()), QStringLiteral("—"));
}

TEST(FileInfoTest, AFolderIsMeasuredWithItsCountAndBytes)
{
    TempTree tree;
    tree.file("box/a", "12345");
    tree.file("box/inner/b", "123");
    tree.link("box/l", "a");
    const FileInfo info = loadFileInfo(tree.path(QStringLiteral("box")));
    EXPECT_TRUE(info.isFolder);
    EXPECT_FALSE(info.size.has_value()) << "a folder is measured apart";

    CancelFlag never;
    const FolderSize size = measureFolder(tree.path(QStringLiteral("box")), never);
    EXPECT_EQ(size.items, 4) << "a, inner, inner/b and the link";
    EXPECT_EQ(size.bytes, 5 + 3 + 1) << "the link counts its own length, never its target";
    EXPECT_TRUE(size.complete);
}

TEST(FileInfoTest, MeasuringStopsWhenCancelledFromItsProgress)
{
    TempTree tree;
    for (int i = 0; i < 2000; ++i)
        tree.file(QStringLiteral("many/f%1").arg(i), "x");
    CancelFlag stop;
    int calls = 0;
    const FolderSize size = measureFolder(tree.path(QStringLiteral("many")), stop, [&](const FolderSize& soFar) {
        ++calls;
        EXPECT_GT(soFar.items, 0);
        stop.cancel();
    });
    EXPECT_EQ(calls, 1);
    EXPECT_FALSE(size.complete);
    EXPECT_LT(size.items, 2000);
}

} // namespace
} // namespace orwick::test
