#include "async/DetachedThread.h"

#include <QCoreApplication>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace orwick {

namespace {

struct Running {
    std::mutex lock;
    std::condition_variable ended;
    int count = 0;
};

// Never destroyed: a thread left behind ends after the program's statics are gone.
Running& running()
{
    static Running* const running = new Running;
    return *running;
}

void waitAtApplicationEnd() { waitForDetachedWork(kDetachedGraceMs); }

void registerWait() { qAddPostRoutine(waitAtApplicationEnd); }

} // namespace

Q_COREAPP_STARTUP_FUNCTION(registerWait)

void startDetached(std::function<void()> work)
{
    {
        std::lock_guard locked(running().lock);
        ++running().count;
    }
    std::thread([work = std::move(work)]() mutable {
        work();
        work = nullptr; // what it holds goes while the application's end may still wait for it
        std::lock_guard locked(running().lock);
        --running().count;
        running().ended.notify_all();
    }).detach();
}

bool waitForDetachedWork(int limitMs)
{
    std::unique_lock locked(running().lock);
    return running().ended.wait_for(locked, std::chrono::milliseconds(limitMs), [] { return running().count == 0; });
}

} // namespace orwick
