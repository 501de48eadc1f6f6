// The end of the application while other threads still post to it.

#include "async/DetachedThread.h"

#include <QElapsedTimer>
#include <QProcess>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

using namespace orwick;

TEST(ApplicationEndTest, AProgramWhoseThreadsStillPostAsItEndsEndsCleanly)
{
    // Before posts were held off at the end, nearly every run of the probe crashed.
    for (int run = 0; run < 5; ++run) {
        QProcess probe;
        probe.start(QStringLiteral(ORWICK_POST_AT_END_PROBE), {});
        ASSERT_TRUE(probe.waitForFinished(20000)) << "run " << run << " did not end";
        EXPECT_EQ(probe.exitStatus(), QProcess::NormalExit) << "run " << run << " crashed";
        EXPECT_EQ(probe.exitCode(), 0) << "run " << run;
    }
}

TEST(ApplicationEndTest, WaitingForDetachedWorkWaitsUntilItEndsButNoLongerThanTheLimit)
{
    std::atomic<bool> release = false;
    startDetached([&release] {
        while (!release)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    });
    QElapsedTimer clock;
    clock.start();
    EXPECT_FALSE(waitForDetachedWork(50)); // still running: the limit ends the wait
    EXPECT_GE(clock.elapsed(), 45);
    release = true;
    EXPECT_TRUE(waitForDetachedWork(5000));
}
