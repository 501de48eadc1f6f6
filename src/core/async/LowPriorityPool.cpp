#include "async/LowPriorityPool.h"

#include "platform/ThreadPriority.h"

#include <QCoreApplication>
#include <QPointer>

namespace orwick {

QThreadPool& lowPriorityPool()
{
    // Owned by the application object, whose end waits for its tasks as it waits for the shared
    // pool's: no load is still running while the application goes.
    static QPointer<QThreadPool> pool;
    if (!pool) {
        pool = new QThreadPool(QCoreApplication::instance());
        pool->setMaxThreadCount(QThread::idealThreadCount());
    }
    return *pool;
}

void startLowPriority(std::function<void()> work)
{
    lowPriorityPool().start([work = std::move(work)] {
        lowerThisThreadsPriority();
        work();
    });
}

} // namespace orwick
