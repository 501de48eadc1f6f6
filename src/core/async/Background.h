#pragma once
// Background work with one result delivered back to the GUI thread.
//
// runInBackground() runs `work` on the shared thread pool (or, for glance work such as a preview,
// on the low-priority pool) and calls `apply(result)` on the GUI thread, unless `receiver` was
// destroyed first. TaskSlot keeps at most one task per purpose:
// starting a new one cancels the old, and a result whose generation is not the newest is dropped.

#include "async/GuiDelivery.h"
#include "async/LowPriorityPool.h"
#include "base/CancelFlag.h"

#include <QObject>
#include <QPointer>
#include <QThreadPool>
#include <functional>

namespace orwick {

enum class WorkPriority {
    normal, // the shared pool: work the user waits for
    low     // the low-priority pool: work the user glances at (LowPriorityPool.h)
};

template <class Work, class Apply>
void runInBackground(QObject* receiver, Work work, Apply apply, WorkPriority priority = WorkPriority::normal)
{
    QPointer<QObject> guard(receiver);
    auto task = [guard, work = std::move(work), apply = std::move(apply)]() mutable {
        auto result = std::make_shared<decltype(work())>(work());
        deliverToGui(guard, [apply = std::move(apply), result](QObject&) mutable { apply(std::move(*result)); });
    };
    if (priority == WorkPriority::low)
        startLowPriority(std::move(task));
    else
        QThreadPool::globalInstance()->start(std::move(task));
}

// One running task of a kind per owner.
class TaskSlot {
public:
    ~TaskSlot() { cancel(); }

    // Cancels the running task and returns the token and generation of the new one.
    struct Ticket {
        CancelToken token;
        quint64 generation;
    };
    Ticket start()
    {
        cancel();
        m_token = makeCancelToken();
        return {m_token, ++m_generation};
    }
    void cancel()
    {
        if (m_token)
            m_token->cancel();
        m_token.reset();
    }
    // True while `ticket` is the newest task and was not cancelled.
    bool isCurrent(const Ticket& ticket) const
    {
        return ticket.generation == m_generation && m_token == ticket.token && !ticket.token->isCancelled();
    }
    // Marks the task as done so that isRunning() turns false.
    void finish(const Ticket& ticket)
    {
        if (isCurrent(ticket))
            m_token.reset();
    }
    bool isRunning() const { return m_token != nullptr; }

private:
    CancelToken m_token;
    quint64 m_generation = 0;
};

} // namespace orwick
