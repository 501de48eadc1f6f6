#include "platform/AllTrashes.h"

#include "platform/TrashFolder.h"
#include "platform/XdgPaths.h"

#include <QSet>
#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick::trash {

namespace {

bool isFolder(const FilePath& path)
{
    struct stat st {};
    return ::lstat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

// The system's own mounts (/dev/shm, /run/lock…), where no one trashes files; /run/media holds disks.
bool isSystemPlace(const FilePath& point)
{
    const QByteArray& path = point.native();
    for (const char* prefix : {"/dev", "/proc", "/sys", "/run"})
        if (path == prefix || path.startsWith(QByteArray(prefix) + '/'))
            return !path.startsWith("/run/media/");
    return false;
}

} // namespace

QList<FilePath> allTrashFolders() { return allTrashFolders(readMountTable()); }

QList<FilePath> allTrashFolders(const QList<MountEntry>& mounts)
{
    QList<FilePath> folders;
    QSet<FilePath> seen;
    auto add = [&](const FilePath& folder) {
        if (!seen.contains(folder) && isFolder(folder) && checkTrashFolder(folder)) {
            seen.insert(folder);
            folders.append(folder);
        }
    };
    add(xdg::homeTrash());
    const QByteArray uid = QByteArray::number(getuid());
    for (const MountEntry& mount : mounts) {
        if (isNetworkFileSystem(mount.type) || isKernelFileSystem(mount.type) || isSystemPlace(mount.point))
            continue;
        add(mount.point.child(QByteArrayView(".Trash")).child(QByteArrayView(uid)));
        add(mount.point.child(QByteArrayView(".Trash-" + uid)));
    }
    return folders;
}

int countItems(const FilePath& trashFolder)
{
    const FilePath files = trashFolder.child(QByteArrayView("files"));
    DIR* dir = ::opendir(files.c_str());
    if (!dir)
        return 0;
    int count = 0;
    while (const dirent* entry = ::readdir(dir))
        if (qstrcmp(entry->d_name, ".") != 0 && qstrcmp(entry->d_name, "..") != 0)
            ++count;
    ::closedir(dir);
    return count;
}

int countAllItems()
{
    int count = 0;
    for (const FilePath& folder : allTrashFolders())
        count += countItems(folder);
    return count;
}

} // namespace orwick::trash
