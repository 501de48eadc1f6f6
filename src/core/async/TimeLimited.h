#pragma once
// runWithTimeLimit(): background work that may never answer — a read on a network mount whose
// server went away blocks in the kernel and can't be cancelled. The work runs on a thread of its
// own, never on the shared pool (where a hung read would hold up every other task), and its one
// result is applied on the GUI thread; when it has not answered within `limitMs`, `timedOut`
// runs there instead and the late result is dropped. The thread is left to end when the kernel
// lets it go. Nothing is delivered once `receiver` is gone; exactly one of `apply` and
// `timedOut` runs otherwise.

#include "async/DetachedThread.h"
#include "async/GuiDelivery.h"

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <atomic>
#include <memory>

namespace orwick {

template <class Work, class Apply, class TimedOut>
void runWithTimeLimit(QObject* receiver, int limitMs, Work work, Apply apply, TimedOut timedOut)
{
    auto settled = std::make_shared<bool>(false); // touched on the GUI thread only
    QPointer<QObject> guard(receiver);
    QTimer::singleShot(limitMs, receiver, [settled, timedOut = std::move(timedOut)]() mutable {
        if (!std::exchange(*settled, true))
            timedOut();
    });
    startDetached([guard, settled, work = std::move(work), apply = std::move(apply)]() mutable {
        auto result = std::make_shared<decltype(work())>(work());
        deliverToGui(guard, [settled, apply = std::move(apply), result](QObject&) mutable {
            if (!std::exchange(*settled, true))
                apply(std::move(*result));
        });
    });
}

} // namespace orwick
