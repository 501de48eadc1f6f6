#include "disktools/FolderDiffWalk.h"

#include "disktools/FolderDiff.h"
#include "platform/DirectoryReader.h"
#include "platform/UniqueFd.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
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
            const auto st = statForWalk(folder.fd(), entry.name.constData());
            if (!st)
                continue; // gone, or unreadable: left out
            SideItem item;
            item.path = prefix.isEmpty() ? entry.name : prefix + '/' + entry.name;
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

// Opens a file below a root for a whole sequential read, never through a link.
UniqueFd openForReading(int root, const QByteArray& path, qint64 size)
{
    UniqueFd fd(openat(root, path.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NOCTTY));
    if (fd.get() >= 0 && size > kChunk)
        posix_fadvise(fd.get(), 0, 0, POSIX_FADV_SEQUENTIAL); // read-ahead for the pieces to come
    return fd;
}

qint64 readFully(int fd, char* into, qint64 wanted)
{
    qint64 got = 0;
    while (got < wanted) {
        const ssize_t n = read(fd, into + got, size_t(wanted - got));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        got += n;
    }
    return got;
}

bool unchangedSince(int fd, const SideItem& walked)
{
    struct stat st {};
    return fstat(fd, &st) == 0 && st.st_size == walked.size
        && qint64(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec == walked.modifiedNs;
}

} // namespace

Side walkSide(const FilePath& root, qint64 limit, const CancelFlag& cancel) { return SideWalker(limit, cancel).run(root); }

bool sameBytes(int leftRoot, int rightRoot, const SideItem& leftItem, const SideItem& rightItem, const CancelFlag& cancel)
{
    const qint64 size = leftItem.size;
    const UniqueFd a = openForReading(leftRoot, leftItem.path, size);
    if (a.get() < 0)
        return false;
    const UniqueFd b = openForReading(rightRoot, rightItem.path, size);
    if (b.get() < 0)
        return false;
    static thread_local std::vector<char> bufferA, bufferB;
    const qint64 chunk = std::min(size, kChunk);
    bufferA.resize(size_t(std::max<qint64>(chunk, 1)));
    bufferB.resize(size_t(std::max<qint64>(chunk, 1)));
    // Exactly the size the walk saw, piece by piece, the two files in turns; a file that grew
    // or shrank meanwhile is caught by the check after.
    for (qint64 done = 0; done < size;) {
        if (cancel.isCancelled())
            return false;
        const qint64 want = std::min(chunk, size - done);
        if (readFully(a.get(), bufferA.data(), want) != want || readFully(b.get(), bufferB.data(), want) != want
            || memcmp(bufferA.data(), bufferB.data(), size_t(want)) != 0)
            return false;
        done += want;
    }
    // A file written to while it was read is not called the same.
    return unchangedSince(a.get(), leftItem) && unchangedSince(b.get(), rightItem);
}

} // namespace orwick::FolderDiff
