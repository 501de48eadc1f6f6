// A copy has the source's mode, owner and group whatever the umask and whoever copies, and a
// read-only file still takes its attributes.

#include "FileOpsFixture.h"

#include "fileops/ItemCopier.h"

#include <sys/xattr.h>
#include <unistd.h>

namespace orwick::test {
namespace {

class CopyOwnership : public FileOpsTest {
protected:
    CopyResult copyTo(const FilePath& from, const FilePath& to)
    {
        CopyProgress progress;
        return copyItem(from, to, progress);
    }
    FilePath withMode(const char* relative, mode_t mode)
    {
        const FilePath path = file(QString::fromUtf8(relative), "data");
        EXPECT_EQ(::chmod(path.c_str(), mode), 0);
        return path;
    }
    static mode_t modeOf(const FilePath& path) { return statOf(path).st_mode & 07777; }
};

// Restores the process's umask when the test ends.
struct StrictUmask {
    mode_t before = ::umask(077);
    ~StrictUmask() { ::umask(before); }
};

TEST_F(CopyOwnership, ModesSurviveAStrictUmask)
{
    const StrictUmask umask;
    tree.folder("set/shared");
    ASSERT_EQ(::chmod(tree.path("set/shared").c_str(), 0755), 0);
    withMode("set/shared/run.sh", 0755);
    withMode("set/shared/plain.txt", 0644);
    withMode("set/private.txt", 0600);
    ASSERT_TRUE(copyTo(tree.path("set"), tree.path("copy")).ok());
    EXPECT_EQ(modeOf(tree.path("copy/shared")), 0755u);
    EXPECT_EQ(modeOf(tree.path("copy/shared/run.sh")), 0755u);
    EXPECT_EQ(modeOf(tree.path("copy/shared/plain.txt")), 0644u);
    EXPECT_EQ(modeOf(tree.path("copy/private.txt")), 0600u);
}

TEST_F(CopyOwnership, AReadOnlyFileKeepsItsAttributesAndStaysReadOnly)
{
    const FilePath note = file("note.md", "text");
    if (setxattr(note.c_str(), "user.xdg.tags", "red", 3, 0) != 0)
        GTEST_SKIP() << "the temporary folder's disk keeps no user attributes";
    ASSERT_EQ(::chmod(note.c_str(), 0444), 0);
    const FilePath copy = tree.path("copy.md");
    const CopyResult result = copyTo(note, copy);
    ASSERT_TRUE(result.ok()) << result.reason.toStdString();
    EXPECT_TRUE(result.notes.isEmpty());
    char value[8] = {};
    EXPECT_EQ(getxattr(copy.c_str(), "user.xdg.tags", value, sizeof value), 3);
    EXPECT_EQ(QByteArray(value, 3), "red");
    EXPECT_EQ(modeOf(copy), 0444u);
}

// Giving files away takes the administrator.
class CopyOwnershipFault : public CopyOwnership {};

TEST_F(CopyOwnershipFault, OwnerGroupAndSetIdBitsSurvive)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only the administrator can make files owned by someone else";
    constexpr uid_t kUser = 4242;
    constexpr gid_t kGroup = 4343;
    tree.folder("home/bin");
    const FilePath tool = withMode("home/bin/tool", 0755);
    const FilePath diary = withMode("home/diary.txt", 0640);
    const FilePath groupOnly = withMode("home/group.txt", 0660);
    ASSERT_EQ(::chown(tool.c_str(), kUser, kGroup), 0);
    ASSERT_EQ(::chmod(tool.c_str(), 06755), 0); // after chown, which clears set-id bits
    ASSERT_EQ(::chown(diary.c_str(), kUser, kGroup), 0);
    ASSERT_EQ(::chown(groupOnly.c_str(), 0, kGroup), 0);
    ASSERT_EQ(::chown(tree.path("home/bin").c_str(), kUser, kGroup), 0);

    ASSERT_TRUE(copyTo(tree.path("home"), tree.path("copy")).ok());
    const struct stat copiedTool = statOf(tree.path("copy/bin/tool"));
    EXPECT_EQ(copiedTool.st_uid, kUser);
    EXPECT_EQ(copiedTool.st_gid, kGroup);
    EXPECT_EQ(copiedTool.st_mode & 07777, 06755u);
    const struct stat copiedDiary = statOf(tree.path("copy/diary.txt"));
    EXPECT_EQ(copiedDiary.st_uid, kUser);
    EXPECT_EQ(copiedDiary.st_mode & 07777, 0640u);
    const struct stat copiedGroup = statOf(tree.path("copy/group.txt"));
    EXPECT_EQ(copiedGroup.st_uid, 0u);
    EXPECT_EQ(copiedGroup.st_gid, kGroup);
    EXPECT_EQ(copiedGroup.st_mode & 07777, 0660u);
    EXPECT_EQ(statOf(tree.path("copy/bin")).st_uid, kUser);
}

} // namespace
} // namespace orwick::test
