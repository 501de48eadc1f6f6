#include "search/SearchWalker.h"

#include "disktools/BuildJunk.h"
#include "disktools/WalkPool.h"
#include "files/FileItemReader.h"
#include "search/SearchRoots.h"

#include <QElapsedTimer>
#include <dirent.h>
#include <limits>
#include <memory>
#include <mutex>

namespace orwick {

const std::optional<EntryStat>& SearchCandidate::stat() const
{
    if (!m_statRead) {
        m_stat = statForWalk(m_fd, m_entry.name.constData());
        m_statRead = true;
    }
    return m_stat;
}

bool SearchCandidate::isFolder() const
{
    if (m_entry.type == DT_UNKNOWN)
        return stat() && stat()->isDirectory();
    return m_entry.type == DT_DIR;
}

bool SearchCandidate::isRegularFile() const
{
    if (m_entry.type == DT_REG)
        return true;
    if (m_entry.type != DT_UNKNOWN)
        return false;
    return stat() && stat()->isRegular();
}

namespace SearchWalker {

namespace {

// At most this many nested folders are held open by one recursion.
constexpr int kHeldDepth = 64;

class Walk {
public:
    Walk(const Options& options, const Test& test, const Sink& sink, const CancelFlag& cancel)
        : m_options(options), m_test(test), m_sink(sink), m_cancel(cancel),
          m_pool(options.threads > 0 ? options.threads : metadataWalkThreads()), m_closed(SearchRoots::closedMountPoints())
    {
        m_clock.start();
    }

    qint64 run()
    {
        for (const FilePath& root : m_options.roots) {
            // A root on a closed mount (a network share the user chose) is searched all the same.
            for (auto it = m_closed.begin(); it != m_closed.end();)
                it = FilePath::fromNative(*it).contains(root) ? m_closed.erase(it) : std::next(it);
        }
        for (const FilePath& root : m_options.roots) {
            auto handle = DirectoryHandle::open(root, FollowLinks::yes);
            if (!handle)
                continue;
            post(root, std::make_shared<DirectoryHandle>(std::move(*handle)), 0);
        }
        m_pool.wait();
        flush(true);
        return m_hits;
    }

private:
    void post(const FilePath& path, std::shared_ptr<DirectoryHandle> handle, int depth)
    {
        m_queued.fetch_add(1, std::memory_order_relaxed);
        m_pool.post([this, path, handle = std::move(handle), depth](int) {
            m_queued.fetch_sub(1, std::memory_order_relaxed);
            if (handle)
                walk(*handle, path, depth);
            else if (auto opened = DirectoryHandle::open(path, FollowLinks::no))
                walk(*opened, path, depth);
        });
    }

    bool enters(const DirEntry& entry, int folderFd, const FilePath& child) const
    {
        if (!m_options.recursive)
            return false;
        if (entry.name == ".git" || BuildJunk::isBuildFolder(entry.name, folderFd))
            return false;
        return m_closed.isEmpty() || !m_closed.contains(child.native());
    }

    void walk(const DirectoryHandle& folder, const FilePath& path, int depth)
    {
        std::vector<DirEntry> entries;
        folder.readEntries(entries, &m_cancel);
        std::vector<QByteArray> subfolders;
        std::vector<const DirEntry*> hits;
        for (const DirEntry& entry : entries) {
            if (stopped())
                return;
            if (!m_options.showHidden && entry.name.startsWith('.'))
                continue;
            const SearchCandidate candidate(folder.fd(), path, entry);
            if (m_test(candidate))
                hits.push_back(&entry);
            if (m_options.recursive && candidate.isFolder() && enters(entry, folder.fd(), path.child(QByteArrayView(entry.name))))
                subfolders.push_back(entry.name);
        }
        if (!hits.empty())
            deliver(folder, path, hits);
        else if (m_pendingCount.load(std::memory_order_relaxed) > 0)
            flush(false); // hits found elsewhere a while ago still go out on time
        for (const QByteArray& name : subfolders) {
            if (stopped())
                return;
            const FilePath child = path.child(QByteArrayView(name));
            // Keep every worker fed: a folder goes to the queue while it runs short, else it is
            // walked here at once (the open handle then needs no second path lookup). A very
            // deep tree goes to the queue too, so the walk never holds too many folders open.
            if (m_queued.load(std::memory_order_relaxed) < 2 * m_pool.workerCount() || (depth + 1) % kHeldDepth == 0) {
                post(child, nullptr, depth + 1);
            } else if (auto opened = DirectoryHandle::openChild(folder.fd(), name.constData())) {
                walk(*opened, child, depth + 1);
            }
        }
    }

    bool stopped() const { return m_full.load(std::memory_order_relaxed) || m_cancel.isCancelled(); }

    void deliver(const DirectoryHandle& folder, const FilePath& path, const std::vector<const DirEntry*>& hits)
    {
        SearchBatch found;
        if (m_options.makeItems) {
            const FileItemReader reader(path, folder.fd());
            for (const DirEntry* entry : hits) {
                FileItem item = reader.read(*entry);
                found.paths.append(item.url);
                found.items.append(std::move(item));
            }
        } else {
            for (const DirEntry* entry : hits)
                found.paths.append(path.child(QByteArrayView(entry->name)));
        }
        {
            std::lock_guard lock(m_pendingMutex);
            if (m_options.limit > 0 && m_hits + found.paths.size() >= m_options.limit) {
                const qsizetype room = std::max<qsizetype>(0, m_options.limit - m_hits);
                found.paths.resize(room);
                if (!found.items.isEmpty())
                    found.items.resize(room);
                m_full.store(true, std::memory_order_relaxed);
            }
            m_pending.paths.append(found.paths);
            m_pending.items.append(found.items);
            m_hits += found.paths.size();
            m_pendingCount.store(m_pending.paths.size(), std::memory_order_relaxed);
        }
        flush(false);
    }

    void flush(bool last)
    {
        if (!last && m_clock.elapsed() - m_lastFlush.load(std::memory_order_relaxed) < m_options.batchIntervalMs)
            return;
        std::lock_guard sinkLock(m_sinkMutex);
        SearchBatch batch;
        {
            std::lock_guard lock(m_pendingMutex);
            if (m_pending.paths.isEmpty())
                return;
            batch = std::exchange(m_pending, {});
            m_pendingCount.store(0, std::memory_order_relaxed);
            m_lastFlush.store(m_clock.elapsed(), std::memory_order_relaxed);
        }
        if (!m_cancel.isCancelled())
            m_sink(std::move(batch));
    }

    const Options& m_options;
    const Test& m_test;
    const Sink& m_sink;
    const CancelFlag& m_cancel;
    WalkPool m_pool;
    QSet<QByteArray> m_closed;
    std::atomic<int> m_queued{0};
    std::mutex m_pendingMutex;
    std::mutex m_sinkMutex;
    SearchBatch m_pending;
    QElapsedTimer m_clock; // started once; only read afterwards, from any thread
    // The first hits go out as soon as they are found; later ones at most once per interval.
    std::atomic<qint64> m_lastFlush{std::numeric_limits<qint64>::min() / 2};
    std::atomic<qsizetype> m_pendingCount{0};
    qint64 m_hits = 0;
    std::atomic<bool> m_full{false}; // the limit is reached: every worker stops
};

} // namespace

qint64 run(const Options& options, const Test& test, const Sink& sink, const CancelFlag& cancel)
{
    return Walk(options, test, sink, cancel).run();
}

} // namespace SearchWalker

} // namespace orwick
