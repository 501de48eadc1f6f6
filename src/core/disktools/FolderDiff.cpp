#include "disktools/FolderDiff.h"

#include "disktools/FolderDiffContents.h"
#include "disktools/FolderDiffWalk.h"
#include "disktools/WalkPool.h"
#include "platform/DirectoryReader.h"

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

// Builds the entries from two sorted sides into `entries` (with room for one per item); file
// pairs go to `checks`, which compares their bytes meanwhile.
class Merger {
public:
    // `leftRoot` and `rightRoot`: open descriptors of the two roots, for the sizes of files
    // listed alone on their side.
    Merger(const Side& left, const Side& right, int leftRoot, int rightRoot, std::vector<Entry>& entries, ContentChecks& checks)
        : entries(entries), m_left(left), m_right(right), m_leftRoot(leftRoot), m_rightRoot(rightRoot), m_checks(checks)
    {
    }

    void run(const CancelFlag& cancel)
    {
        size_t l = 0, r = 0;
        const auto& a = m_left.items;
        const auto& b = m_right.items;
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

    std::vector<Entry>& entries;

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
            m_checks.add(entries.size(), left);
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
    ContentChecks& m_checks;
    QHash<QByteArray, size_t> m_foldedInto; // one-sided folders → the entry that lists them
    QSet<QByteArray> m_skipped;             // unreadable folders and what lies in them
};

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
    // The roots are opened first, so that every thread's table of descriptors has them.
    const auto leftRoot = DirectoryHandle::open(left);
    const auto rightRoot = DirectoryHandle::open(right);
    const int leftFd = leftRoot ? leftRoot->fd() : -1;
    const int rightFd = rightRoot ? rightRoot->fd() : -1;

    // Both sides are walked at once. Then this thread merges them while the left side's thread
    // (and one more per further core) compares the bytes of the pairs the merge hands on.
    Side leftSide, rightSide;
    std::atomic<bool> leftWalked{false};
    std::atomic<ContentChecks*> checks{nullptr};
    auto compareBytes = [&checks] {
        checks.wait(nullptr);
        // A table of descriptors of its own: every pair is two opens and two closes, and threads
        // sharing a table take turns at its lock for each (measured: 2% of a comparison spinning
        // there on two cores). Where it can't have one, the shared table only costs some time.
        unshare(CLONE_FILES);
        checks.load()->work();
    };
    std::vector<std::thread> workers;
    workers.emplace_back([&] {
        leftSide = walkSide(left, limit, cancel);
        leftWalked.store(true);
        leftWalked.notify_one();
        compareBytes();
    });
    for (int extra = diskWalkThreads() - 2; extra > 0; --extra)
        workers.emplace_back(compareBytes);
    rightSide = walkSide(right, limit, cancel);
    leftWalked.wait(false);
    result.isPartial = leftSide.isPartial || rightSide.isPartial;

    // Every entry is made in place (at most one per item), so the workers' entries never move.
    result.entries.reserve(leftSide.items.size() + rightSide.items.size());
    ContentChecks contents(leftSide, result.entries, leftFd, rightFd, std::min(leftSide.items.size(), rightSide.items.size()), cancel);
    checks.store(&contents);
    checks.notify_all();
    Merger merger(leftSide, rightSide, leftFd, rightFd, result.entries, contents);
    merger.run(cancel);
    contents.finish();
    contents.work(); // this thread's table is shared with the rest of the program: left as it is
    for (std::thread& worker : workers)
        worker.join();
    return result;
}

} // namespace orwick::FolderDiff
