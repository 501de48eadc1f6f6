// What tells a network mount from a local one, and the time limit its reads run under.

#include "async/TimeLimited.h"
#include "platform/MountTable.h"
#include "support/TestMain.h"

#include <QElapsedTimer>
#include <gtest/gtest.h>
#include <thread>

namespace orwick::test {
namespace {

const QByteArray kTable =
    "22 27 0:21 / /proc rw,relatime - proc proc rw\n"
    "27 1 8:1 / / rw,relatime - ext4 /dev/sda1 rw\n"
    "40 27 0:39 / /mnt/team\\040share rw - cifs //nas/team rw\n"
    "41 27 0:40 / /run/user/1000/gvfs rw,nosuid - fuse.gvfsd-fuse gvfsd-fuse rw,user_id=1000\n"
    "42 27 8:17 / /media/usb rw - fuseblk /dev/sdb1 rw\n"
    "garbage line\n";

TEST(MountTable, ReadsPointsWithTheirEscapesAndTypes)
{
    const QList<MountEntry> table = parseMountTable(kTable);
    ASSERT_EQ(table.size(), 5);
    EXPECT_EQ(table[2].point.text(), QStringLiteral("/mnt/team share"));
    EXPECT_EQ(table[2].type, "cifs");
    EXPECT_EQ(table[2].source, "//nas/team");
}

TEST(MountTable, TellsNetworkMountsFromLocalOnes)
{
    const QList<MountEntry> table = parseMountTable(kTable);
    auto onNetwork = [&table](const char* path) { return isOnNetworkMount(FilePath::fromNative(path), table); };
    EXPECT_TRUE(onNetwork("/mnt/team share/plans/q1.txt"));
    EXPECT_TRUE(onNetwork("/run/user/1000/gvfs/sftp:host=example.com/home"));
    EXPECT_FALSE(onNetwork("/mnt/team"));
    EXPECT_FALSE(onNetwork("/home/ann/Documents"));
    EXPECT_FALSE(onNetwork("/media/usb/photos")) << "a FUSE disk (ntfs) is local";
    EXPECT_EQ(mountHolding(FilePath::fromNative("/run/user/1000/gvfs/x"), table)->type, "fuse.gvfsd-fuse");
    EXPECT_TRUE(isKernelFileSystem("proc"));
    EXPECT_FALSE(isKernelFileSystem("ext4"));
}

TEST(TimeLimited, ReadThatDoesNotAnswerGivesUpAtTheLimitAndDropsTheLateAnswer)
{
    QObject owner;
    int applied = 0, timedOut = 0;
    QElapsedTimer clock;
    clock.start();
    runWithTimeLimit(&owner, 200, [] { std::this_thread::sleep_for(std::chrono::milliseconds(800)); return 1; },
                     [&applied](int) { ++applied; }, [&timedOut] { ++timedOut; });
    ASSERT_TRUE(waitUntil([&timedOut] { return timedOut == 1; }, 2000));
    EXPECT_LT(clock.elapsed(), 700) << "the GUI thread went on meanwhile";
    waitUntil([] { return false; }, 1000); // the read answers now, too late
    EXPECT_EQ(applied, 0);
    EXPECT_EQ(timedOut, 1);
}

TEST(TimeLimited, ReadThatAnswersInTimeIsAppliedOnce)
{
    QObject owner;
    int applied = 0, timedOut = 0;
    runWithTimeLimit(&owner, 2000, [] { return 7; }, [&applied](int value) { applied += value; }, [&timedOut] { ++timedOut; });
    ASSERT_TRUE(waitUntil([&applied] { return applied == 7; }, 2000));
    waitUntil([] { return false; }, 2300);
    EXPECT_EQ(timedOut, 0);
    EXPECT_EQ(applied, 7);
}

} // namespace
} // namespace orwick::test
