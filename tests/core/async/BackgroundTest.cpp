// Handing work's results to the GUI thread, and the low-priority pool for glance work.

#include "async/Background.h"
#include "async/GuiDelivery.h"
#include "async/LowPriorityPool.h"
#include "support/TestMain.h"

#include <QPointer>
#include <QThread>
#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <optional>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

using namespace orwick;
using orwick::test::waitUntil;

namespace {

int thisThreadsNiceness()
{
    errno = 0;
    return ::getpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()));
}

struct Ran {
    int niceness = 0;
    bool onGuiThread = true;
};

} // namespace

TEST(BackgroundTest, GlanceWorkRunsNicedAndItsResultArrivesOnTheGuiThread)
{
    QObject receiver;
    std::optional<Ran> delivered;
    bool appliedOnGuiThread = false;
    runInBackground(
        &receiver, [] { return Ran{thisThreadsNiceness(), QThread::currentThread() == qApp->thread()}; },
        [&](Ran ran) {
            appliedOnGuiThread = QThread::currentThread() == qApp->thread();
            delivered = ran;
        },
        WorkPriority::low);
    ASSERT_TRUE(waitUntil([&] { return delivered.has_value(); }));
    EXPECT_TRUE(appliedOnGuiThread);
    EXPECT_FALSE(delivered->onGuiThread);
    // Raising one's own niceness is always allowed; a process already nicer keeps its own.
    EXPECT_GE(delivered->niceness, std::max(10, ::getpriority(PRIO_PROCESS, 0)));
}

TEST(BackgroundTest, WorkTheUserWaitsForKeepsTheProcessesPriority)
{
    QObject receiver;
    std::optional<int> niceness;
    runInBackground(&receiver, [] { return thisThreadsNiceness(); }, [&](int value) { niceness = value; });
    ASSERT_TRUE(waitUntil([&] { return niceness.has_value(); }));
    EXPECT_EQ(*niceness, ::getpriority(PRIO_PROCESS, 0));
}

TEST(BackgroundTest, DeliveriesArriveInOrderAndNoneReachesAReceiverThatWent)
{
    auto kept = std::make_unique<QObject>();
    auto gone = std::make_unique<QObject>();
    QPointer<QObject> keptGuard(kept.get());
    QPointer<QObject> goneGuard(gone.get());
    std::vector<int> seen;
    bool goneWasCalled = false;
    std::thread worker([&] {
        for (int i = 0; i < 100; ++i)
            deliverToGui(keptGuard, [&seen, i](QObject&) { seen.push_back(i); });
        deliverToGui(goneGuard, [&goneWasCalled](QObject&) { goneWasCalled = true; });
    });
    worker.join();
    gone.reset(); // before the GUI thread looks at what was posted
    ASSERT_TRUE(waitUntil([&] { return seen.size() == 100; }));
    QCoreApplication::processEvents();
    EXPECT_FALSE(goneWasCalled);
    for (int i = 0; i < 100; ++i)
        ASSERT_EQ(seen[size_t(i)], i);
}

TEST(BackgroundTest, AResultForAReceiverThatWentIsDropped)
{
    auto receiver = std::make_unique<QObject>();
    std::atomic<bool> release{false};
    std::atomic<bool> workDone{false};
    bool applied = false;
    runInBackground(
        receiver.get(),
        [&] {
            while (!release.load())
                std::this_thread::yield();
            workDone = true;
            return 1;
        },
        [&](int) { applied = true; }, WorkPriority::low);
    receiver.reset();
    release = true;
    ASSERT_TRUE(waitUntil([&] { return workDone.load(); }));
    lowPriorityPool().waitForDone();
    QCoreApplication::processEvents();
    EXPECT_FALSE(applied);
}
