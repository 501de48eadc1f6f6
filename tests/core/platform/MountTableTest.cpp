// The mount table kept between reads: a mount made or removed meanwhile is seen at the next read.

#include "platform/MountTable.h"
#include "support/ScratchMount.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

using namespace orwick;
using orwick::test::ScratchMount;

namespace {

bool listed(const QList<MountEntry>& table, const FilePath& point)
{
    return std::any_of(table.begin(), table.end(), [&](const MountEntry& mount) { return mount.point == point; });
}

// The table without the mounts other tests make in temporary folders and remove while this one
// runs (ctest runs tests side by side), except `ours`.
QList<MountEntry> steady(QList<MountEntry> table, const FilePath& ours = {})
{
    const QByteArray temporary = QFile::encodeName(QDir::tempPath()) + '/';
    table.removeIf([&](const MountEntry& mount) { return mount.point != ours && mount.point.native().startsWith(temporary); });
    return table;
}

} // namespace

TEST(MountTableTest, AMountMadeOrRemovedBetweenReadsIsSeenAtTheNext)
{
    const QList<MountEntry> before = readMountTable();
    ASSERT_FALSE(before.isEmpty());
    EXPECT_EQ(steady(readMountTable()), steady(before)); // nothing changed: the same table
    FilePath point;
    {
        ScratchMount disk("tmpfs", "size=1m");
        if (!disk.ok())
            GTEST_SKIP() << disk.why().toStdString();
        point = disk.root();
        const QList<MountEntry> during = readMountTable();
        EXPECT_FALSE(listed(before, point));
        ASSERT_TRUE(listed(during, point));
        EXPECT_EQ(mountHolding(point.child(QByteArrayView("x")), during)->type, QByteArray("tmpfs"));
        EXPECT_EQ(steady(readMountTable(), point), steady(during, point));
    }
    EXPECT_FALSE(listed(readMountTable(), point));
}

TEST(MountTableTest, ReadsFromManyThreadsAgree)
{
    const QList<MountEntry> expected = steady(readMountTable());
    std::vector<std::thread> threads;
    std::atomic<int> differing{0};
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 200; ++i)
                if (steady(readMountTable()) != expected)
                    ++differing;
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(differing.load(), 0);
}
