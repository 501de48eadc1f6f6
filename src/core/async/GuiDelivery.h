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

// Keeps the application object from beginning its end while a thread posts to it; false once
// the end has begun, or when there is no application. Held only for the moment of a post.
class ApplicationHold {
public:
    ApplicationHold();
    ~ApplicationHold();
    ApplicationHold(const ApplicationHold&) = delete;
    ApplicationHold& operator=(const ApplicationHold&) = delete;
    explicit operator bool() const { return m_open; }

private:
    bool m_open;
};

template <class Receiver, class Deliver>
void deliverToGui(QPointer<Receiver> receiver, Deliver deliver)
{
    // Posted to the application object, which outlives every receiver, and checked there, so a
    // receiver deleted meanwhile is never touched. Once the application is going, nothing is:
    // a thread that finishes while it ends (a drive read, a hung server's answer) posts nowhere.
    const ApplicationHold hold;
    if (!hold)
        return;
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [receiver = std::move(receiver), deliver = std::move(deliver)]() mutable {
            if (receiver)
                deliver(*receiver);
        },
        Qt::QueuedConnection);
}

} // namespace orwick
