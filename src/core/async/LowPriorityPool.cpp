#include "async/LowPriorityPool.h"

#include "platform/ThreadPriority.h"

namespace orwick {

QThreadPool& lowPriorityPool()
{
    // Never destroyed: tasks may still finish while the application object goes.
    static QThreadPool* pool = [] {
        auto* made = new QThreadPool;
        made->setMaxThreadCount(QThread::idealThreadCount());
        return made;
    }();
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
