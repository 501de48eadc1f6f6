#include "platform/Trash.h"

#include "platform/DirectoryReader.h"
#include "platform/ErrorText.h"
#include "platform/TrashFolder.h"
#include "platform/UniqueFd.h"
#include "platform/XdgPaths.h"

#include <QDateTime>
#include <QMutex>
#include <QHash>
#include <cerrno>
#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick::trash {

namespace {

const QByteArray kInfoSuffix = ".trashinfo";

bool makeFolder(const FilePath& path)
{
    if (const auto st = statPath(path); st && st->isDirectory())
        return true;
    if (::mkdir(path.c_str(), 0700) == 0)
        return true;
    if (errno != EEXIST)
        return false;
    const auto st = statPath(path); // never a link: someone else's folder must not receive our files
    return st && st->isDirectory();
}

// Makes the folders above `path` that are missing (the home Trash may be the first thing in
// ~/.local/share).
void makeParents(const FilePath& path)
{
    const QByteArray& bytes = path.native();
    for (qsizetype i = 1; i < bytes.size(); ++i)
        if (bytes[i] == '/')
            ::mkdir(bytes.left(i).constData(), 0700);
}

bool makeTrashFolder(const FilePath& folder)
{
    return makeFolder(folder) && makeFolder(folder.child(QByteArrayView("files")))
        && makeFolder(folder.child(QByteArrayView("info")));
}

// The mount an item lies on, or -1 when the file system can't say. Bind mounts of one disk
// share its device number but not their mount: a rename between them fails like one between disks.
int mountIdOf(const FilePath& path)
{
    alignas(file_handle) unsigned char storage[sizeof(file_handle) + MAX_HANDLE_SZ] = {};
    auto* handle = reinterpret_cast<file_handle*>(storage);
    handle->handle_bytes = MAX_HANDLE_SZ;
    int id = -1;
    return name_to_handle_at(AT_FDCWD, path.c_str(), handle, &id, 0) == 0 ? id : -1;
}

bool onOneMount(const FilePath& a, const FilePath& b)
{
    const int first = mountIdOf(a);
    const int second = mountIdOf(b);
    return first < 0 || second < 0 || first == second;
}

// The top folder of the volume that holds `path`: the last ancestor on the same device and mount.
FilePath mountTop(const FilePath& path, quint64 device)
{
    const int mount = mountIdOf(path);
    FilePath top = path;
    while (!top.isRoot()) {
        const auto st = statPath(top.parent());
        if (!st || st->device != device)
            break;
        if (const int parentMount = mountIdOf(top.parent()); mount >= 0 && parentMount >= 0 && parentMount != mount)
            break;
        top = top.parent();
    }
    return top;
}

// Per-volume Trash folders found so far, by device; checked again before every use (a device
// number is reused after an unmount, and a folder's owner can change).
struct VolumeTrash {
    FilePath top;
    FilePath folder;
};
QMutex cacheLock;
QHash<quint64, VolumeTrash>& volumeTrashCache()
{
    static QHash<quint64, VolumeTrash> cache;
    return cache;
}

Result<FilePath> volumeTrash(const FilePath& path, quint64 device)
{
    {
        QMutexLocker locker(&cacheLock);
        const auto found = volumeTrashCache().constFind(device);
        if (found != volumeTrashCache().constEnd()) {
            const auto top = statPath(found->top);
            if (top && top->device == device && onOneMount(found->top, path) && checkTrashFolder(found->folder))
                return found->folder;
            volumeTrashCache().remove(device); // another mount of the device, or no longer usable
        }
    }
    const FilePath top = mountTop(path, device);
    auto folder = volumeTrashFolder(top);
    if (!folder)
        return folder;
    QMutexLocker locker(&cacheLock);
    volumeTrashCache().insert(device, {top, *folder});
    return folder;
}

// Opens `name` in the Trash folder `parentFd` (files/ or info/), making it when missing; never
// through a link.
int openSubfolder(int parentFd, const char* name)
{
    int fd = ::openat(parentFd, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (fd < 0 && errno == ENOENT && (::mkdirat(parentFd, name, 0700) == 0 || errno == EEXIST))
        fd = ::openat(parentFd, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    return fd;
}

// The Trash folder opened for one trashing, checked on the open descriptor so that nothing
// swapped in after the check by path receives the item.
struct OpenTrash {
    int files = -1;
    int info = -1;
    OpenTrash() = default;
    OpenTrash(const OpenTrash&) = delete;
    ~OpenTrash()
    {
        for (int fd : {files, info})
            if (fd >= 0)
                ::close(fd);
    }
};

Status openTrash(const FilePath& folder, OpenTrash& open)
{
    const bool home = folder == xdg::homeTrash();
    // The home Trash may be a link the user made; a volume's Trash never is.
    const UniqueFd fd(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | (home ? 0 : O_NOFOLLOW)));
    if (!fd.ok())
        return failure(errorReason(errno));
    if (!home) {
        struct stat st {};
        if (::fstat(fd.get(), &st) != 0)
            return failure(errorReason(errno));
        if (const Status safe = checkOwnFolder(st, folder.fileName()); !safe)
            return safe;
    }
    if ((open.files = openSubfolder(fd.get(), "files")) < 0 || (open.info = openSubfolder(fd.get(), "info")) < 0)
        return failure(errorReason(errno));
    return {};
}

QByteArray infoText(const FilePath& item, const FilePath& trashFolder)
{
    // The home Trash records absolute paths; a volume's Trash paths relative to its top folder.
    QByteArray path = item.native();
    if (trashFolder != xdg::homeTrash()) {
        FilePath top = trashFolder.parent();
        if (top.fileNameBytes() == ".Trash")
            top = top.parent();
        if (top.isAncestorOf(item))
            path = item.native().mid(top.isRoot() ? 1 : top.native().size() + 1);
    }
    return "[Trash Info]\nPath=" + path.toPercentEncoding("/") + "\nDeletionDate="
        + QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-ddThh:mm:ss")).toLatin1() + "\n";
}

QByteArray candidateName(const QByteArray& name, int count)
{
    if (count < 2)
        return name;
    const qsizetype dot = name.lastIndexOf('.');
    if (dot <= 0)
        return name + ' ' + QByteArray::number(count);
    return name.left(dot) + ' ' + QByteArray::number(count) + name.mid(dot);
}

bool writeAll(int fd, const QByteArray& bytes)
{
    return ::write(fd, bytes.constData(), size_t(bytes.size())) == bytes.size();
}

} // namespace

Result<FilePath> trashFolderFor(const FilePath& path)
{
    const auto st = statPath(path);
    if (!st)
        return failure(errorReason(errno));
    // Only a missing home Trash is made here: making folders that exist costs a journal
    // round-trip on some file systems, so trashItem makes files/ and info/ when it finds them missing.
    const FilePath home = xdg::homeTrash();
    auto homeStat = statPath(home);
    if (!homeStat) {
        makeParents(home);
        if (!makeTrashFolder(home))
            return failure(QStringLiteral("the Trash folder can’t be made (%1)").arg(errorReason(errno)));
        homeStat = statPath(home);
    }
    if (homeStat && homeStat->device == st->device && onOneMount(home, path))
        return home;
    return volumeTrash(path, st->device);
}

Result<FilePath> trashItem(const FilePath& item) { return trashItemAs(item, item); }

Result<FilePath> trashItemAs(const FilePath& item, const FilePath& recordedAs)
{
    if (item.isRoot() || isInTrash(item))
        return failure(QStringLiteral("it is already in the Trash"));
    const auto folder = trashFolderFor(item);
    if (!folder)
        return failure(folder.error());
    OpenTrash open;
    if (const Status opened = openTrash(*folder, open); !opened)
        return failure(opened.error());
    const FilePath files = folder->child(QByteArrayView("files"));
    const QByteArray text = infoText(recordedAs, *folder);
    const QByteArray name = recordedAs.fileNameBytes();
    for (int count = 1; count < 100000; ++count) {
        const QByteArray candidate = candidateName(name, count);
        // The .trashinfo is made first and exclusively: it reserves the name in the Trash.
        const QByteArray infoName = candidate + kInfoSuffix;
        const int fd = ::openat(open.info, infoName.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (fd < 0) {
            if (errno == EEXIST)
                continue;
            return failure(errorReason(errno));
        }
        const bool written = writeAll(fd, text);
        const int writeError = errno;
        ::close(fd);
        if (!written) {
            ::unlinkat(open.info, infoName.constData(), 0);
            return failure(QStringLiteral("the Trash’s record can’t be written (%1)").arg(errorReason(writeError)));
        }
        if (::renameat2(AT_FDCWD, item.c_str(), open.files, candidate.constData(), RENAME_NOREPLACE) == 0)
            return files.child(QByteArrayView(candidate));
        const int error = errno;
        ::unlinkat(open.info, infoName.constData(), 0);
        if (error != EEXIST)
            return failure(errorReason(error));
    }
    return failure(errorReason(EEXIST));
}

FilePath infoFileFor(const FilePath& trashedItem)
{
    return trashedItem.parent().parent().child(QByteArrayView("info")).child(
        QByteArrayView(trashedItem.fileNameBytes() + kInfoSuffix));
}

std::optional<Record> record(const FilePath& trashedItem)
{
    if (!isInTrustedTrash(trashedItem))
        return std::nullopt; // what another user's folder says is not believed
    const FilePath infoFile = infoFileFor(trashedItem);
    FILE* file = fopen(infoFile.c_str(), "re");
    if (!file)
        return std::nullopt;
    QByteArray content(8192, Qt::Uninitialized);
    content.truncate(qsizetype(fread(content.data(), 1, size_t(content.size()), file)));
    fclose(file);
    return recordIn(content, trashedItem);
}

Record recordIn(QByteArrayView info, const FilePath& trashedItem)
{
    return {originalPathIn(info, trashedItem), deletionDateIn(info)};
}

std::optional<FilePath> originalPath(const FilePath& trashedItem)
{
    const auto found = record(trashedItem);
    return found ? found->originalPath : std::nullopt;
}

std::optional<Timestamp> deletionDateIn(QByteArrayView info)
{
    for (const QByteArray& line : info.toByteArray().split('\n')) {
        if (!line.startsWith("DeletionDate="))
            continue;
        // Local time without a zone, as the freedesktop Trash writes it.
        const QDateTime date = QDateTime::fromString(QString::fromLatin1(line.mid(13).trimmed()), Qt::ISODate);
        return date.isValid() ? std::optional(date.toMSecsSinceEpoch()) : std::nullopt;
    }
    return std::nullopt;
}

std::optional<FilePath> originalPathIn(QByteArrayView info, const FilePath& trashedItem)
{
    for (const QByteArray& line : info.toByteArray().split('\n')) {
        if (!line.startsWith("Path="))
            continue;
        const QByteArray path = QByteArray::fromPercentEncoding(line.mid(5).trimmed());
        // A name never holds NUL: the system would act on the path cut short there.
        if (path.isEmpty() || path.contains('\0'))
            return std::nullopt;
        if (path.startsWith('/'))
            return FilePath::fromNative(path);
        // Relative to the volume's top folder, which holds the Trash folder; ".." can't leave it.
        FilePath top = trashedItem.parent().parent().parent();
        if (top.fileNameBytes() == ".Trash")
            top = top.parent();
        const FilePath former = top.child(QByteArrayView(path));
        return top.isAncestorOf(former) ? std::optional(former) : std::nullopt;
    }
    return std::nullopt;
}

void removeInfo(const FilePath& trashedItem) { ::unlink(infoFileFor(trashedItem).c_str()); }

bool isInTrustedTrash(const FilePath& path)
{
    return isInTrash(path) && checkTrashFolder(path.parent().parent());
}

bool isInTrash(const FilePath& path)
{
    const FilePath files = path.parent();
    if (files.fileNameBytes() != "files")
        return false;
    const FilePath folder = files.parent();
    if (folder == xdg::homeTrash())
        return true;
    const QByteArray name = folder.fileNameBytes();
    return name.startsWith(".Trash-") || folder.parent().fileNameBytes() == ".Trash";
}

} // namespace orwick::trash
