// What a copy keeps and where it stops, on real small file systems of the test's own: holes,
// hard links, attributes of any size, sockets, files under /proc, links and bind mounts back
// into the source, very deep trees, full disks, disks out of inodes, read-only disks.

#include "FileOpsFixture.h"

#include "fileops/ItemCopier.h"
#include "fileops/TreeCopy.h"
#include "support/ScratchMount.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace orwick::test {
namespace {

class CopyFault : public FileOpsTest {
protected:
    static qint64 allocated(const FilePath& path) { return qint64(statOf(path).st_blocks) * 512; }
    CopyResult copyTo(const FilePath& from, const FilePath& to)
    {
        CopyProgress progress;
        return copyItem(from, to, progress);
    }
};

TEST_F(CopyFault, SparseImageKeepsItsHolesOnASmallDisk)
{
    ScratchMount small("tmpfs", "size=100m");
    if (!small.ok())
        GTEST_SKIP() << small.why().toStdString();
    const FilePath image = tree.root().child(QStringLiteral("disk.img"));
    {
        const int fd = ::open(image.c_str(), O_WRONLY | O_CREAT, 0644);
        ASSERT_GE(fd, 0);
        ASSERT_EQ(ftruncate(fd, qint64(1) << 30), 0);
        ASSERT_EQ(pwrite(fd, "boot", 4, 512 << 20), 4);
        ::close(fd);
    }
    ASSERT_LT(allocated(image), 1 << 20) << "the temporary folder's disk can't make sparse files";
    const FilePath copy = small.root().child(QStringLiteral("disk.img"));
    const CopyResult result = copyTo(image, copy);
    ASSERT_TRUE(result.ok()) << result.reason.toStdString();
    EXPECT_EQ(statOf(copy).st_size, qint64(1) << 30);
    EXPECT_LT(allocated(copy), 1 << 20);
    char bytes[4] = {};
    const int fd = ::open(copy.c_str(), O_RDONLY);
    EXPECT_EQ(pread(fd, bytes, 4, 512 << 20), 4);
    ::close(fd);
    EXPECT_EQ(QByteArray(bytes, 4), "boot");
}

TEST_F(CopyFault, HardLinksInsideTheTreeStayOneFile)
{
    const FilePath first = file("set/a.txt", "shared");
    const FilePath second = tree.path("set/sub/b.txt");
    tree.folder("set/sub");
    ASSERT_EQ(::link(first.c_str(), second.c_str()), 0);
    const FilePath copy = tree.path("copy");
    ASSERT_TRUE(copyTo(tree.path("set"), copy).ok());
    const struct stat a = statOf(copy.child(QStringLiteral("a.txt")));
    const struct stat b = statOf(copy.child(QStringLiteral("sub/b.txt")));
    EXPECT_EQ(a.st_ino, b.st_ino);
    EXPECT_EQ(a.st_nlink, 2u);
    EXPECT_NE(a.st_ino, statOf(first).st_ino);
    EXPECT_EQ(readAll(copy.child(QStringLiteral("sub/b.txt"))), "shared");
}

TEST_F(CopyFault, AttributesOfAnySizeAreKept)
{
    ScratchMount disk("tmpfs", "size=10m");
    if (!disk.ok())
        GTEST_SKIP() << disk.why().toStdString();
    const FilePath note = disk.root().child(QStringLiteral("note.md"));
    QFile(note.text()).open(QIODevice::WriteOnly);
    const QByteArray big(65000, 'p');
    ASSERT_EQ(setxattr(note.c_str(), "user.app.orwick.properties", big.constData(), big.size(), 0), 0);
    // Names that fill far more than 4 KiB together.
    for (int i = 0; i < 40; ++i) {
        const QByteArray name = "user.tag" + QByteArray::number(i) + QByteArray(180, 'n');
        ASSERT_EQ(setxattr(note.c_str(), name.constData(), "v", 1, 0), 0) << i;
    }
    const FilePath copy = disk.root().child(QStringLiteral("copy.md"));
    const CopyResult result = copyTo(note, copy);
    ASSERT_TRUE(result.ok());
    EXPECT_TRUE(result.notes.isEmpty()) << result.notes.join('\n').toStdString();
    EXPECT_EQ(listxattr(copy.c_str(), nullptr, 0), listxattr(note.c_str(), nullptr, 0));
    QByteArray value(70000, 0);
    EXPECT_EQ(getxattr(copy.c_str(), "user.app.orwick.properties", value.data(), value.size()), 65000);
}

TEST_F(CopyFault, AttributeTheTargetRefusesIsNamed)
{
    ScratchMount source("tmpfs", "size=10m");
    ScratchMount bare("ramfs"); // keeps no user attributes
    if (!source.ok() || !bare.ok())
        GTEST_SKIP() << (source.ok() ? bare.why() : source.why()).toStdString();
    const FilePath photo = source.root().child(QStringLiteral("photo.jpg"));
    QFile(photo.text()).open(QIODevice::WriteOnly);
    ASSERT_EQ(setxattr(photo.c_str(), "user.xdg.tags", "Red", 3, 0), 0);
    ops.transfer({photo}, bare.root(), FileOperations::Mode::copy, &stack);
    settle();
    EXPECT_TRUE(exists(bare.root().child(QStringLiteral("photo.jpg"))));
    EXPECT_EQ(lastToast(), QStringLiteral("Copied photo.jpg; 1 item lost extended attributes the disk refused"));
    CopyProgress progress;
    const CopyResult result = copyItem(photo, bare.root().child(QStringLiteral("again.jpg")), progress);
    ASSERT_EQ(result.notes.size(), 1);
    EXPECT_EQ(result.notes.first(), QStringLiteral("“photo.jpg” lost its attribute “user.xdg.tags”: the disk it went to doesn’t keep them."));
}

TEST_F(CopyFault, SocketIsLeftOutAndTheRestIsCopied)
{
    file("run/log.txt", "log");
    const FilePath socketPath = tree.path("run/app.sock");
    const int fd = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    strncpy(address.sun_path, socketPath.c_str(), sizeof address.sun_path - 1);
    ASSERT_EQ(bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    const FilePath dest = tree.folder("dest");
    ops.transfer({tree.path("run")}, dest, FileOperations::Mode::copy, &stack);
    settle();
    ::close(fd);
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
    EXPECT_EQ(readAll(dest.child(QStringLiteral("run/log.txt"))), "log");
    EXPECT_FALSE(exists(dest.child(QStringLiteral("run/app.sock"))));
    EXPECT_EQ(lastToast(), QStringLiteral("Copied run; 1 item was left out (sockets and devices aren’t copied)"));
}

TEST_F(CopyFault, FileWhoseSizeSaysZeroIsReadToItsEnd)
{
    const FilePath status = FilePath::fromText(QStringLiteral("/proc/self/status"));
    ASSERT_EQ(statOf(status).st_size, 0);
    const FilePath copy = tree.path("status.txt");
    ASSERT_TRUE(copyTo(status, copy).ok());
    EXPECT_TRUE(readAll(copy).startsWith("Name:"));
}

TEST_F(CopyFault, LinkBackIntoTheSourceIsRefusedAndLeavesNothing)
{
    const FilePath project = tree.folder("Project");
    file("Project/a.txt", "a");
    tree.link("Project/inner", tree.root().native() + "/Project");
    // The destination is spelled through the link, so it looks like another folder.
    const FilePath through = tree.path("Project/inner");
    ops.transfer({project}, through, FileOperations::Mode::copy, &stack);
    ops.transfer({project}, through, FileOperations::Mode::move, &stack);
    settle();
    ASSERT_EQ(errors.size(), 2);
    EXPECT_EQ(errors.first(), QStringLiteral("“Project” can't be put inside itself."));
    EXPECT_EQ(names(project), (QList<QByteArray>{"a.txt", "inner"}));
    CopyProgress progress;
    const CopyResult direct = copyItem(project, through.child(QStringLiteral("Project")), progress);
    EXPECT_EQ(direct.reason, QStringLiteral("it can’t be put inside itself"));
    EXPECT_EQ(names(project), (QList<QByteArray>{"a.txt", "inner"}));
}

TEST_F(CopyFault, BindMountOfTheSourceIsRefused)
{
    const FilePath project = tree.folder("Project");
    file("Project/a.txt", "a");
    ScratchMount view(project);
    if (!view.ok())
        GTEST_SKIP() << view.why().toStdString();
    ops.transfer({project}, view.root(), FileOperations::Mode::copy, &stack);
    settle();
    ASSERT_EQ(errors.size(), 1);
    EXPECT_EQ(errors.first(), QStringLiteral("“Project” can't be put inside itself."));
    EXPECT_EQ(names(project), QList<QByteArray>{"a.txt"});
}

TEST_F(CopyFault, VeryDeepTreeCopiesWithoutTheCallStackAndTooDeepStops)
{
    auto makeChain = [&](const char* top, int depth) {
        const FilePath root = tree.folder(QString::fromLatin1(top));
        int fd = ::open(root.c_str(), O_RDONLY | O_DIRECTORY);
        for (int i = 0; i < depth; ++i) {
            mkdirat(fd, "d", 0755);
            const int next = openat(fd, "d", O_RDONLY | O_DIRECTORY);
            ::close(fd);
            fd = next;
        }
        const int leaf = openat(fd, "leaf.txt", O_WRONLY | O_CREAT, 0644);
        ::write(leaf, "deep", 4);
        ::close(leaf);
        ::close(fd);
        return root;
    };
    const FilePath deep = makeChain("deep", 900);
    ASSERT_TRUE(copyTo(deep, tree.path("deep copy")).ok());
    QByteArray leaf = tree.path("deep copy").native();
    for (int i = 0; i < 900; ++i)
        leaf += "/d";
    EXPECT_EQ(readAll(FilePath::fromNative(leaf + "/leaf.txt")), "deep");

    const FilePath tooDeep = makeChain("too", TreeCopy::kMaxDepth + 5);
    const CopyResult result = copyTo(tooDeep, tree.path("too copy"));
    EXPECT_EQ(result.outcome, CopyResult::Outcome::failed);
    EXPECT_TRUE(result.reason.contains(QStringLiteral("folders deep"))) << result.reason.toStdString();
    EXPECT_FALSE(exists(tree.path("too copy")));
    EXPECT_EQ(names(tree.root()), (QList<QByteArray>{"deep", "deep copy", "too"}));
    EXPECT_TRUE(removeTree(deep).has_value());
    EXPECT_TRUE(removeTree(tooDeep).has_value());
}

TEST_F(CopyFault, FullDiskAndDiskOutOfInodesSayWhichAndLeaveNothing)
{
    ScratchMount full("tmpfs", "size=1m");
    ScratchMount noInodes("tmpfs", "size=50m,nr_inodes=6");
    if (!full.ok() || !noInodes.ok())
        GTEST_SKIP() << (full.ok() ? noInodes.why() : full.why()).toStdString();
    file("big/data.bin", QByteArray(3 << 20, 'd'));
    for (int i = 0; i < 20; ++i)
        file(QStringLiteral("many/f%1.txt").arg(i), "x");
    ops.transfer({tree.path("big")}, full.root(), FileOperations::Mode::copy, &stack);
    settle(); // one job after the other, so the errors come in this order
    ops.transfer({tree.path("many")}, noInodes.root(), FileOperations::Mode::move, &stack);
    settle();
    ASSERT_EQ(errors.size(), 2) << errors.join('\n').toStdString();
    EXPECT_EQ(errors[0], QStringLiteral("Couldn’t copy “big”: “data.bin” couldn’t be written (the disk is full)."));
    EXPECT_TRUE(errors[1].startsWith(QStringLiteral("Couldn’t move “many”: “f")) && errors[1].endsWith(QStringLiteral("(the disk has no room for more files).")))
        << errors[1].toStdString();
    EXPECT_TRUE(names(full.root()).isEmpty());
    EXPECT_TRUE(names(noInodes.root()).isEmpty());
    EXPECT_EQ(names(tree.path("many")).size(), 20);
    EXPECT_EQ(stack.count(), 0);
}

TEST_F(CopyFault, ReadOnlyDiskAndMissingDestinationSayWhich)
{
    ScratchMount disk("tmpfs", "size=1m");
    if (!disk.ok() || !disk.makeReadOnly())
        GTEST_SKIP() << "needs root to mount a read-only tmpfs";
    const FilePath report = file("report.pdf", "pdf");
    ops.transfer({report}, disk.root(), FileOperations::Mode::copy, &stack);
    settle();
    ASSERT_EQ(errors.size(), 1);
    EXPECT_EQ(errors[0], QStringLiteral("Couldn’t copy “report.pdf”: the disk is read-only."));

    CopyProgress progress;
    const CopyResult result = moveItem(report, tree.path("gone/report.pdf"), progress);
    EXPECT_EQ(result.outcome, CopyResult::Outcome::failed);
    EXPECT_EQ(result.reason, QStringLiteral("the place it was going to isn’t there any more"));
    EXPECT_EQ(readAll(report), "pdf");
}

} // namespace
} // namespace orwick::test
