#include "disktools/FolderDiff.h"

#include "disktools/FolderDiffPair.h"
#include "disktools/FolderDiffWalk.h"
#include "disktools/WalkPool.h"
#include "platform/DirectoryReader.h"
#include "platform/UniqueFd.h"

#include <QHash>
#include <QSet>
#include <atomic>
#include <cstdlib>
#include <fcntl.h>
#include <sched.h>
#include <sys/stat.h>
#include <thread>

namespace orwick::FolderDiff {

namespace {

using Kind = SideItem::Kind;

QByteArrayView parentOf(QByteArrayView path)
{
    const qsizetype slash = path.lastIndexOf('/');
    return slash < 0 ? QByteArrayView() : path.first(slash);
}

// A key for the fold tables without copying the bytes (the tables copy it when they keep it).
QByteArray borrowed(QByteArrayView bytes) { return QByteArray::fromRawData(bytes.data(), bytes.size()); }

// Builds the entries from two sorted sides; byte comparisons are queued, not run.
class Merger {
public:
    struct Pending {
        size_t entry;
        const SideItem* left;
        const SideItem* right;
    };

    // `leftRoot` and `rightRoot`: open descriptors of the two roots, for the sizes of files
    // listed alone on their side.
    Merger(const Side& left, const Side& right, int leftRoot, int rightRoot)
        : m_left(left), m_right(right), m_leftRoot(leftRoot), m_rightRoot(rightRoot)
    {
    }

    void run(const CancelFlag& cancel)
    {
        size_t l = 0, r = 0;
        const auto& a = m_left.items;
        const auto& b = m_right.items;
        // At most one entry per item: the entries are made where they stay.
        entries.reserve(a.size() + b.size());
        while ((l < a.size() || r < b.size()) && !cancel.isCancelled()) {
            const int order = l >= a.size() ? 1 : r >= b.size() ? -1 : comparePaths(m_left.path(a[l]), m_right.path(b[r]));
            if (order < 0)
                oneSided(m_left, a[l++], Status::onlyLeft);
            else if (order > 0)
                oneSided(m_right, b[r++], Status::onlyRight);
            else
                pair(a[l++], b[r++]);
        }
    }

    std::vector<Entry> entries;
    std::vector<Pending> pending;

private:
    // True (and counted) when `item` lies in a folder already listed whole, or left out.
    bool folded(const Side& side, const SideItem& item)
    {
        if (m_skipped.isEmpty() && m_foldedInto.isEmpty())
            return false; // the common case: nothing to fold into, no path to cut
        const QByteArrayView path = side.path(item);
        const QByteArrayView parent = parentOf(path);
        if (parent.isEmpty())
            return false;
        if (m_skipped.contains(borrowed(parent))) {
            if (item.kind == Kind::folder)
                m_skipped.insert(path.toByteArray());
            return true;
        }
        const auto holder = m_foldedInto.constFind(borrowed(parent));
        if (holder == m_foldedInto.cend())
            return false;
        if (item.kind == Kind::folder)
            m_foldedInto.insert(path.toByteArray(), *holder);
        else
            ++entries[*holder].files;
        return true;
    }

    void oneSided(const Side& side, const SideItem& item, Status status)
    {
        if (folded(side, item))
            return;
        if (item.unreadable) {
            m_skipped.insert(side.path(item).toByteArray());
            return;
        }
        Entry entry;
        entry.path = side.path(item).toByteArray();
        entry.status = status;
        entry.isFolder = item.kind == Kind::folder;
        if (!entry.isFolder)
            (status == Status::onlyLeft ? entry.leftSize : entry.rightSize) =
                sizeOf(side, item, status == Status::onlyLeft ? m_leftRoot : m_rightRoot);
        if (entry.isFolder)
            m_foldedInto.insert(entry.path, entries.size());
        entries.push_back(std::move(entry));
    }

    void pair(const SideItem& left, const SideItem& right)
    {
        // A path whose folder is only on one side can't be on both, so only the skip list applies.
        if (folded(m_left, left))
            return;
        if (left.unreadable || right.unreadable) {
            m_skipped.insert(m_left.path(left).toByteArray());
            return;
        }
        if (left.kind == Kind::folder && right.kind == Kind::folder)
            return; // a folder pair is not a difference; what it holds is compared
        Entry entry;
        entry.path = m_left.path(left).toByteArray();
        entry.isFolder = left.kind == Kind::folder;
        if (left.kind == Kind::file && right.kind == Kind::file) {
            entry.status = Status::same; // until comparePair says otherwise (it reads the sizes too)
            pending.push_back({entries.size(), &left, &right});
            entries.push_back(std::move(entry));
            return;
        }
        if (left.kind != Kind::folder)
            entry.leftSize = sizeOf(m_left, left, m_leftRoot);
        if (right.kind != Kind::folder)
            entry.rightSize = sizeOf(m_right, right, m_rightRoot);
        if (left.kind != right.kind) {
            entry.status = Status::changed;
            // The one folder of the pair is listed in this entry, with what it holds.
            m_foldedInto.insert(entry.path, entries.size());
        } else if (left.kind == Kind::link) {
            entry.status = m_left.linkTarget(left) == m_right.linkTarget(right) ? Status::same : Status::changed;
        } else {
            // Devices, sockets, pipes: not read.
            entry.status = left.size == right.size ? Status::same : Status::changed;
        }
        entries.push_back(std::move(entry));
    }

    // A file's size: from the walk, else read now (regular files of a pair are read by comparePair).
    static std::optional<qint64> sizeOf(const Side& side, const SideItem& item, int root)
    {
        if (item.size >= 0)
            return item.size;
        if (item.kind == Kind::file && root >= 0) {
            struct stat st {};
            if (fstatat(root, side.pathText(item), &st, AT_SYMLINK_NOFOLLOW) == 0)
                return st.st_size;
        }
        return std::nullopt;
    }

    const Side& m_left;
    const Side& m_right;
    int m_leftRoot;
    int m_rightRoot;
    QHash<QByteArray, size_t> m_foldedInto; // one-sided folders → the entry that lists them
    QSet<QByteArray> m_skipped;             // unreadable folders and what lies in them
};

// The byte comparisons, shared among the cores a folder at a time: the pending pairs come in
// path order, so each folder's files are together; its two sides are opened once and each
// file by its name in them, sparing the kernel a walk down the whole path per file.
void compareContents(Merger& merger, const Side& leftSide, int leftRoot, int rightRoot, const CancelFlag& cancel)
{
    struct FolderRun {
        size_t begin;
        size_t end;
        qsizetype nameStart; // where the names begin in these paths
    };
    std::vector<FolderRun> runs;
    const auto& pending = merger.pending;
    for (size_t i = 0; i < pending.size();) {
        const QByteArrayView path = leftSide.path(*pending[i].left);
        const qsizetype nameStart = path.lastIndexOf('/') + 1;
        const QByteArrayView folder = path.first(nameStart);
        size_t end = i + 1;
        for (; end < pending.size(); ++end) {
            const QByteArrayView next = leftSide.path(*pending[end].left);
            if (!next.startsWith(folder) || next.sliced(nameStart).contains('/'))
                break;
        }
        runs.push_back({i, end, nameStart});
        i = end;
    }
    std::atomic<size_t> nextRun{0};
    auto work = [&] {
        for (size_t r; (r = nextRun.fetch_add(1)) < runs.size();) {
            const FolderRun& run = runs[r];
            const QByteArrayView first = leftSide.path(*pending[run.begin].left);
            // A folder that can't be opened leaves -1: its pairs can't be read, so they are changed.
            UniqueFd leftFolder, rightFolder;
            if (run.nameStart > 0) {
                const QByteArray folder = first.first(run.nameStart - 1).toByteArray();
                constexpr int kFlags = O_PATH | O_DIRECTORY | O_CLOEXEC;
                leftFolder = UniqueFd(openat(leftRoot, folder.constData(), kFlags));
                rightFolder = UniqueFd(openat(rightRoot, folder.constData(), kFlags));
            }
            const int left = run.nameStart > 0 ? leftFolder.get() : leftRoot;
            const int right = run.nameStart > 0 ? rightFolder.get() : rightRoot;
            for (size_t i = run.begin; i < run.end; ++i) {
                if (cancel.isCancelled())
                    return;
                const auto& job = pending[i];
                const PairCheck check = comparePair(left, right, leftSide.pathText(*job.left) + run.nameStart, cancel);
                Entry& entry = merger.entries[job.entry];
                entry.leftSize = check.leftSize;
                entry.rightSize = check.rightSize;
                if (!check.same)
                    entry.status = Status::changed;
            }
        }
    };
    // Threads of their own, each with its own table of descriptors: every pair is two opens and
    // two closes, and threads sharing one table take turns at its lock for each (measured: 2% of
    // the comparison spinning there on two cores). The roots' descriptors come along in the copy.
    std::vector<std::thread> workers;
    const int count = std::min<size_t>(diskWalkThreads(), runs.size());
    for (int w = 0; w < count; ++w) {
        workers.emplace_back([&work] {
            unshare(CLONE_FILES); // where it can't, the shared table only costs some time
            work();
        });
    }
    for (std::thread& worker : workers)
        worker.join();
}

} // namespace

QString rawValue(Status status)
{
    switch (status) {
    case Status::onlyLeft: return QStringLiteral("onlyLeft");
    case Status::onlyRight: return QStringLiteral("onlyRight");
    case Status::changed: return QStringLiteral("changed");
    case Status::same: return QStringLiteral("same");
    }
    return {};
}

qint64 Result::count(Status status) const
{
    return std::count_if(entries.begin(), entries.end(), [status](const Entry& e) { return e.status == status; });
}

bool Result::hasDifferences() const
{
    return std::any_of(entries.begin(), entries.end(), [](const Entry& e) { return e.status != Status::same; });
}

std::optional<QString> problemWith(const FilePath& left, const FilePath& right)
{
    auto real = [](const FilePath& path) {
        char* resolved = realpath(path.c_str(), nullptr);
        if (!resolved)
            return path;
        FilePath result = FilePath::fromNative(resolved);
        free(resolved);
        return result;
    };
    const FilePath a = real(left);
    const FilePath b = real(right);
    if (a == b)
        return QStringLiteral("These are the same folder: there is nothing to compare.");
    if (a.contains(b) || b.contains(a))
        return QStringLiteral("One folder is inside the other: compare two separate folders.");
    return std::nullopt;
}

Result compare(const FilePath& left, const FilePath& right, qint64 limit, const CancelFlag& cancel)
{
    Result result;
    if (problemWith(left, right))
        return result;
    // Both sides at once: each walk is mostly waiting on the kernel.
    Side leftSide;
    std::thread other([&] { leftSide = walkSide(left, limit, cancel); });
    Side rightSide = walkSide(right, limit, cancel);
    other.join();
    result.isPartial = leftSide.isPartial || rightSide.isPartial;

    const auto leftRoot = DirectoryHandle::open(leftSide.root);
    const auto rightRoot = DirectoryHandle::open(rightSide.root);
    Merger merger(leftSide, rightSide, leftRoot ? leftRoot->fd() : -1, rightRoot ? rightRoot->fd() : -1);
    merger.run(cancel);
    if (!merger.pending.empty() && leftRoot && rightRoot)
        compareContents(merger, leftSide, leftRoot->fd(), rightRoot->fd(), cancel);
    result.entries = std::move(merger.entries);
    return result;
}

} // namespace orwick::FolderDiff
