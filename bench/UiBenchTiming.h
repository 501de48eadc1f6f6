#pragma once
// What the window benchmarks (bench/ui_*.cpp) share to time the window: waiting for a state the
// event loop brings about, and the median of the runs they take.

#include <QCoreApplication>
#include <QElapsedTimer>
#include <algorithm>
#include <functional>
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

// The middle value (the upper one of an even count); 0 for none.
inline double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

} // namespace orwick
