#include "platform/Trash.h"

#include "platform/DirectoryReader.h"
#include "platform/ErrorText.h"
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

// The top folder of the volume that holds `path`: the last ancestor on the same device.
FilePath mountTop(const FilePath& path, quint64 device)
{
    FilePath top = path;
    while (!top.isRoot()) {
        const auto st = statPath(top.parent());
        if (!st || st->device != device)
            break;
        top = top.parent();
    }
    return top;
}

// Per-volume Trash folders found so far, by device (checked again before every use).
QMutex cacheLock;
QHash<quint64, FilePath>& volumeTrashCache()
{
    static QHash<quint64, FilePath> cache;
    return cache;
}

Result<FilePath> volumeTrash(const FilePath& path, quint64 device)
{
    {
        QMutexLocker locker(&cacheLock);
        const auto found = volumeTrashCache().constFind(device);
        if (found != volumeTrashCache().constEnd() && statPath(*found))
            return *found;
    }
    const FilePath top = mountTop(path, device);
    const QByteArray uid = QByteArray::number(getuid());
    FilePath folder;
    // An admin-made shared .Trash (sticky, not a link) holds one folder per user.
    const FilePath shared = top.child(QByteArrayView(".Trash"));
    const auto sharedStat = statPath(shared);
    if (sharedStat && sharedStat->isDirectory() && (sharedStat->mode & S_ISVTX)
        && makeTrashFolder(shared.child(QByteArrayView(uid))))
        folder = shared.child(QByteArrayView(uid));
    else if (makeTrashFolder(top.child(QByteArrayView(".Trash-" + uid))))
        folder = top.child(QByteArrayView(".Trash-" + uid));
    else
        return failure(QStringLiteral("there’s no Trash on the disk “%1” (%2)").arg(top.abbreviated(), errorReason(errno)));
    QMutexLocker locker(&cacheLock);
    volumeTrashCache().insert(device, folder);
    return folder;
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
    if (homeStat && homeStat->device == st->device)
        return home;
    return volumeTrash(path, st->device);
}

Result<FilePath> trashItem(const FilePath& item)
{
    if (item.isRoot() || isInTrash(item))
        return failure(QStringLiteral("it is already in the Trash"));
    const auto folder = trashFolderFor(item);
    if (!folder)
        return failure(folder.error());
    const FilePath files = folder->child(QByteArrayView("files"));
    const FilePath info = folder->child(QByteArrayView("info"));
    const QByteArray text = infoText(item, *folder);
    const QByteArray name = item.fileNameBytes();
    for (int count = 1; count < 100000; ++count) {
        const QByteArray candidate = candidateName(name, count);
        // The .trashinfo is made first and exclusively: it reserves the name in the Trash.
        const FilePath infoFile = info.child(QByteArrayView(candidate + kInfoSuffix));
        int fd = ::open(infoFile.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (fd < 0 && errno == ENOENT && makeTrashFolder(*folder))
            fd = ::open(infoFile.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (fd < 0) {
            if (errno == EEXIST)
                continue;
            return failure(errorReason(errno));
        }
        const bool written = writeAll(fd, text);
        ::close(fd);
        if (!written) {
            ::unlink(infoFile.c_str());
            return failure(QStringLiteral("the Trash’s record can’t be written (%1)").arg(errorReason(errno)));
        }
        const FilePath target = files.child(QByteArrayView(candidate));
        if (::renameat2(AT_FDCWD, item.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0)
            return target;
        if (errno == ENOENT && statPath(item) && makeTrashFolder(*folder)
            && ::renameat2(AT_FDCWD, item.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0)
            return target; // files/ was missing
        const int error = errno;
        ::unlink(infoFile.c_str());
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

std::optional<FilePath> originalPath(const FilePath& trashedItem)
{
    const FilePath infoFile = infoFileFor(trashedItem);
    FILE* file = fopen(infoFile.c_str(), "re");
    if (!file)
        return std::nullopt;
    QByteArray content(8192, Qt::Uninitialized);
    content.truncate(qsizetype(fread(content.data(), 1, size_t(content.size()), file)));
    fclose(file);
    return originalPathIn(content, trashedItem);
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
