#pragma once
// CopyProgress: a running job's progress, shared between the worker that does the file work
// and the interface that shows it. The worker adds bytes as they are written and checks
// isCancelled() between files and between chunks of a large file; the interface reads a
// Snapshot about ten times a second. Every member is safe to call from any thread.

#include <QByteArray>
#include <QMutex>
#include <QString>
#include <atomic>
#include <functional>
#include <optional>

namespace orwick {

class CopyProgress {
public:
    struct Snapshot {
        qint64 totalBytes = 0;
        qint64 finishedBytes = 0;
        qint64 currentFileBytes = 0;
        qint64 currentFileSize = 0;
        QString currentFile;
        bool isCancelled = false;
        // The totals count items, not bytes (a job that moves or changes items whole).
        bool countsItems = false;
        std::optional<QString> failure;

        // 0…1; 0 while the total is still unknown.
        double fraction() const { return totalBytes > 0 ? double(finishedBytes) / double(totalBytes) : 0.0; }
    };

    Snapshot snapshot() const;

    void setTotalBytes(qint64 bytes);
    // For a job done item by item: the total is `items`, and each addFinished(1) is one item.
    void setTotalItems(qint64 items);
    void addTotalBytes(qint64 bytes);
    // A new file starts; its name is shown as the current file.
    void startFile(QByteArrayView name, qint64 size);
    // `bytes` more of the current file are written (also counted in finishedBytes).
    void advance(qint64 bytes);
    // Counts bytes done without a current file (an item renamed whole, a skipped item).
    void addFinished(qint64 bytes);

    void cancel() { m_cancelled.store(true, std::memory_order_relaxed); }
    bool isCancelled() const { return m_cancelled.load(std::memory_order_relaxed); }

    void setFailure(const QString& message);

    // Called on the worker as each file starts, before its bytes are copied: for whatever
    // follows a copy file by file (a log, a test that changes the source meanwhile). Set it
    // before the work starts.
    void setFileObserver(std::function<void(QByteArrayView name)> observer) { m_fileObserver = std::move(observer); }

private:
    mutable QMutex m_lock;
    Snapshot m_state;
    QByteArray m_currentName; // made text only when read
    std::atomic<bool> m_cancelled{false};
    std::function<void(QByteArrayView)> m_fileObserver;
};

} // namespace orwick
