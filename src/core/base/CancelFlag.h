#pragma once
// CancelFlag: the one stop signal of a background task. The owner sets it; the worker polls it
// (once per entry, or between chunks of a long read) and returns early, quietly.

#include <atomic>
#include <memory>

namespace orwick {

class CancelFlag {
public:
    void cancel() { m_cancelled.store(true, std::memory_order_relaxed); }
    bool isCancelled() const { return m_cancelled.load(std::memory_order_relaxed); }

private:
    std::atomic<bool> m_cancelled{false};
};

using CancelToken = std::shared_ptr<CancelFlag>;

inline CancelToken makeCancelToken() { return std::make_shared<CancelFlag>(); }

} // namespace orwick
