// LinkUpdater's reading part: which notes may link to moved items, and the edits they need.
// Reads only; safe on any thread.

#include "base/PathParts.h"
#include "disktools/WalkPool.h"
#include "fileops/LinkUpdater.h"
#include "fileops/NoteName.h"
#include "notes/DailyNotes.h"
#include "notes/NoteFile.h"
#include "platform/ForEachEntry.h"

#include <QHash>
#include <QSet>
#include <atomic>
#include <unordered_map>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick {

namespace {

// One folder's own entries, read once however many moved items it held and whatever asks (the
// notes beside an item, the notes near it): its notes (the first kTreeLimit, hidden ones passed
// over), its sub-folders to read near an item (not hidden), and the names of all its sub-folders
// (hidden ones too: a moved item may be one). Only the entries that may matter make a path.
struct FolderEntries {
    QList<FilePath> notes;
    QList<FilePath> subfolders;
    QSet<QByteArray> folderNames;
};

FolderEntries readFolder(const FilePath& folder, const CancelFlag* cancel)
{
    FolderEntries entries;
    forEachEntry(folder, cancel, [&](QByteArrayView name, unsigned char givenType) {
        const bool hidden = name.startsWith('.');
        if (givenType == DT_REG
            && (hidden || entries.notes.size() >= LinkUpdater::kTreeLimit || !isNoteName(name)))
            return;
        if (givenType != DT_REG && givenType != DT_DIR && givenType != DT_UNKNOWN)
            return;
        const FilePath path = folder.child(name);
        const unsigned char type = entryType(path, givenType);
        if (type == DT_DIR) {
            entries.folderNames.insert(name.toByteArray());
            if (!hidden)
                entries.subfolders.append(path);
        } else if (type == DT_REG && !hidden && entries.notes.size() < LinkUpdater::kTreeLimit
                   && isNoteName(name)) {
            entries.notes.append(path);
        }
    });
    return entries;
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
        if (entry->d_type == DT_REG) {
            if (isNoteName(name))
                out.append(folder.child(name));
            continue;
        }
        if (entry->d_type != DT_DIR && entry->d_type != DT_UNKNOWN)
            continue;
        const FilePath path = folder.child(name);
        const unsigned char type = entryType(path, entry->d_type);
        if (type == DT_DIR) {
            if (depthLeft > 1)
                folders.append(path);
        } else if (type == DT_REG && isNoteName(name)) {
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
    // Each folder is looked up once: a batch moves thousands of items out of one folder, and the
    // next item of the same two folders is passed by without making a path.
    QSet<FilePath> tried;
    QByteArrayView lastFrom;
    QByteArrayView lastTo;
    for (const FileMove& move : moves) {
        const QByteArrayView fromPart = folderPartOf(move.from);
        const QByteArrayView toPart = folderPartOf(move.to);
        if (!tried.isEmpty() && fromPart == lastFrom && toPart == lastTo)
            continue;
        lastFrom = fromPart;
        lastTo = toPart;
        for (const FilePath& folder : {move.from.parent(), move.to.parent()}) {
            if (tried.contains(folder))
                continue;
            tried.insert(folder);
            if (auto vault = DailyNotes::vault(folder))
                return *vault;
        }
    }
    return {};
}

QList<FilePath> LinkUpdater::candidates(const QList<FileMove>& moves, const CancelFlag* cancel)
{
    QList<FilePath> out;
    QSet<FilePath> seen;
    auto add = [&](const QList<FilePath>& notes, qsizetype limit = kTreeLimit) {
        for (const FilePath& note : notes.first(std::min(limit, notes.size()))) {
            if (!seen.contains(note)) {
                seen.insert(note);
                out.append(note);
            }
        }
    };
    // A batch renames thousands of items in one folder: each folder is read, and its vault
    // looked up, once, and the notes near an item start from the folder's own read. The map's
    // entries stay where they are while others are added.
    std::unordered_map<FilePath, FolderEntries> folders;
    auto folderBeside = [&](const FilePath& folder) -> const FolderEntries& {
        auto found = folders.find(folder);
        if (found == folders.end()) {
            found = folders.emplace(folder, readFolder(folder, cancel)).first;
            add(found->second.notes, kFolderLimit);
        }
        return found->second;
    };
    QHash<FilePath, std::optional<FilePath>> vaults;
    auto vaultAbove = [&](const FilePath& folder) {
        auto found = vaults.find(folder);
        if (found == vaults.end())
            found = vaults.insert(folder, DailyNotes::vault(folder));
        return *found;
    };
    QSet<FilePath> vaultsRead;
    QSet<FilePath> nearbyRead;
    // The folder parts of the last move's paths; the items of one folder share everything read
    // around them, so the next move of the same two folders only looks up its own name.
    QByteArrayView lastFrom;
    QByteArrayView lastTo;
    const FolderEntries* besideTo = nullptr;
    for (const FileMove& move : moves) {
        if (cancel && cancel->isCancelled())
            break;
        const QByteArrayView fromPart = folderPartOf(move.from);
        const QByteArrayView toPart = folderPartOf(move.to);
        const bool sameFolders = besideTo && fromPart == lastFrom && toPart == lastTo;
        if (!sameFolders)
            besideTo = &folderBeside(move.to.parent());
        if (!besideTo->folderNames.isEmpty() && besideTo->folderNames.contains(nameOf(move.to).toByteArray()))
            add(markdown(move.to, true, INT_MAX, kTreeLimit, cancel));
        if (sameFolders)
            continue;
        lastFrom = fromPart;
        lastTo = toPart;
        const FilePath fromFolder = move.from.parent();
        const FilePath toFolder = move.to.parent();
        folderBeside(fromFolder);
        std::optional<FilePath> vault = vaultAbove(fromFolder);
        if (!vault)
            vault = vaultAbove(toFolder);
        if (vault) {
            if (!vaultsRead.contains(*vault)) {
                vaultsRead.insert(*vault);
                add(markdown(*vault, true, INT_MAX, kVaultLimit, cancel));
            }
            continue;
        }
        // Near the item: its folder's own notes, then those of the folders in it.
        for (const FilePath& item : {move.from, move.to}) {
            const FilePath parent = item.parent();
            if (isTooWide(parent) || componentCount(item) < 4 || nearbyRead.contains(parent))
                continue;
            nearbyRead.insert(parent);
            const FolderEntries& own = folderBeside(parent);
            QList<FilePath> nearby = own.notes;
            for (const FilePath& folder : own.subfolders) {
                if (nearby.size() >= kTreeLimit)
                    break;
                collect(folder, 1, kTreeLimit, nearby, cancel);
            }
            add(nearby);
        }
    }
    return out;
}

namespace {

// The edit one note needs, read from disk; nothing when none (counted in `skipped` when the
// note can't be edited).
std::optional<LinkUpdater::Edit> planNote(const FilePath& note, const QList<FileMove>& moves, const FilePath& root,
                                          std::atomic<int>& skipped)
{
    const int fd = ::open(note.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    if (fd < 0)
        return std::nullopt;
    struct stat st {};
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        ::close(fd);
        return std::nullopt;
    }
    if (st.st_size > LinkUpdater::kLargestNote) {
        ::close(fd);
        ++skipped;
        return std::nullopt;
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
        return std::nullopt;
    if (!isValidUtf8(bytes)) {
        ++skipped;
        return std::nullopt;
    }
    const FilePath oldNote = LinkUpdater::unmapped(note, moves);
    std::optional<QByteArray> rewritten = LinkUpdater::rewriteBytes(bytes, oldNote, note, moves, root);
    if (!rewritten)
        return std::nullopt;
    if (!notefile::checkWritable(note)) {
        ++skipped;
        return std::nullopt;
    }
    return LinkUpdater::Edit{note, oldNote, std::move(bytes), std::move(*rewritten)};
}

} // namespace

LinkUpdater::Plan LinkUpdater::plan(const QList<FileMove>& moves, const CancelFlag* cancel)
{
    Plan plan;
    const QList<FilePath> notes = candidates(moves, cancel);
    if (notes.isEmpty())
        return plan;
    const FilePath root = vaultOf(moves);
    // Reading and rewriting thousands of notes is spread over the cores, in runs of notes;
    // the edits keep the candidates' order.
    constexpr qsizetype kRun = 64;
    std::vector<std::optional<Edit>> edits(size_t(notes.size()));
    std::atomic<int> skipped = 0;
    std::atomic<bool> cancelled = false;
    WalkPool pool(notes.size() > kRun ? diskWalkThreads() : 1);
    for (qsizetype first = 0; first < notes.size(); first += kRun) {
        pool.post([&, first](int) {
            const qsizetype end = std::min(first + kRun, notes.size());
            for (qsizetype i = first; i < end; ++i) {
                if (cancel && cancel->isCancelled()) {
                    cancelled = true;
                    return;
                }
                edits[size_t(i)] = planNote(notes[i], moves, root, skipped);
            }
        });
    }
    pool.wait();
    for (std::optional<Edit>& edit : edits)
        if (edit)
            plan.edits.append(std::move(*edit));
    plan.skipped = skipped;
    plan.cancelled = cancelled || (cancel && cancel->isCancelled());
    return plan;
}

} // namespace orwick
