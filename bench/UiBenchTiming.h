#pragma once
// What the benchmarks share to time their runs: waiting for a state the event loop brings about
// (polling, or sleeping between events as the window's own loop does), and the mean and median of
// the runs they take.

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>
#include <functional>
#include <numeric>
#include <vector>

namespace orwick {

// Runs the event loop, in slices of `sliceMs`, until `done` holds (true) or `timeoutMs` has
// passed (false). `waitFor([] { return false; }, ms)` lets background work settle for `ms`.
inline bool waitFor(const std::function<bool()>& done, int timeoutMs = 60000, int sliceMs = 1)
{
    QElapsedTimer timer;
    timer.start();
    while (!done()) {
        if (timer.elapsed() > timeoutMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, sliceMs);
    }
    return true;
}

// Runs the event loop until `done` holds (true) or `timeoutMs` has passed (false), sleeping while
// there is nothing to do as the window's own loop does, and looking after every event, so a time
// read right after it is the moment that event brought. A wait that spun through processEvents()
// would keep one of the machine's cores from the work being timed.
inline bool waitIdly(const std::function<bool()>& done, int timeoutMs = 60000)
{
    QTimer ticker; // wakes the wait now and then, so the limit is seen even when nothing happens
    ticker.start(20);
    QElapsedTimer timer;
    timer.start();
    while (!done()) {
        if (timer.elapsed() > timeoutMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    return true;
}

inline double milliseconds(const QElapsedTimer& clock) { return double(clock.nsecsElapsed()) / 1e6; }

inline double mean(const std::vector<double>& values)
{
    return values.empty() ? 0 : std::accumulate(values.begin(), values.end(), 0.0) / double(values.size());
}

// The middle value (the mean of the two middle ones for an even count); 0 for none.
inline double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    if (values.empty())
        return 0;
    const size_t half = values.size() / 2;
    return values.size() % 2 ? values[half] : (values[half - 1] + values[half]) / 2;
}

} // namespace orwick
