// LinkUpdater's reading part: which notes may link to moved items, and the edits they need.
// Reads only; safe on any thread.

#include "fileops/LinkUpdater.h"
#include "notes/DailyNotes.h"
#include "notes/NoteFile.h"

#include <QSet>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick {

namespace {

bool isFolder(const FilePath& path)
{
    struct stat st {};
    return ::lstat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

// Folders too wide to read around: the root and the folders that only hold homes or disks.
bool isTooWide(const FilePath& folder)
{
    static const QSet<QByteArray> wide = {"/", "/home", "/media", "/mnt", "/run/media", "/Volumes", "/Users"};
    return wide.contains(folder.native());
}

qsizetype componentCount(const FilePath& path)
{
    return path.isRoot() ? 0 : path.native().count('/');
}

void collect(const FilePath& folder, int depthLeft, int limit, QList<FilePath>& out, const CancelFlag* cancel)
{
    DIR* dir = ::opendir(folder.c_str());
    if (!dir)
        return;
    QList<FilePath> folders;
    while (const dirent* entry = ::readdir(dir)) {
        if (out.size() >= limit || (cancel && cancel->isCancelled()))
            break;
        const QByteArrayView name(entry->d_name);
        if (name.startsWith('.'))
            continue;
        const FilePath path = folder.child(name);
        unsigned char type = entry->d_type;
        if (type == DT_UNKNOWN) {
            struct stat st {};
            if (::lstat(path.c_str(), &st) != 0)
                continue;
            type = S_ISDIR(st.st_mode) ? DT_DIR : S_ISREG(st.st_mode) ? DT_REG : DT_LNK;
        }
        if (type == DT_DIR) {
            if (depthLeft > 1)
                folders.append(path);
        } else if (type == DT_REG && notefile::isNote(path)) {
            out.append(path);
        }
    }
    ::closedir(dir);
    for (const FilePath& child : folders) {
        if (out.size() >= limit)
            break;
        collect(child, depthLeft - 1, limit, out, cancel);
    }
}

} // namespace

QList<FilePath> LinkUpdater::markdown(const FilePath& folder, bool recursive, int maxDepth, int limit,
                                      const CancelFlag* cancel)
{
    QList<FilePath> out;
    collect(folder, recursive ? maxDepth : 1, limit, out, cancel);
    return out;
}

FilePath LinkUpdater::vaultOf(const QList<FileMove>& moves)
{
    for (const FileMove& move : moves) {
        if (auto vault = DailyNotes::vault(move.from.parent()))
            return *vault;
        if (auto vault = DailyNotes::vault(move.to.parent()))
            return *vault;
    }
    return {};
}

QList<FilePath> LinkUpdater::candidates(const QList<FileMove>& moves, const CancelFlag* cancel)
{
    QList<FilePath> out;
    QSet<FilePath> seen;
    auto add = [&](const QList<FilePath>& notes) {
        for (const FilePath& note : notes) {
            if (!seen.contains(note)) {
                seen.insert(note);
                out.append(note);
            }
        }
    };
    QSet<FilePath> vaultsRead;
    QSet<FilePath> nearbyRead;
    for (const FileMove& move : moves) {
        if (cancel && cancel->isCancelled())
            break;
        add(markdown(move.from.parent(), false, 1, kFolderLimit, cancel));
        add(markdown(move.to.parent(), false, 1, kFolderLimit, cancel));
        if (isFolder(move.to))
            add(markdown(move.to, true, INT_MAX, kTreeLimit, cancel));
        std::optional<FilePath> vault = DailyNotes::vault(move.from.parent());
        if (!vault)
            vault = DailyNotes::vault(move.to.parent());
        if (vault) {
            if (!vaultsRead.contains(*vault)) {
                vaultsRead.insert(*vault);
                add(markdown(*vault, true, INT_MAX, kVaultLimit, cancel));
            }
            continue;
        }
        for (const FilePath& item : {move.from, move.to}) {
            const FilePath parent = item.parent();
            if (isTooWide(parent) || componentCount(item) < 4 || nearbyRead.contains(parent))
                continue;
            nearbyRead.insert(parent);
            add(markdown(parent, true, 2, kTreeLimit, cancel));
        }
    }
    return out;
}

LinkUpdater::Plan LinkUpdater::plan(const QList<FileMove>& moves, const CancelFlag* cancel)
{
    Plan plan;
    const FilePath root = vaultOf(moves);
    for (const FilePath& note : candidates(moves, cancel)) {
        if (cancel && cancel->isCancelled()) {
            plan.cancelled = true;
            break;
        }
        const int fd = ::open(note.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
        if (fd < 0)
            continue;
        struct stat st {};
        if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
            ::close(fd);
            continue;
        }
        if (st.st_size > kLargestNote) {
            ::close(fd);
            ++plan.skipped;
            continue;
        }
        QByteArray bytes(st.st_size, Qt::Uninitialized);
        qsizetype got = 0;
        while (got < bytes.size()) {
            const ssize_t n = ::read(fd, bytes.data() + got, bytes.size() - got);
            if (n <= 0)
                break;
            got += n;
        }
        ::close(fd);
        bytes.truncate(got);
        if (!bytes.contains("](") && !bytes.contains("[["))
            continue;
        if (!isValidUtf8(bytes)) {
            ++plan.skipped;
            continue;
        }
        const FilePath oldNote = unmapped(note, moves);
        std::optional<QByteArray> rewritten = rewriteBytes(bytes, oldNote, note, moves, root);
        if (!rewritten)
            continue;
        if (!notefile::checkWritable(note)) {
            ++plan.skipped;
            continue;
        }
        plan.edits.append({note, oldNote, std::move(bytes), std::move(*rewritten)});
    }
    return plan;
}

} // namespace orwick
