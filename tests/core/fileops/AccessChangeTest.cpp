// Permission changes through the engine: one undo step that puts back the exact old mode, and
// a refusal that is a failure with its reason, never a success.

#include "FileOpsFixture.h"

#include <unistd.h>

namespace orwick::test {
namespace {

unsigned modeOf(const FilePath& path) { return FileAccess::of(path).value().mode; }

TEST_F(FileOpsTest, ChangingPermissionsIsOneStepThatUndoesExactly)
{
    const FilePath script = file("run.sh", "echo hi");
    ASSERT_EQ(::chmod(script.c_str(), 04640), 0) << "set-id bits are kept too";
    FileAccess wanted = *FileAccess::of(script);
    wanted.mode = 04750;

    ops.changeAccess(script, wanted, &stack);
    settle();
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
    EXPECT_EQ(modeOf(script), 04750u);
    EXPECT_EQ(stack.count(), 1);
    EXPECT_EQ(stack.undoText(), QStringLiteral("Change Permissions"));
    EXPECT_EQ(lastToast(), QStringLiteral("Changed the permissions of “run.sh”"));

    undo();
    EXPECT_EQ(modeOf(script), 04640u);
    redo();
    EXPECT_EQ(modeOf(script), 04750u);
}

TEST_F(FileOpsTest, UndoKeepsWhatAnotherProgramChangedSince)
{
    const FilePath doc = file("doc.txt", "d");
    ASSERT_EQ(::chmod(doc.c_str(), 0600), 0);
    FileAccess wanted = *FileAccess::of(doc);
    wanted.mode = 0644;
    ops.changeAccess(doc, wanted, &stack);
    settle();
    ASSERT_EQ(modeOf(doc), 0644u);

    ASSERT_EQ(::chmod(doc.c_str(), 0444), 0); // someone else's change
    undo();
    EXPECT_EQ(modeOf(doc), 0444u) << "a mode that no longer holds this step's value stays";
}

TEST_F(FileOpsTest, AskingForTheSameAccessChangesNothing)
{
    const FilePath doc = file("same.txt", "d");
    ops.changeAccess(doc, *FileAccess::of(doc), &stack);
    settle();
    EXPECT_TRUE(errors.isEmpty());
    EXPECT_EQ(stack.count(), 0);
}

TEST_F(FileOpsTest, GivingAFileAwayWithoutBeingRootIsRefusedWithItsReason)
{
    if (::geteuid() == 0)
        GTEST_SKIP() << "root may give files away; AccessFault covers the refusals root meets";
    const FilePath doc = file("mine.txt", "d");
    const FileAccess before = *FileAccess::of(doc);
    FileAccess wanted = before;
    wanted.owner = 0;

    ops.changeAccess(doc, wanted, &stack);
    settle();
    ASSERT_EQ(reports.size(), 1);
    EXPECT_FALSE(reports.first().isSuccess());
    EXPECT_EQ(reports.first().errors, QStringList{QStringLiteral(
        "Couldn’t change the permissions of “mine.txt”: only its owner or an administrator can change that.")});
    EXPECT_EQ(*FileAccess::of(doc), before);
    EXPECT_EQ(stack.count(), 0);
    EXPECT_TRUE(toasts.isEmpty());
}

} // namespace
} // namespace orwick::test
