#pragma once
// lowPriorityPool(): the thread pool for glance work (the preview panel's loads), whose threads
// run niced (platform/ThreadPriority.h). Work that a user waits for (a folder's listing, a copy)
// stays on the shared pool.

#include <QThreadPool>

#include <functional>

namespace orwick {

// Runs `work` on a thread of the low-priority pool. From the GUI thread. The pool belongs to the
// application object, whose end waits for the tasks still running.
void startLowPriority(std::function<void()> work);

// The pool itself, for tests and for waiting until it is idle.
QThreadPool& lowPriorityPool();

} // namespace orwick
