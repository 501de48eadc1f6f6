#pragma once
// deliverToGui: the one way work on another thread hands something to an object on the GUI
// thread. `deliver(receiver)` runs on the GUI thread, unless the receiver was destroyed first.
// It may be called from any thread and as often as a task has something to hand over (batches
// of a search, then its end); runInBackground is the one-result form built on it.
//
// The guard must be made on the GUI thread, where the receiver lives, before the work starts.

#include <QCoreApplication>
#include <QMetaObject>
#include <QPointer>

namespace orwick {

template <class Receiver, class Deliver>
void deliverToGui(QPointer<Receiver> receiver, Deliver deliver)
{
    // Posted to the application object, which outlives every receiver, and checked there, so a
    // receiver deleted meanwhile is never touched. Once the application is going, nothing is.
    QCoreApplication* application = QCoreApplication::instance();
    if (!application)
        return;
    QMetaObject::invokeMethod(
        application,
        [receiver = std::move(receiver), deliver = std::move(deliver)]() mutable {
            if (receiver)
                deliver(*receiver);
        },
        Qt::QueuedConnection);
}

} // namespace orwick
