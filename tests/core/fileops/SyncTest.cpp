// Bringing two folders into line through FileOperations::sync, as the compare panel plans it:
// one job, one undo step that puts both folders back as they were, and a comparison that finds
// nothing left to do.

#include "FileOpsFixture.h"

#include "disktools/FolderDiff.h"
#include "platform/DirectoryReader.h"

namespace orwick::test {
namespace {

using FolderDiff::SyncMode;

FolderDiff::Result compared(const FilePath& left, const FilePath& right)
{
    CancelFlag never;
    return FolderDiff::compare(left, right, FolderDiff::kPanelLimit, never);
}

std::optional<qint64> modified(const FilePath& path)
{
    const auto st = statPath(path);
    return st ? std::optional<qint64>(st->modifiedNs) : std::nullopt;
}

class SyncTest : public FileOpsTest {
protected:
    void SetUp() override
    {
        left = tree.folder("left");
        right = tree.folder("right");
        file("left/same.txt", "same");
        file("right/same.txt", "same");
        file("left/docs/a.txt", "a");
        file("left/docs/b.txt", "b");
        file("right/notes.txt", "notes");
        file("left/newer-left.txt", "left wins");
        file("right/newer-left.txt", "old");
        tree.touch(right.child(QByteArrayView("newer-left.txt")), 1'000'000'000);
        file("left/newer-right.txt", "old");
        file("right/newer-right.txt", "right wins");
        tree.touch(left.child(QByteArrayView("newer-right.txt")), 1'000'000'000);
    }

    void sync(SyncMode mode)
    {
        const auto plan = FolderDiff::plan(compared(left, right), left, right, mode, modified);
        ops.sync(plan.copies, plan.replacing, plan.toTrash, FolderDiff::syncTitle(mode, left, right), &stack);
        settle();
    }

    FilePath left, right;
};

TEST_F(SyncTest, BothWaysLeavesNothingToDoAndUndoPutsBothBack)
{
    sync(SyncMode::bothWays());
    EXPECT_TRUE(errors.isEmpty()) << errors.join("; ").toStdString();
    EXPECT_FALSE(compared(left, right).hasDifferences());
    EXPECT_EQ(readAll(right.child(QByteArrayView("newer-left.txt"))), "left wins");
    EXPECT_EQ(readAll(left.child(QByteArrayView("newer-right.txt"))), "right wins");
    EXPECT_EQ(readAll(right.child(QByteArrayView("docs/b.txt"))), "b");
    EXPECT_EQ(readAll(left.child(QByteArrayView("notes.txt"))), "notes");
    EXPECT_EQ(stack.count(), 1);
    EXPECT_EQ(stack.undoText(), "Both ways, newer file wins");

    undo();
    EXPECT_FALSE(exists(right.child(QByteArrayView("docs"))));
    EXPECT_FALSE(exists(left.child(QByteArrayView("notes.txt"))));
    EXPECT_EQ(readAll(right.child(QByteArrayView("newer-left.txt"))), "old");
    EXPECT_EQ(readAll(left.child(QByteArrayView("newer-right.txt"))), "old");
    const auto again = compared(left, right);
    EXPECT_EQ(again.count(FolderDiff::Status::changed), 2);
    EXPECT_EQ(again.count(FolderDiff::Status::onlyLeft), 1);
    EXPECT_EQ(again.count(FolderDiff::Status::onlyRight), 1);
}

TEST_F(SyncTest, MirrorTrashesExtrasAndReplacesChanged)
{
    sync(SyncMode::mirror(true));
    EXPECT_TRUE(errors.isEmpty()) << errors.join("; ").toStdString();
    EXPECT_FALSE(compared(left, right).hasDifferences());
    EXPECT_FALSE(exists(right.child(QByteArrayView("notes.txt"))));
    EXPECT_EQ(readAll(right.child(QByteArrayView("newer-right.txt"))), "old") << "a mirror copies the source's version";
    EXPECT_TRUE(exists(homeTrashFiles().child(QByteArrayView("notes.txt"))));
    EXPECT_TRUE(lastToast().contains("to the Trash")) << lastToast().toStdString();
    undo();
    EXPECT_EQ(readAll(right.child(QByteArrayView("notes.txt"))), "notes");
    EXPECT_EQ(readAll(right.child(QByteArrayView("newer-right.txt"))), "right wins");
    EXPECT_FALSE(exists(right.child(QByteArrayView("docs"))));
    redo();
    EXPECT_FALSE(compared(left, right).hasDifferences());
}

TEST_F(SyncTest, CopyMissingOverwritesNothing)
{
    sync(SyncMode::copyMissing(true));
    EXPECT_EQ(readAll(right.child(QByteArrayView("docs/a.txt"))), "a");
    EXPECT_EQ(readAll(right.child(QByteArrayView("newer-left.txt"))), "old");
    EXPECT_TRUE(exists(right.child(QByteArrayView("notes.txt"))));
    EXPECT_EQ(lastToast(), "Copied docs");
}

TEST_F(SyncTest, SomethingThatAppearedSinceTheComparisonIsLeftAlone)
{
    const auto plan = FolderDiff::plan(compared(left, right), left, right, SyncMode::copyMissing(true), modified);
    file("right/docs", "made meanwhile");
    ops.sync(plan.copies, plan.replacing, plan.toTrash, "Copy", &stack);
    settle();
    EXPECT_EQ(readAll(right.child(QByteArrayView("docs"))), "made meanwhile");
}

} // namespace
} // namespace orwick::test
