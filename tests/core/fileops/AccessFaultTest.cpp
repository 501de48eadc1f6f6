// Owner changes and refusals that need root: giving a file to another user and back by undo,
// and a read-only disk that refuses a new mode. Elsewhere these skip and say why.

#include "FileOpsFixture.h"

#include "support/ScratchMount.h"

#include <QFile>
#include <unistd.h>

namespace orwick::test {
namespace {

using AccessFault = FileOpsTest;

constexpr uid_t kNobody = 65534;

TEST_F(AccessFault, RootGivesAFileToAnotherUserAndUndoGivesItBack)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can give a file to another user";
    const FilePath doc = file("shared.txt", "s");
    ASSERT_EQ(::chmod(doc.c_str(), 0640), 0);
    const FileAccess before = *FileAccess::of(doc);
    FileAccess wanted = before;
    wanted.owner = kNobody;
    wanted.group = kNobody;

    ops.changeAccess(doc, wanted, &stack);
    settle();
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
    EXPECT_EQ(FileAccess::of(doc)->owner, kNobody);
    EXPECT_EQ(FileAccess::of(doc)->group, kNobody);
    EXPECT_EQ(FileAccess::of(doc)->mode, 0640u);
    EXPECT_EQ(stack.undoText(), QStringLiteral("Change Owner"));

    undo();
    EXPECT_EQ(*FileAccess::of(doc), before);
}

TEST_F(AccessFault, AReadOnlyDiskRefusesANewModeAndKeepsTheOld)
{
    ScratchMount disk("tmpfs", "size=1m");
    if (!disk.ok())
        GTEST_SKIP() << disk.why().toStdString();
    const FilePath doc = disk.root().child(QStringLiteral("locked.txt"));
    {
        QFile f(doc.text());
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    }
    ASSERT_EQ(::chmod(doc.c_str(), 0644), 0);
    ASSERT_TRUE(disk.makeReadOnly());
    FileAccess wanted = *FileAccess::of(doc);
    wanted.mode = 0600;

    ops.changeAccess(doc, wanted, &stack);
    settle();
    ASSERT_EQ(reports.size(), 1);
    EXPECT_FALSE(reports.first().isSuccess());
    EXPECT_EQ(reports.first().errors,
              QStringList{QStringLiteral("Couldn’t change the permissions of “locked.txt”: the disk is read-only.")});
    EXPECT_EQ(FileAccess::of(doc)->mode, 0644u);
    EXPECT_EQ(stack.count(), 0);
    EXPECT_TRUE(toasts.isEmpty());
}

} // namespace
} // namespace orwick::test
