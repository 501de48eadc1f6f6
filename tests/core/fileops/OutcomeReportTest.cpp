// What the engine reports when a job does not go entirely as asked: every failure at once, what
// was done beside it, items that were gone, and a cancel — never a success toast.

#include "FileOpsFixture.h"
#include "support/ScratchMount.h"

#include <thread>

namespace orwick::test {
namespace {

TEST_F(FileOpsTest, CopyOntoAFullDiskReportsEveryFailureAndWhatWasCopied)
{
    ScratchMount disk("tmpfs", "size=1m,nr_inodes=4"); // the root and three more entries
    if (!disk.ok())
        GTEST_SKIP() << disk.why().toStdString();
    QList<FilePath> items;
    for (int i = 0; i < 8; ++i)
        items.append(file(QStringLiteral("src/f%1.txt").arg(i), "text"));
    ops.transfer(items, disk.root(), FileOperations::Mode::copy, &stack);
    settle();

    const qsizetype copied = names(disk.root()).size();
    EXPECT_GE(copied, 1);
    EXPECT_LT(copied, 8);
    EXPECT_TRUE(toasts.isEmpty()); // not a success
    ASSERT_EQ(reports.size(), 1);  // one report for the whole job
    const OperationOutcome& outcome = reports.first();
    EXPECT_EQ(outcome.done, copied);
    EXPECT_EQ(outcome.errors.size(), 8 - copied);
    EXPECT_EQ(errors.size(), 8 - copied);
    for (const QString& error : outcome.errors)
        EXPECT_TRUE(error.startsWith(QStringLiteral("Couldn’t copy “f"))) << error.toStdString();
    EXPECT_TRUE(outcome.canUndo);
    const QString text = outcomeText(outcome);
    EXPECT_TRUE(text.startsWith(QStringLiteral("Copied %1 items; couldn’t copy %2 items: “f").arg(copied).arg(8 - copied)))
        << text.toStdString();
    EXPECT_EQ(stack.count(), 1); // the copies that were made can be undone
}

TEST_F(FileOpsTest, TrashOfAnItemThatIsGoneCountsIt)
{
    const FilePath a = file("a.txt", "a");
    const FilePath b = file("b.txt", "b");
    ops.trash({a, tree.path("gone.txt"), b}, QStringLiteral("Move to Trash"), &stack);
    settle();
    EXPECT_TRUE(toasts.isEmpty());
    ASSERT_EQ(reports.size(), 1);
    EXPECT_EQ(reports.first().done, 2);
    EXPECT_EQ(reports.first().skipped, 1);
    EXPECT_TRUE(errors.isEmpty());
    EXPECT_EQ(outcomeText(reports.first()), QStringLiteral("Moved 2 items to the Trash; 1 item was no longer there"));
    EXPECT_FALSE(exists(a));
    EXPECT_FALSE(exists(b));
}

TEST_F(FileOpsTest, CancelledCopySaysWhatItDidBeforeStopping)
{
    QList<FilePath> items;
    for (int i = 0; i < 40; ++i)
        items.append(file(QStringLiteral("src/f%1.bin").arg(i), QByteArray(1 << 20, 'x')));
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
    EXPECT_TRUE(toasts.isEmpty());
    ASSERT_EQ(reports.size(), 1);
    EXPECT_TRUE(reports.first().cancelled);
    EXPECT_EQ(reports.first().done, copied);
    const QString expected = copied == 1 ? QStringLiteral("Cancelled; copied f0.bin before stopping")
                                         : QStringLiteral("Cancelled; copied %1 items before stopping").arg(copied);
    EXPECT_EQ(outcomeText(reports.first()), expected);
}

TEST_F(FileOpsTest, FullSuccessIsAnnouncedAndNotReported)
{
    const FilePath a = file("a.txt", "a");
    ops.transfer({a}, tree.folder("dest"), FileOperations::Mode::copy, &stack);
    settle();
    EXPECT_TRUE(reports.isEmpty());
    EXPECT_EQ(lastToast(), QStringLiteral("Copied a.txt"));
}

} // namespace
} // namespace orwick::test
