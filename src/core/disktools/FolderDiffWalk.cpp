#include "disktools/FolderDiffWalk.h"

#include "disktools/FolderDiff.h"
#include "platform/DirectoryReader.h"
#include "platform/UniqueFd.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick::FolderDiff {

namespace {

class SideWalker {
public:
    SideWalker(qint64 limit, const CancelFlag& cancel) : m_limit(limit), m_cancel(cancel) {}

    Side run(const FilePath& root)
    {
        Side side;
        auto handle = DirectoryHandle::open(root, FollowLinks::yes);
        if (!handle)
            return side;
        side.root = realRoot(root);
        walk(*handle, QByteArray());
        std::sort(m_items.begin(), m_items.end(), [](const SideItem& a, const SideItem& b) { return a.path < b.path; });
        side.items = std::move(m_items);
        side.isPartial = m_partial;
        return side;
    }

private:
    static FilePath realRoot(const FilePath& root)
    {
        char* resolved = realpath(root.c_str(), nullptr);
        if (!resolved)
            return root;
        const FilePath real = FilePath::fromNative(resolved);
        free(resolved);
        return real;
    }

    bool stopped() const { return m_partial || m_cancel.isCancelled(); }

    void walk(const DirectoryHandle& folder, const QByteArray& prefix)
    {
        std::vector<DirEntry> entries;
        folder.readEntries(entries, &m_cancel);
        for (const DirEntry& entry : entries) {
            if (stopped())
                return;
            SideItem item;
            item.path = prefix.isEmpty() ? entry.name : prefix + '/' + entry.name;
            // A regular file's size and time are read when it is opened (or, alone on its side,
            // when it is listed), so the walk needs no call per file.
            if (entry.type == DT_REG) {
                if (++m_files > m_limit) {
                    m_partial = true;
                    return;
                }
                item.size = -1;
                m_items.push_back(std::move(item));
                continue;
            }
            const auto st = statForWalk(folder.fd(), entry.name.constData());
            if (!st)
                continue; // gone, or unreadable: left out
            item.modifiedNs = st->modifiedNs;
            if (st->isDirectory()) {
                item.kind = SideItem::Kind::folder;
                auto child = DirectoryHandle::openChild(folder.fd(), entry.name.constData());
                item.unreadable = !child;
                const QByteArray path = item.path;
                m_items.push_back(std::move(item));
                if (child)
                    walk(*child, path);
                continue;
            }
            if (++m_files > m_limit) {
                m_partial = true;
                return;
            }
            item.size = st->size;
            if (st->isSymlink()) {
                item.kind = SideItem::Kind::link;
                item.linkTarget = readLinkAt(folder.fd(), entry.name.constData()).value_or(QByteArray());
            } else if (!st->isRegular()) {
                item.kind = SideItem::Kind::other;
            }
            m_items.push_back(std::move(item));
        }
    }

    qint64 m_limit;
    const CancelFlag& m_cancel;
    qint64 m_files = 0;
    bool m_partial = false;
    std::vector<SideItem> m_items;
};

qint64 readFully(int fd, char* into, qint64 wanted, qint64 offset)
{
    // pread: the descriptor's position is never shared, so the kernel needn't lock it.
    qint64 got = 0;
    while (got < wanted) {
        const ssize_t n = pread(fd, into + got, size_t(wanted - got), off_t(offset + got));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        got += n;
    }
    return got;
}

// Reading to compare is not the user reading: where the file is ours, its access time is left
// as it was (which also spares the disk an inode write per file just copied or linked).
int openToCompare(int folder, const char* name)
{
    constexpr int kFlags = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NOCTTY;
    const int fd = openat(folder, name, kFlags | O_NOATIME);
    if (fd >= 0 || errno != EPERM)
        return fd;
    return openat(folder, name, kFlags);
}

// One chunk per side and thread, kept between pairs: sized once, never cleared.
struct Buffers {
    std::unique_ptr<char[]> left{new char[size_t(kChunk)]};
    std::unique_ptr<char[]> right{new char[size_t(kChunk)]};
};

struct Stamp {
    qint64 size = -1;
    qint64 modifiedNs = 0;
    bool operator==(const Stamp&) const = default;
};

std::optional<Stamp> stampOf(int fd)
{
    struct stat st {};
    if (fstat(fd, &st) != 0)
        return std::nullopt;
    return Stamp{st.st_size, qint64(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec};
}

} // namespace

Side walkSide(const FilePath& root, qint64 limit, const CancelFlag& cancel) { return SideWalker(limit, cancel).run(root); }

PairCheck comparePair(int leftFolder, int rightFolder, const char* name, const CancelFlag& cancel)
{
    PairCheck check;
    const UniqueFd a(openToCompare(leftFolder, name));
    const UniqueFd b(openToCompare(rightFolder, name));
    const auto left = a.ok() ? stampOf(a.get()) : std::nullopt;
    const auto right = b.ok() ? stampOf(b.get()) : std::nullopt;
    if (left)
        check.leftSize = left->size;
    if (right)
        check.rightSize = right->size;
    if (!left || !right || left->size != right->size)
        return check; // unreadable, or sizes differ: changed
    const qint64 size = left->size;
    if (size > kLargestRead) {
        check.same = left->modifiedNs == right->modifiedNs; // not read
        return check;
    }
    if (size > kChunk) { // read-ahead for the pieces to come
        posix_fadvise(a.get(), 0, 0, POSIX_FADV_SEQUENTIAL);
        posix_fadvise(b.get(), 0, 0, POSIX_FADV_SEQUENTIAL);
    }
    static thread_local Buffers buffers;
    // Exactly the size seen at opening, piece by piece, the two files in turns.
    for (qint64 done = 0; done < size;) {
        if (cancel.isCancelled())
            return check;
        const qint64 want = std::min(kChunk, size - done);
        if (readFully(a.get(), buffers.left.get(), want, done) != want
            || readFully(b.get(), buffers.right.get(), want, done) != want
            || memcmp(buffers.left.get(), buffers.right.get(), size_t(want)) != 0)
            return check;
        done += want;
    }
    // A file read in several pieces may be written to meanwhile: then it is not called the same.
    check.same = size <= kChunk || (stampOf(a.get()) == left && stampOf(b.get()) == right);
    return check;
}

} // namespace orwick::FolderDiff
