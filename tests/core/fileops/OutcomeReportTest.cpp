// What the engine reports when a job does not go entirely as asked: every failure at once, what
// was done beside it, items that were gone, and a cancel — never a success toast.

#include "FileOpsFixture.h"
#include "support/ScratchMount.h"


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
