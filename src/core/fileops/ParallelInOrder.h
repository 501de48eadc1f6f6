#pragma once
// runInOrder: the batch transforms' workers. produce(i) runs for each index on up to `workers`
// threads at once (a pool of the call's own, so a long job never starves the shared pool), and
// consume(i, result) runs on the calling thread, in index order, as each result's turn comes.
// At most `ahead` results wait for their turn, so memory stays bounded however many items
// there are and however slow one of them is.
//
// `stopping()` is asked on the calling thread between results and while it waits (at least
// every 50 ms); once it answers true no further index starts, and the indices already started
// are still produced and consumed, so what was consumed is always the first n of them. Returns
// n. Safe to call from any thread (a job's worker); produce must be safe to run concurrently.

#include <QMutex>
#include <QThreadPool>
#include <QWaitCondition>
#include <functional>
#include <map>

namespace orwick {

template <class T, class Produce, class Consume>
qsizetype runInOrder(qsizetype count, int workers, qsizetype ahead, Produce produce, Consume consume,
                     const std::function<bool()>& stopping)
{
    struct Shared {
        QMutex lock;
        QWaitCondition changed;
        qsizetype next = 0;     // the next index to start
        qsizetype consumed = 0; // indices below it are consumed
        bool stopped = false;
        std::map<qsizetype, T> ready;
    } shared;
    ahead = std::max<qsizetype>(ahead, workers);

    QThreadPool pool;
    pool.setMaxThreadCount(std::max(1, workers));
    pool.setExpiryTimeout(-1);
    const int started = int(std::min<qsizetype>(count, std::max(1, workers)));
    for (int w = 0; w < started; ++w) {
        pool.start([&shared, &produce, count, ahead] {
            QMutexLocker locker(&shared.lock);
            for (;;) {
                while (!shared.stopped && shared.next < count && shared.next >= shared.consumed + ahead)
                    shared.changed.wait(&shared.lock);
                if (shared.stopped || shared.next >= count)
                    return;
                const qsizetype index = shared.next++;
                locker.unlock();
                T result = produce(index);
                locker.relock();
                shared.ready.emplace(index, std::move(result));
                shared.changed.wakeAll();
            }
        });
    }

    QMutexLocker locker(&shared.lock);
    for (;;) {
        if (const auto found = shared.ready.find(shared.consumed); found != shared.ready.end()) {
            T result = std::move(found->second);
            shared.ready.erase(found);
            const qsizetype index = shared.consumed;
            locker.unlock();
            consume(index, std::move(result));
            locker.relock();
            ++shared.consumed;
            shared.changed.wakeAll();
        } else if (shared.consumed == shared.next && (shared.stopped || shared.next >= count)) {
            break;
        } else {
            shared.changed.wait(&shared.lock, 50);
        }
        if (!shared.stopped && stopping && stopping()) {
            shared.stopped = true;
            shared.changed.wakeAll();
        }
    }
    const qsizetype consumed = shared.consumed;
    locker.unlock();
    pool.waitForDone();
    return consumed;
}

} // namespace orwick
