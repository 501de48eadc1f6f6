#include "disktools/FolderDiffContents.h"

#include "disktools/FolderDiffPair.h"
#include "platform/UniqueFd.h"

#include <fcntl.h>

namespace orwick::FolderDiff {

ContentChecks::ContentChecks(const Side& left, std::vector<Entry>& entries, int leftRoot, int rightRoot, size_t pairs,
                             const CancelFlag& cancel)
    : m_left(left), m_entries(entries), m_leftRoot(leftRoot), m_rightRoot(rightRoot), m_cancel(cancel)
{
    m_pairs.reserve(pairs);
    m_runs.reserve(pairs);
}

QByteArrayView ContentChecks::folderOf(const SideItem& item) const
{
    const QByteArrayView path = m_left.path(item);
    return path.first(path.lastIndexOf('/') + 1); // with its "/", empty at the root
}

void ContentChecks::add(size_t entry, const SideItem& left)
{
    if (m_runStart < m_pairs.size() && folderOf(*m_pairs[m_runStart].left) != folderOf(left))
        publish();
    m_pairs.push_back({entry, &left});
}

void ContentChecks::publish()
{
    const quint32 nameStart = quint32(folderOf(*m_pairs[m_runStart].left).size());
    m_runs.push_back({m_runStart, m_pairs.size(), nameStart});
    m_runStart = m_pairs.size();
    m_published.store(m_runs.size(), std::memory_order_release);
    m_published.notify_all();
}

void ContentChecks::finish()
{
    if (m_runStart < m_pairs.size())
        publish();
    m_published.store(m_runs.size() | kFinished, std::memory_order_release);
    m_published.notify_all();
}

void ContentChecks::work()
{
    for (;;) {
        const size_t next = m_nextRun.fetch_add(1);
        for (;;) {
            const quint64 published = m_published.load(std::memory_order_acquire);
            if (next < (published & ~kFinished))
                break;
            if (published & kFinished)
                return;
            m_published.wait(published, std::memory_order_acquire); // until the merge publishes more
        }
        if (m_cancel.isCancelled())
            continue; // the merge still finishes; the runs left are skipped
        check(m_runs[next]);
    }
}

void ContentChecks::check(const Run& run)
{
    // A folder that can't be opened leaves -1: its pairs can't be read, so they are changed.
    UniqueFd leftFolder, rightFolder;
    if (run.nameStart > 0) {
        const QByteArray folder = m_left.path(*m_pairs[run.begin].left).first(run.nameStart - 1).toByteArray();
        constexpr int kFlags = O_PATH | O_DIRECTORY | O_CLOEXEC;
        leftFolder = UniqueFd(openat(m_leftRoot, folder.constData(), kFlags));
        rightFolder = UniqueFd(openat(m_rightRoot, folder.constData(), kFlags));
    }
    const int left = run.nameStart > 0 ? leftFolder.get() : m_leftRoot;
    const int right = run.nameStart > 0 ? rightFolder.get() : m_rightRoot;
    for (size_t i = run.begin; i < run.end; ++i) {
        if (m_cancel.isCancelled())
            return;
        const Pair& pair = m_pairs[i];
        const PairCheck check = comparePair(left, right, m_left.pathText(*pair.left) + run.nameStart, m_cancel);
        Entry& entry = m_entries[pair.entry];
        entry.leftSize = check.leftSize;
        entry.rightSize = check.rightSize;
        if (!check.same)
            entry.status = Status::changed;
    }
}

} // namespace orwick::FolderDiff
