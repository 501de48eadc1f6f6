#pragma once
// Helpers for tests that wait on the GUI thread's event loop.

#include <QCoreApplication>
#include <QElapsedTimer>
#include <functional>

namespace orwick::test {

// Runs the event loop until `done` holds or `timeoutMs` passes; returns whether it held.
inline bool waitUntil(const std::function<bool()>& done, int timeoutMs = 5000)
{
    QElapsedTimer timer;
    timer.start();
    while (!done()) {
        if (timer.elapsed() > timeoutMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return true;
}

} // namespace orwick::test
