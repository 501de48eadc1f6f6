// The batch transforms on small disks of the test's own: a full disk while a made file or a new
// version is written leaves every original as it was and no temporary file behind; a read-only
// disk, and a file the user may not write, are refused with their reason before any transform.

#include "FileOpsFixture.h"

#include "support/ScratchMount.h"
#include "support/Unprivileged.h"

#include <atomic>

namespace orwick::test {
namespace {

using TransformFault = FileOpsTest;

FileOperations::TransformTexts texts() { return {QStringLiteral("Grow"), QStringLiteral("Growing"), QStringLiteral("Grow")}; }

QByteArray pattern(qsizetype size, char seed)
{
    QByteArray bytes(size, Qt::Uninitialized);
    for (qsizetype i = 0; i < size; ++i)
        bytes[i] = char(seed + (i * 7919) % 61);
    return bytes;
}

TEST_F(TransformFault, AFullDiskLeavesNoMadeFileAndNoTemporaryFile)
{
    ScratchMount small("tmpfs", "size=1m");
    if (!small.ok())
        GTEST_SKIP() << small.why().toStdString();
    const FilePath source = small.root().child(QStringLiteral("a.txt"));
    ASSERT_TRUE(QFile(source.text()).open(QIODevice::WriteOnly));
    ops.makeFiles({source}, texts(), [](const FilePath& from, const CancelFlag&) -> Result<QList<FileOperations::MadeFile>> {
        return QList<FileOperations::MadeFile>{{from.parent().child(QStringLiteral("a.out")), pattern(2 << 20, 'a')}};
    }, &stack);
    settle();
    EXPECT_EQ(names(small.root()), QList<QByteArray>{"a.txt"});
    EXPECT_EQ(errors, QStringList{QStringLiteral("Couldn’t do “Grow” on “a.txt”: “a.out” couldn’t be made (the disk is full).")});
    EXPECT_EQ(stack.count(), 0);
}

TEST_F(TransformFault, AFullDiskLeavesTheOriginalAsItWas)
{
    ScratchMount small("tmpfs", "size=1m");
    if (!small.ok())
        GTEST_SKIP() << small.why().toStdString();
    const QByteArray original = pattern(300 << 10, 'o');
    const FilePath one = small.root().child(QStringLiteral("one.bin"));
    const FilePath linked = small.root().child(QStringLiteral("linked.bin"));
    for (const FilePath& path : {one, linked})
        ASSERT_TRUE(writeFile(path, original));
    // The second one has another name: it is written through its own inode, room reserved first.
    ASSERT_EQ(::link(linked.c_str(), small.root().child(QStringLiteral("other.bin")).c_str()), 0);
    ops.setTransformWorkers(1);
    ops.replaceInPlace({one, linked}, texts(), [](const FilePath&, const CancelFlag&) -> Result<QByteArray> {
        return pattern(900 << 10, 'n');
    }, &stack);
    settle();
    EXPECT_EQ(readAll(one), original);
    EXPECT_EQ(readAll(linked), original);
    EXPECT_EQ(statOf(linked).st_nlink, 2u);
    ASSERT_EQ(errors.size(), 2) << errors.join('\n').toStdString();
    EXPECT_EQ(errors[0], QStringLiteral("Couldn’t change “one.bin”: there’s no room left on the disk."));
    EXPECT_TRUE(errors[1].startsWith(QStringLiteral("Couldn’t change “linked.bin”: "))) << errors[1].toStdString();
    EXPECT_TRUE(leftovers(small.root()).isEmpty()) << leftovers(small.root()).join(' ').toStdString();
    const FilePath volumeTrash = small.root().child(QByteArrayView(".Trash-" + QByteArray::number(getuid()) + "/files"));
    EXPECT_TRUE(names(volumeTrash).isEmpty()) << names(volumeTrash).join(' ').toStdString();
    EXPECT_EQ(stack.count(), 0);
}

TEST_F(TransformFault, FilesOnAReadOnlyDiskAreRefusedBeforeTheirTransform)
{
    ScratchMount disk("tmpfs", "size=1m");
    if (!disk.ok())
        GTEST_SKIP() << disk.why().toStdString();
    const FilePath photo = disk.root().child(QStringLiteral("photo.jpg"));
    ASSERT_TRUE(writeFile(photo, "pixels"));
    ASSERT_TRUE(disk.makeReadOnly());
    std::atomic<int> calls = 0;
    ops.replaceInPlace({photo}, texts(), [&](const FilePath&, const CancelFlag&) -> Result<QByteArray> {
        ++calls;
        return QByteArray("PIXELS");
    }, &stack);
    settle();
    EXPECT_EQ(calls.load(), 0);
    EXPECT_EQ(readAll(photo), "pixels");
    EXPECT_EQ(errors, QStringList{QStringLiteral("Couldn’t change “photo.jpg”: the disk is read-only.")});
}

TEST_F(TransformFault, AFileTheUserMayNotWriteIsRefused)
{
    ScratchMount disk("tmpfs", "size=1m,mode=0755");
    if (!disk.ok())
        GTEST_SKIP() << disk.why().toStdString();
    const FilePath photo = disk.root().child(QStringLiteral("photo.jpg"));
    ASSERT_TRUE(writeFile(photo, "pixels"));
    ASSERT_EQ(::chmod(photo.c_str(), 0644), 0); // writable by its owner, root, only
    {
        const Unprivileged user;
        ASSERT_TRUE(user.ok());
        ops.replaceInPlace({photo}, texts(), [](const FilePath&, const CancelFlag&) -> Result<QByteArray> {
            return QByteArray("PIXELS");
        }, &stack);
        settle();
    }
    EXPECT_EQ(readAll(photo), "pixels");
    EXPECT_EQ(errors, QStringList{QStringLiteral("Couldn’t change “photo.jpg”: it is read-only.")});
}

TEST_F(TransformFault, AnotherUsersFileKeepsItsOwnerAndGroup)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "giving a file to another user needs root";
    const FilePath theirs = file("theirs.txt", "theirs");
    ASSERT_EQ(::chown(theirs.c_str(), 65534, 65534), 0);
    ASSERT_EQ(::chmod(theirs.c_str(), 0664), 0);
    ops.replaceInPlace({theirs}, texts(), [](const FilePath&, const CancelFlag&) -> Result<QByteArray> {
        return QByteArray("THEIRS");
    }, &stack);
    settle();
    EXPECT_EQ(readAll(theirs), "THEIRS");
    EXPECT_EQ(statOf(theirs).st_uid, 65534u);
    EXPECT_EQ(statOf(theirs).st_gid, 65534u);
    EXPECT_EQ(statOf(theirs).st_mode & 07777, 0664u);
    undo();
    EXPECT_EQ(readAll(theirs), "theirs");
    EXPECT_EQ(statOf(theirs).st_uid, 65534u);
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
}

} // namespace
} // namespace orwick::test
