#pragma once
// WalkPool: a small, bounded set of threads for one disk walk. Tasks may post further tasks
// (the top levels of a tree fan out); wait() returns when every task has run. The calling
// thread works too, so a pool of N uses N threads in all. Each task learns which worker runs
// it, so that a walker can keep per-worker results without locks.

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

namespace orwick {

class WalkPool {
public:
    using Task = std::function<void(int worker)>;

    // `threads` 0 means one per core.
    explicit WalkPool(int threads = 0);

    int workerCount() const { return m_threads; }
    // Safe from any task.
    void post(Task task);
    // Runs tasks until none is queued or running. Call once, from the owning thread.
    void wait();

private:
    void work(int worker);

    int m_threads;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Task> m_queue;
    int m_running = 0;
};

// One per core, at least one.
int diskWalkThreads();
// For walks that only read metadata (all kernel time): one per core while the cores are free,
// one when the machine is already busy — a second thread then only adds contention (measured
// with bench/disktools.sh on a loaded two-core machine: one thread was 1.2 times faster).
int metadataWalkThreads();

} // namespace orwick
