#include "disktools/DuplicatesWalk.h"

#include "disktools/DiskNames.h"
#include "disktools/WalkPool.h"
#include "files/FileItemReader.h"
#include "platform/DirectoryReader.h"

#include <dirent.h>

namespace orwick::Duplicates {

namespace {

// Folders this close to the top are walked as separate tasks, so both cores share the tree.
constexpr int kParallelDepth = 2;

class Walker {
public:
    Walker(const Options& options, const CancelFlag& cancel, Progress* progress)
        : m_options(options), m_cancel(cancel), m_progress(progress), m_pool(options.threads)
    {
        m_result.parts.resize(size_t(m_pool.workerCount()));
    }

    WalkResult run(const FilePath& folder)
    {
        // The folder the user chose may itself be reached through a link; nothing below it is.
        auto root = DirectoryHandle::open(folder, FollowLinks::yes);
        if (!root)
            return {};
        auto self = statFd(root->fd());
        if (!self)
            return {};
        m_device = self->device;
        m_pool.post([this, folder, root = std::make_shared<DirectoryHandle>(std::move(*root))](int worker) {
            walkOpen(*root, folder, 0, worker);
        });
        m_pool.wait();
        m_result.files = std::min(m_count.load(), m_options.limit);
        m_result.isPartial = m_partial.load();
        return std::move(m_result);
    }

private:
    bool stopped() const { return m_stop.load(std::memory_order_relaxed) || m_cancel.isCancelled(); }

    void walkPath(const FilePath& path, int depth, int worker)
    {
        if (stopped())
            return;
        if (auto folder = DirectoryHandle::open(path, FollowLinks::no))
            walkOpen(*folder, path, depth, worker);
    }

    bool enters(QByteArrayView name) const { return !isSkippedFolder(name) && !isPackageFolderName(name); }

    void walkOpen(const DirectoryHandle& folder, const FilePath& path, int depth, int worker)
    {
        if (depth > 0) {
            // Another mounted file system inside the tree is not ours to search.
            auto self = statFd(folder.fd());
            if (!self || self->device != m_device)
                return;
        }
        std::vector<DirEntry> entries;
        folder.readEntries(entries, &m_cancel);
        QSet<QByteArray> hidden;
        for (const DirEntry& entry : entries)
            if (entry.name == ".hidden")
                hidden = readHiddenFile(folder.fd());

        WalkedPart& part = m_result.parts[size_t(worker)];
        qsizetype folderIndex = -1;
        std::vector<QByteArray> subfolders;
        for (const DirEntry& entry : entries) {
            if (stopped())
                return;
            if (entry.name.startsWith('.') || (!hidden.isEmpty() && hidden.contains(entry.name)))
                continue;
            if (entry.type == DT_DIR) {
                if (enters(entry.name))
                    subfolders.push_back(entry.name);
                continue;
            }
            if (entry.type != DT_REG && entry.type != DT_UNKNOWN)
                continue; // links, sockets, devices
            const auto st = statForWalk(folder.fd(), entry.name.constData());
            if (!st)
                continue;
            if (st->isDirectory()) {
                if (enters(entry.name))
                    subfolders.push_back(entry.name);
                continue;
            }
            if (!st->isRegular())
                continue;
            const qint64 seen = m_count.fetch_add(1, std::memory_order_relaxed) + 1;
            if (m_progress)
                m_progress->filesSeen.store(std::min(seen, m_options.limit), std::memory_order_relaxed);
            if (seen >= m_options.limit) {
                m_partial.store(true);
                m_stop.store(true);
                return;
            }
            if (st->size < m_options.minimumSize)
                continue;
            if (folderIndex < 0) {
                folderIndex = qsizetype(part.folders.size());
                part.folders.push_back(path);
            }
            part.files.push_back({quint32(folderIndex), entry.name, st->size, st->modifiedNs, st->device, st->inode});
        }
        for (const QByteArray& name : subfolders) {
            if (stopped())
                return;
            if (depth < kParallelDepth) {
                m_pool.post([this, child = path.child(QByteArrayView(name)), depth](int w) { walkPath(child, depth + 1, w); });
            } else if (auto child = DirectoryHandle::openChild(folder.fd(), name.constData())) {
                walkOpen(*child, path.child(QByteArrayView(name)), depth + 1, worker);
            }
        }
    }

    const Options& m_options;
    const CancelFlag& m_cancel;
    Progress* m_progress;
    WalkPool m_pool;
    quint64 m_device = 0;
    std::atomic<qint64> m_count{0};
    std::atomic<bool> m_stop{false};
    std::atomic<bool> m_partial{false};
    WalkResult m_result;
};

} // namespace

bool isSkippedFolder(QByteArrayView name)
{
    for (const char* skipped : skippedFolders)
        if (name == skipped)
            return true;
    return false;
}

WalkResult walkTree(const FilePath& folder, const Options& options, const CancelFlag& cancel, Progress* progress)
{
    return Walker(options, cancel, progress).run(folder);
}

} // namespace orwick::Duplicates
