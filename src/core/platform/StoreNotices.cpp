#include "platform/StoreNotices.h"

#include <QMutex>
#include <QPointer>
#include <QSet>

namespace orwick {

namespace {

struct Shared {
    QMutex mutex;
    QStringList pending; // kept until a window shows them, so that a window closing first loses none
    QSet<QString> said;
    QPointer<QObject> context;
    std::function<void(const QString&)> show;
    bool flushQueued = false;
};

Shared& shared()
{
    static Shared state;
    return state;
}

// Shows the pending notices, on the context's thread; a window that took over meanwhile shows them itself.
void flush(QObject* queuedFor)
{
    Shared& state = shared();
    QMutexLocker lock(&state.mutex);
    if (state.context != queuedFor || !state.show)
        return;
    state.flushQueued = false;
    const QStringList messages = std::exchange(state.pending, {});
    const auto show = state.show;
    lock.unlock();
    for (const QString& message : messages)
        show(message);
}

// With the mutex held.
void queueFlush(Shared& state)
{
    if (!state.context || !state.show || state.flushQueued || state.pending.isEmpty())
        return;
    state.flushQueued = true;
    QObject* context = state.context.data();
    QMetaObject::invokeMethod(context, [context] { flush(context); }, Qt::QueuedConnection);
}

void deliverOrKeep(Shared& state, const QString& message)
{
    state.pending.append(message);
    queueFlush(state);
}

} // namespace

void StoreNotices::post(const QString& message)
{
    Shared& state = shared();
    QMutexLocker lock(&state.mutex);
    deliverOrKeep(state, message);
}

bool StoreNotices::postOnce(const QString& key, const QString& message)
{
    Shared& state = shared();
    QMutexLocker lock(&state.mutex);
    if (state.said.contains(key))
        return false;
    state.said.insert(key);
    deliverOrKeep(state, message);
    return true;
}

void StoreNotices::clearOnce(const QString& key)
{
    Shared& state = shared();
    QMutexLocker lock(&state.mutex);
    state.said.remove(key);
}

void StoreNotices::deliverTo(QObject* context, std::function<void(const QString&)> show)
{
    Shared& state = shared();
    QMutexLocker lock(&state.mutex);
    state.context = context;
    state.show = std::move(show);
    state.flushQueued = false; // a flush queued for an earlier window shows nothing now
    queueFlush(state);
}

QStringList StoreNotices::takePending()
{
    Shared& state = shared();
    QMutexLocker lock(&state.mutex);
    return std::exchange(state.pending, {});
}

} // namespace orwick
