// Faults: a write that fails half-way, a cancelled copy, a read-only destination. Nothing is
// lost and no half-written item is left under the final name.

#include "FileOpsFixture.h"

#include "fileops/ItemCopier.h"

#include <QCryptographicHash>
#include <fcntl.h>
#include <linux/fs.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace orwick::test {
namespace {

QByteArray pattern(int size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    for (int i = 0; i < size; ++i)
        bytes[i] = char((unsigned(i) * 7919u) >> 3);
    return bytes;
}

// Runs `body` in a child process whose files may not grow past `limit` bytes; returns the
// child's exit code. The child ignores SIGXFSZ so writes fail with EFBIG instead.
int runWithFileSizeLimit(rlim_t limit, const std::function<int()>& body)
{
    const pid_t pid = fork();
    if (pid == 0) {
        signal(SIGXFSZ, SIG_IGN);
        struct rlimit rl = {limit, limit};
        setrlimit(RLIMIT_FSIZE, &rl);
        _exit(body());
    }
    int status = 0;
    waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 100;
}

TEST_F(FileOpsTest, WriteFailingHalfWayLeavesSourceAndNoPartialCopy)
{
    const QByteArray content = pattern(4 << 20);
    const FilePath source = file("big/data.bin", content);
    file("big/small.txt", "small");
    const FilePath dest = tree.folder("dest");
    const int code = runWithFileSizeLimit(1 << 20, [&] {
        CopyProgress progress;
        const CopyResult result = copyItem(source.parent(), dest.child(QStringLiteral("big")), progress);
        if (result.outcome != CopyResult::Outcome::failed)
            return 1;
        // The item inside the tree is named, and the reason is the target's.
        return result.reason == QStringLiteral("“data.bin” couldn’t be written (the file is too large for that disk)") ? 0 : 2;
    });
    EXPECT_EQ(code, 0);
    EXPECT_EQ(readAll(source), content);
    EXPECT_TRUE(names(dest).isEmpty()) << names(dest).join(' ').toStdString();
}

TEST_F(FileOpsTest, MoveAcrossVolumesFailingHalfWayKeepsTheSource)
{
    QTemporaryDir shm(QStringLiteral("/dev/shm/orwick-test-XXXXXX"));
    const FilePath source = FilePath::fromText(shm.path()).child(QStringLiteral("data.bin"));
    const QByteArray content = pattern(3 << 20);
    ASSERT_TRUE(writeFile(source, content));
    const FilePath dest = tree.folder("dest");
    const int code = runWithFileSizeLimit(1 << 20, [&] {
        CopyProgress progress;
        MoveKind how;
        const CopyResult result = moveItem(source, dest.child(QStringLiteral("data.bin")), progress, &how);
        return result.outcome == CopyResult::Outcome::failed && how == MoveKind::copied ? 0 : 1;
    });
    EXPECT_EQ(code, 0);
    EXPECT_EQ(readAll(source), content);
    EXPECT_TRUE(names(dest).isEmpty());
}

TEST_F(FileOpsTest, CancelInsideALargeFileRemovesThePartialCopy)
{
    const FilePath source = file("large.bin", pattern(48 << 20));
    const FilePath dest = tree.folder("dest");
    CopyProgress progress;
    std::thread canceller([&] {
        while (progress.snapshot().currentFileBytes == 0)
            std::this_thread::yield();
        progress.cancel();
    });
    const CopyResult result = copyItem(source, dest.child(QStringLiteral("large.bin")), progress);
    canceller.join();
    EXPECT_EQ(result.outcome, CopyResult::Outcome::cancelled);
    EXPECT_LT(progress.snapshot().finishedBytes, 48 << 20);
    EXPECT_TRUE(names(dest).isEmpty());
}

TEST_F(FileOpsTest, CancelledJobSaysAndKeepsWhatItFinishedAndUndoCoversIt)
{
    QList<FilePath> items;
    for (int i = 0; i < 40; ++i)
        items.append(tree.file(QStringLiteral("src/f%1.bin").arg(i), pattern(1 << 20)));
    const FilePath dest = tree.folder("dest");
    ops.transfer(items, dest, FileOperations::Mode::copy, &stack);
    ASSERT_EQ(ops.jobs().size(), 1);
    const FileJob job = ops.jobs().first();
    std::thread canceller([&] { // cancels once the first file is done
        while (job.progress->snapshot().finishedBytes < (1 << 20))
            std::this_thread::yield();
        job.progress->cancel();
    });
    settle();
    canceller.join();
    const qsizetype copied = names(dest).size();
    EXPECT_GE(copied, 1);
    EXPECT_LT(copied, 40);
    EXPECT_TRUE(leftovers(dest).isEmpty());
    EXPECT_TRUE(toasts.isEmpty()); // a cancelled job is not announced, but reported with what it did
    ASSERT_EQ(reports.size(), 1);
    EXPECT_TRUE(reports.first().cancelled);
    EXPECT_EQ(reports.first().done, copied);
    const QString expected = copied == 1 ? QStringLiteral("Cancelled; copied f0.bin before stopping")
                                         : QStringLiteral("Cancelled; copied %1 items before stopping").arg(copied);
    EXPECT_EQ(outcomeText(reports.first()), expected);
    ASSERT_EQ(stack.count(), 1);
    undo();
    EXPECT_TRUE(names(dest).isEmpty());
    EXPECT_EQ(names(tree.path("src")).size(), 40);
}

// Makes `folder` refuse new entries: read-only permissions, or for root the immutable flag.
bool makeReadOnly(const FilePath& folder, bool on)
{
    if (geteuid() != 0)
        return chmod(folder.c_str(), on ? 0555 : 0755) == 0;
    const int fd = open(folder.c_str(), O_RDONLY | O_DIRECTORY);
    int flags = 0;
    bool ok = fd >= 0 && ioctl(fd, FS_IOC_GETFLAGS, &flags) == 0;
    flags = on ? (flags | FS_IMMUTABLE_FL) : (flags & ~FS_IMMUTABLE_FL);
    ok = ok && ioctl(fd, FS_IOC_SETFLAGS, &flags) == 0;
    if (fd >= 0)
        close(fd);
    return ok;
}

TEST_F(FileOpsTest, ReadOnlyDestinationSaysSoAndKeepsTheSource)
{
    const FilePath source = file("report.pdf", "pdf");
    const FilePath dest = tree.folder("locked");
    if (!makeReadOnly(dest, true))
        GTEST_SKIP() << "this file system can't make a folder read-only for root";
    ops.transfer({source}, dest, FileOperations::Mode::move, &stack);
    settle();
    ops.transfer({source}, dest, FileOperations::Mode::copy, &stack);
    settle();
    makeReadOnly(dest, false);
    ASSERT_EQ(errors.size(), 2);
    EXPECT_EQ(errors[0], QStringLiteral("Couldn’t move “report.pdf”: you don’t have permission."));
    EXPECT_EQ(errors[1], QStringLiteral("Couldn’t copy “report.pdf”: you don’t have permission."));
    EXPECT_EQ(readAll(source), "pdf");
    EXPECT_TRUE(names(dest).isEmpty());
    EXPECT_EQ(stack.count(), 0);
}

} // namespace
} // namespace orwick::test
