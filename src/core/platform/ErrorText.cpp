#include "platform/ErrorText.h"

#include <cerrno>
#include <cstring>
#include <sys/statvfs.h>

namespace orwick {

QString errorReason(int error)
{
    switch (error) {
    case ENOSPC: return QStringLiteral("the disk is full");
    case EDQUOT: return QStringLiteral("your disk quota is used up");
    case EFBIG: return QStringLiteral("the file is too large for that disk");
    case EACCES:
    case EPERM: return QStringLiteral("you don’t have permission");
    case EROFS: return QStringLiteral("the disk is read-only");
    case ENOENT: return QStringLiteral("it isn’t there any more");
    case ENAMETOOLONG: return QStringLiteral("the name is too long");
    case EEXIST:
    case ENOTEMPTY: return QStringLiteral("an item with that name is already there");
    case EIO: return QStringLiteral("the disk reported a read or write error");
    case ENOTDIR: return QStringLiteral("a part of the path isn’t a folder");
    case ELOOP: return QStringLiteral("there are too many links in the path");
    case EBUSY: return QStringLiteral("it is in use");
    case EXDEV: return QStringLiteral("it is on another disk");
    default: return QString::fromLocal8Bit(strerror(error)).toLower();
    }
}

QString writeErrorReason(int error, int targetFd)
{
    if (error == ENOSPC && targetFd >= 0) {
        struct statvfs disk {};
        if (fstatvfs(targetFd, &disk) == 0 && disk.f_files > 0 && disk.f_favail == 0 && disk.f_bavail > 0)
            return QStringLiteral("the disk has no room for more files");
    }
    if (error == ENOENT)
        return QStringLiteral("the place it was going to isn’t there any more");
    return errorReason(error);
}

} // namespace orwick
