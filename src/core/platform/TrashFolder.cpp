#include "platform/TrashFolder.h"

#include "platform/ErrorText.h"
#include "platform/XdgPaths.h"

#include <cerrno>
#include <unistd.h>

namespace orwick::trash {

namespace {

QByteArray uidText() { return QByteArray::number(getuid()); }

// "the Trash on this disk, “.Trash-1000”, belongs to another user, so it isn’t safe to use"
QString unsafe(const QString& name, const QString& problem)
{
    return QStringLiteral("the Trash on this disk, “%1”, %2, so it isn’t safe to use").arg(name, problem);
}

// An administrator's shared .Trash: a real folder with the sticky bit, so that no user can
// remove or replace another's folder in it.
bool isSharedTrash(const FilePath& folder)
{
    struct stat st {};
    return ::lstat(folder.c_str(), &st) == 0 && S_ISDIR(st.st_mode) && (st.st_mode & S_ISVTX);
}

Status checkAt(const FilePath& folder)
{
    struct stat st {};
    if (::lstat(folder.c_str(), &st) != 0)
        return failure(errorReason(errno));
    return checkOwnFolder(st, folder.fileName());
}

} // namespace

Status checkOwnFolder(const struct stat& st, const QString& name)
{
    if (S_ISLNK(st.st_mode))
        return failure(unsafe(name, QStringLiteral("is a link to another place")));
    if (!S_ISDIR(st.st_mode))
        return failure(unsafe(name, QStringLiteral("isn’t a folder")));
    if (st.st_uid != getuid())
        return failure(unsafe(name, QStringLiteral("belongs to another user")));
    if (st.st_mode & 077)
        return failure(unsafe(name, QStringLiteral("is open to other users")));
    if ((st.st_mode & 0700) != 0700)
        return failure(unsafe(name, QStringLiteral("can’t be written to")));
    return {};
}

Result<FilePath> volumeTrashFolder(const FilePath& top)
{
    const QByteArray uid = uidText();
    const FilePath shared = top.child(QByteArrayView(".Trash"));
    if (isSharedTrash(shared)) {
        const FilePath mine = shared.child(QByteArrayView(uid));
        if ((::mkdir(mine.c_str(), 0700) == 0 || errno == EEXIST) && checkAt(mine))
            return mine;
        // A shared Trash that fails its checks is passed over, as gio does.
    }
    const FilePath own = top.child(QByteArrayView(".Trash-" + uid));
    if (::mkdir(own.c_str(), 0700) != 0 && errno != EEXIST)
        return failure(QStringLiteral("there’s no Trash on the disk “%1” (%2)").arg(top.abbreviated(), errorReason(errno)));
    if (const Status safe = checkAt(own); !safe)
        return failure(safe.error());
    return own;
}

Status checkTrashFolder(const FilePath& folder)
{
    if (folder == xdg::homeTrash())
        return {};
    const QByteArray uid = uidText();
    const QByteArray name = folder.fileNameBytes();
    const bool own = name == ".Trash-" + uid;
    const bool inShared = name == uid && folder.parent().fileNameBytes() == ".Trash";
    if (!own && !inShared)
        return failure(unsafe(folder.fileName(), QStringLiteral("isn’t yours")));
    if (inShared && !isSharedTrash(folder.parent()))
        return failure(unsafe(QStringLiteral(".Trash"), QStringLiteral("isn’t shared the safe way (sticky)")));
    return checkAt(folder);
}

} // namespace orwick::trash
