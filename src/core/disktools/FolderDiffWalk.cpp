#include "disktools/FolderDiffWalk.h"

#include "platform/DirectoryReader.h"
#include "platform/RawEntries.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace orwick::FolderDiff {

namespace {

constexpr size_t kDirentBufferSize = 64 * 1024;

// One entry of the folder being read, placed by its sort key: its name, and for a folder's
// contents (`holds`) its name + "/".
struct Child {
    quint32 pathStart;  // the whole relative path, in Side::paths
    quint32 pathLength;
    quint32 nameStart;  // where the name begins in the path
    quint32 folder;     // a folder: its number among this folder's sub-folders
    unsigned char type; // DT_*
    bool holds;         // the key of a sub-folder's contents
};

QByteArrayView nameOf(const QByteArray& paths, const Child& child)
{
    return {paths.constData() + child.pathStart + child.nameStart, qsizetype(child.pathLength - child.nameStart)};
}

// Names hold no "/", so comparing name + "/" with another name is decided at the shorter one's
// end at the latest.
bool keyLess(const QByteArray& paths, const Child& a, const Child& b)
{
    const QByteArrayView x = nameOf(paths, a);
    const QByteArrayView y = nameOf(paths, b);
    const size_t common = size_t(std::min(x.size(), y.size()));
    if (const int c = memcmp(x.data(), y.data(), common))
        return c < 0;
    if (x.size() == y.size())
        return !a.holds && b.holds; // "name" before "name/"
    if (x.size() < y.size())
        return !a.holds || '/' < quint8(y[common]);
    return b.holds && quint8(x[common]) < '/';
}

class SideWalker {
public:
    SideWalker(Side& side, qint64 limit, const CancelFlag& cancel) : m_side(side), m_limit(limit), m_cancel(cancel) {}

    void run(int rootFd)
    {
        m_side.paths.reserve(1 << 16);
        walk(rootFd, 0, 0, 0);
    }

private:
    bool stopped() const { return m_side.isPartial || m_cancel.isCancelled(); }

    // Appends "prefix/name\0" to the paths; returns where it starts.
    quint32 appendPath(quint32 prefixStart, quint32 prefixLength, const char* name, size_t nameLength)
    {
        QByteArray& paths = m_side.paths;
        const qsizetype start = paths.size();
        const qsizetype slash = prefixLength > 0 ? 1 : 0;
        paths.resize(start + prefixLength + slash + qsizetype(nameLength) + 1);
        char* out = paths.data() + start;
        memcpy(out, paths.constData() + prefixStart, prefixLength); // from before `start`: no overlap
        out += prefixLength;
        if (slash)
            *out++ = '/';
        memcpy(out, name, nameLength);
        out[nameLength] = 0;
        return quint32(start);
    }

    // Reads the folder's entries into `children`, in key order. False when it can't be read.
    bool readFolder(int fd, quint32 prefixStart, quint32 prefixLength, std::vector<Child>& children, quint32& folders)
    {
        thread_local std::unique_ptr<char[]> buffer(new char[kDirentBufferSize]);
        const bool read = forEachRawEntry(fd, buffer.get(), kDirentBufferSize, &m_cancel,
                                          [&](const char* name, size_t length, unsigned char type, ino64_t) {
            const quint32 start = appendPath(prefixStart, prefixLength, name, length);
            const quint32 nameStart = prefixLength > 0 ? prefixLength + 1 : 0;
            Child child{start, quint32(nameStart + length), nameStart, 0, type, false};
            if (child.type == DT_UNKNOWN) { // the file system doesn't say: ask
                const auto st = statForWalk(fd, name);
                if (!st)
                    return true; // gone, or unreadable: left out
                child.type = IFTODT(st->mode);
            }
            children.push_back(child);
            if (child.type == DT_DIR) {
                child.folder = folders++;
                children.back().folder = child.folder;
                child.holds = true;
                children.push_back(child);
            }
            return true;
        });
        if (!read)
            return false;
        std::sort(children.begin(), children.end(),
                  [&paths = m_side.paths](const Child& a, const Child& b) { return keyLess(paths, a, b); });
        return true;
    }

    void walk(int fd, quint32 prefixStart, quint32 prefixLength, size_t depth)
    {
        // One list of children per depth, kept from folder to folder.
        if (m_levels.size() <= depth)
            m_levels.resize(depth + 1);
        std::vector<Child>& children = m_levels[depth].children;
        std::vector<size_t>& rows = m_levels[depth].folderRows;
        children.clear();
        quint32 folders = 0;
        if (!readFolder(fd, prefixStart, prefixLength, children, folders))
            return;
        rows.assign(folders, 0);
        auto& items = m_side.items;
        for (size_t i = 0; i < m_levels[depth].children.size(); ++i) {
            if (stopped())
                return;
            // Re-fetched each time: walking a sub-folder may grow the list of levels.
            const Child child = m_levels[depth].children[i];
            if (child.holds) {
                const int sub = openat(fd, m_side.paths.constData() + child.pathStart + child.nameStart,
                                       O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW);
                if (sub < 0) {
                    items[m_levels[depth].folderRows[child.folder]].unreadable = true;
                    continue;
                }
                walk(sub, child.pathStart, child.pathLength, depth + 1);
                close(sub);
                continue;
            }
            SideItem item;
            item.pathStart = child.pathStart;
            item.pathLength = child.pathLength;
            if (child.type == DT_DIR) {
                item.kind = SideItem::Kind::folder;
                m_levels[depth].folderRows[child.folder] = items.size();
                items.push_back(item);
                continue;
            }
            if (++m_files > m_limit) {
                m_side.isPartial = true;
                return;
            }
            const char* name = m_side.paths.constData() + child.pathStart + child.nameStart;
            if (child.type == DT_LNK) {
                item.kind = SideItem::Kind::link;
                const auto target = readLinkAt(fd, name);
                if (!target)
                    continue; // gone meanwhile
                item.size = target->size();
                item.linkLength = quint32(target->size());
                item.linkStart = quint32(m_side.paths.size());
                m_side.paths.append(*target);
            } else if (child.type != DT_REG) {
                const auto st = statForWalk(fd, name);
                if (!st)
                    continue;
                item.kind = SideItem::Kind::other;
                item.size = st->size;
            }
            items.push_back(item);
        }
    }

    struct Level {
        std::vector<Child> children;
        std::vector<size_t> folderRows; // each sub-folder's row in the items
    };

    Side& m_side;
    qint64 m_limit;
    const CancelFlag& m_cancel;
    qint64 m_files = 0;
    std::vector<Level> m_levels;
};

FilePath realRoot(const FilePath& root)
{
    char* resolved = realpath(root.c_str(), nullptr);
    if (!resolved)
        return root;
    const FilePath real = FilePath::fromNative(resolved);
    free(resolved);
    return real;
}

} // namespace

int comparePaths(QByteArrayView a, QByteArrayView b)
{
    const size_t common = size_t(std::min(a.size(), b.size()));
    if (const int c = memcmp(a.data(), b.data(), common))
        return c;
    return a.size() < b.size() ? -1 : a.size() > b.size() ? 1 : 0;
}

Side walkSide(const FilePath& root, qint64 limit, const CancelFlag& cancel)
{
    Side side;
    auto handle = DirectoryHandle::open(root, FollowLinks::yes);
    if (!handle)
        return side;
    side.root = realRoot(root);
    SideWalker(side, limit, cancel).run(handle->fd());
    return side;
}

} // namespace orwick::FolderDiff
