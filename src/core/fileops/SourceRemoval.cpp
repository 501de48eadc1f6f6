#include "fileops/SourceRemoval.h"

#include "platform/DirectoryReader.h"

#include <QHash>
#include <QSet>
#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick {

namespace {

constexpr int kNamesKept = 5;

FilePath pathOf(const FilePath& from, const QByteArray& relative)
{
    return relative.isEmpty() ? from : from.child(QByteArrayView(relative));
}

void noteLeft(RemovalResult& result, const QByteArray& relative)
{
    ++result.leftInPlace;
    if (result.leftNames.size() < kNamesKept)
        result.leftNames.append(relative);
}

// Counts what is left below a folder the removal could not empty: items that are not folders
// the copy knew, which are the ones that appeared or changed.
void countLeftovers(const FilePath& from, const QByteArray& relative, const QSet<QByteArray>& knownFolders,
                    const QSet<QByteArray>& counted, RemovalResult& result)
{
    std::vector<QByteArray> pending{relative};
    while (!pending.empty()) {
        const QByteArray folder = std::move(pending.back());
        pending.pop_back();
        auto handle = DirectoryHandle::open(pathOf(from, folder), FollowLinks::no);
        std::vector<DirEntry> entries;
        if (!handle || !handle->readEntries(entries))
            continue;
        for (const DirEntry& entry : entries) {
            const QByteArray child = folder.isEmpty() ? entry.name : folder + '/' + entry.name;
            const auto st = statAt(handle->fd(), entry.name.constData());
            const bool isFolder = st && st->isDirectory();
            if (isFolder && knownFolders.contains(child)) {
                pending.push_back(child);
                continue;
            }
            if (!counted.contains(child))
                noteLeft(result, child);
        }
    }
}

// Read-only folders of the source are made writable for the removal, as `rm -rf` would; the
// ones that stay (they kept something) get their own permissions back.
class OpenedFolders {
public:
    bool open(const FilePath& folder)
    {
        const auto st = statPath(folder);
        if (!st || (st->mode & S_IWUSR) || m_modes.contains(folder))
            return false;
        m_modes.insert(folder, st->mode & 07777);
        return chmod(folder.c_str(), (st->mode & 07777) | S_IRWXU) == 0;
    }
    ~OpenedFolders()
    {
        for (auto it = m_modes.begin(); it != m_modes.end(); ++it)
            chmod(it.key().c_str(), it.value()); // fails harmlessly for the ones removed
    }

private:
    QHash<FilePath, unsigned> m_modes;
};

} // namespace

RemovalResult removeCopiedSource(const FilePath& from, const CopyManifest& manifest)
{
    RemovalResult result;
    QSet<QByteArray> knownFolders;
    QSet<QByteArray> counted; // already reported as changed
    QSet<QPair<quint64, quint64>> unlinked;
    QList<QByteArray> notEmptied;
    OpenedFolders opened;
    // The manifest is in pre-order: backwards, every item comes before the folder holding it.
    for (auto it = manifest.rbegin(); it != manifest.rend(); ++it) {
        const CopiedEntry& copied = *it;
        const FilePath path = pathOf(from, copied.relative);
        SourceMeta now;
        if (!now.read(AT_FDCWD, path.c_str()))
            continue; // gone already
        const bool folder = S_ISDIR(copied.mode);
        if (folder)
            knownFolders.insert(copied.relative);
        bool same = now.device == copied.device && now.inode == copied.inode && (now.mode & S_IFMT) == (copied.mode & S_IFMT);
        if (same && !folder) {
            const qint64 modified = qint64(now.times[1].tv_sec) * 1000000000 + now.times[1].tv_nsec;
            // Removing another name of a hard-linked file changes the change time; nothing else does.
            const bool linkedAndTouchedByUs = unlinked.contains({copied.device, copied.inode});
            same = now.size == copied.size && modified == copied.modifiedNs
                && (now.changedNs == copied.changedNs || linkedAndTouchedByUs);
        }
        if (!same) {
            noteLeft(result, copied.relative);
            counted.insert(copied.relative);
            continue;
        }
        if (folder) {
            if (rmdir(path.c_str()) != 0) {
                if (errno == ENOTEMPTY || errno == EEXIST) {
                    notEmptied.append(copied.relative);
                } else if ((errno == EACCES || errno == EPERM) && opened.open(path.parent())) {
                    if (rmdir(path.c_str()) != 0) {
                        ++result.failed;
                        result.firstError = result.firstError ? result.firstError : errno;
                    }
                } else {
                    ++result.failed;
                    result.firstError = result.firstError ? result.firstError : errno;
                }
            }
            continue;
        }
        if (unlink(path.c_str()) != 0) {
            if ((errno == EACCES || errno == EPERM) && opened.open(path.parent())) {
                if (unlink(path.c_str()) == 0) {
                    unlinked.insert({copied.device, copied.inode});
                    continue;
                }
            }
            if (errno != ENOENT) {
                ++result.failed;
                result.firstError = result.firstError ? result.firstError : errno;
            }
            continue;
        }
        unlinked.insert({copied.device, copied.inode});
    }
    // Folders that kept something: count what they kept, once, from the outermost.
    for (const QByteArray& folder : notEmptied) {
        const bool insideAnother = std::any_of(notEmptied.begin(), notEmptied.end(), [&](const QByteArray& other) {
            return other != folder && (other.isEmpty() || folder.startsWith(other + '/'));
        });
        if (!insideAnother)
            countLeftovers(from, folder, knownFolders, counted, result);
    }
    return result;
}

} // namespace orwick
