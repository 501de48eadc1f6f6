#include "disktools/FolderSizes.h"

#include "async/GuiDelivery.h"
#include "disktools/SpaceScan.h"
#include "disktools/WalkPool.h"
#include "platform/DirectoryReader.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QThreadPool>
#include <mutex>

namespace orwick {

namespace {
constexpr qint64 kBatchMs = 100;
constexpr qint64 kUnreadable = -1; // in a batch: the folder itself could not be opened

// The folder's size; kUnreadable when it can't be opened (the walk would call it empty);
// nothing when cancelled.
std::optional<qint64> measureOne(const FilePath& folder, const CancelFlag& cancel)
{
    if (!DirectoryHandle::open(folder, FollowLinks::yes))
        return kUnreadable;
    return SpaceScan::measure(folder, cancel);
}
} // namespace

FolderSizes::FolderSizes(QObject* parent) : QObject(parent) {}

std::optional<qint64> FolderSizes::size(const FilePath& url) const
{
    const auto found = m_sizes->constFind(url);
    return found == m_sizes->constEnd() ? std::nullopt : std::optional<qint64>(*found);
}

void FolderSizes::clear()
{
    m_task.cancel();
    ++m_generation;
    const bool hadAny = !isEmpty();
    m_folder = {};
    m_sizes = std::make_shared<const Sizes>();
    m_pending.clear();
    m_unreadable.clear();
    if (hadAny)
        Q_EMIT changed();
}

void FolderSizes::measure(const FilePath& folder, const QList<FilePath>& subfolders)
{
    if (folder != m_folder)
        clear();
    const TaskSlot::Ticket ticket = m_task.start();
    const quint64 generation = ++m_generation;
    m_folder = folder;
    m_pending = QSet<FilePath>(subfolders.begin(), subfolders.end());
    m_unreadable -= m_pending;
    Q_EMIT changed();

    QPointer<FolderSizes> guard(this);
    // The sub-folders are measured on a walk pool (both cores while the machine is free); their
    // sizes are posted in batches as they fill, and the last batch says the walk is over.
    QThreadPool::globalInstance()->start([guard, generation, subfolders, token = ticket.token] {
        std::mutex lock;
        std::vector<std::pair<FilePath, qint64>> batch;
        QElapsedTimer sinceSent;
        sinceSent.start();
        auto send = [&](bool last) { // under `lock`, or after the pool is done
            deliverToGui(guard, [generation, batch = std::move(batch), last](FolderSizes& sizes) { sizes.apply(generation, batch, last); });
            batch = {};
            sinceSent.restart();
        };
        WalkPool pool(metadataWalkThreads());
        for (const FilePath& sub : subfolders) {
            pool.post([&, sub](int) {
                const std::optional<qint64> bytes = token->isCancelled() ? std::nullopt : measureOne(sub, *token);
                if (!bytes)
                    return; // cancelled: nothing more is wanted
                const std::lock_guard<std::mutex> locked(lock);
                batch.emplace_back(sub, *bytes);
                if (sinceSent.elapsed() >= kBatchMs)
                    send(false);
            });
        }
        pool.wait();
        if (!token->isCancelled())
            send(true);
    });
}

void FolderSizes::apply(quint64 generation, const std::vector<std::pair<FilePath, qint64>>& batch, bool last)
{
    if (generation != m_generation)
        return; // cleared or started again meanwhile
    Sizes sizes = *m_sizes;
    for (const auto& [url, bytes] : batch) {
        if (bytes == kUnreadable) {
            sizes.remove(url);
            m_unreadable.insert(url);
        } else {
            sizes.insert(url, bytes);
        }
        m_pending.remove(url);
    }
    m_sizes = std::make_shared<const Sizes>(std::move(sizes));
    if (last) {
        m_pending.clear();
        m_task.cancel(); // done: nothing is running any more
    }
    Q_EMIT changed();
    if (last)
        Q_EMIT finished();
}

} // namespace orwick

#include "moc_FolderSizes.cpp"
