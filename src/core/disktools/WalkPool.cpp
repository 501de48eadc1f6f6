#include "disktools/WalkPool.h"

#include <QtGlobal>
#include <cstdlib>
#include <thread>
#include <vector>

namespace orwick {

int diskWalkThreads()
{
    // For measuring: ORWICK_WALK_THREADS=1 shows what the parallel walk gains.
    if (const int forced = qEnvironmentVariableIntValue("ORWICK_WALK_THREADS"); forced > 0)
        return std::min(forced, 64);
    const unsigned cores = std::thread::hardware_concurrency();
    return cores == 0 ? 1 : int(std::min(cores, 8u));
}

int metadataWalkThreads()
{
    const int cores = diskWalkThreads();
    if (qEnvironmentVariableIsSet("ORWICK_WALK_THREADS"))
        return cores;
    double load = 0;
    if (getloadavg(&load, 1) == 1 && load >= cores)
        return 1;
    return cores;
}

WalkPool::WalkPool(int threads) : m_threads(threads > 0 ? threads : diskWalkThreads()) {}

void WalkPool::post(Task task)
{
    {
        std::lock_guard lock(m_mutex);
        m_queue.push_back(std::move(task));
    }
    m_changed.notify_one();
}

void WalkPool::work(int worker)
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return !m_queue.empty() || m_running == 0; });
        if (m_queue.empty())
            break; // nothing queued and nothing running: no task can post more
        Task task = std::move(m_queue.front());
        m_queue.pop_front();
        ++m_running;
        lock.unlock();
        task(worker);
        lock.lock();
        --m_running;
        if (m_running == 0 && m_queue.empty())
            m_changed.notify_all();
    }
}

void WalkPool::wait()
{
    std::vector<std::thread> helpers;
    for (int i = 1; i < m_threads; ++i)
        helpers.emplace_back([this, i] { work(i); });
    work(0);
    for (std::thread& helper : helpers)
        helper.join();
}

} // namespace orwick
