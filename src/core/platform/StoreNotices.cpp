#include "platform/StoreNotices.h"

#include <QMutex>
#include <QPointer>
#include <QSet>

namespace orwick {

namespace {

struct Shared {
    QMutex mutex;
    QStringList pending;
    QSet<QString> said;
    QPointer<QObject> context;
    std::function<void(const QString&)> show;
};

Shared& shared()
{
    static Shared state;
    return state;
}

// With the mutex held.
void deliverOrKeep(Shared& state, const QString& message)
{
    if (state.context && state.show) {
        QMetaObject::invokeMethod(state.context.data(), [show = state.show, message] { show(message); },
                                  Qt::QueuedConnection);
        return;
    }
    state.pending.append(message);
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
    for (const QString& message : std::exchange(state.pending, {}))
        deliverOrKeep(state, message);
}

QStringList StoreNotices::takePending()
{
    Shared& state = shared();
    QMutexLocker lock(&state.mutex);
    return std::exchange(state.pending, {});
}

} // namespace orwick
