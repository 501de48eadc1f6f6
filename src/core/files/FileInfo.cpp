#include "files/FileInfo.h"

#include "files/FileCategory.h"

#include "places/TagList.h"
#include "platform/ErrorText.h"
#include "platform/Xattr.h"

#include <QMimeDatabase>
#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace orwick {

namespace {

constexpr int kShortValue = 80;

std::optional<QDateTime> timeOf(const struct statx_timestamp& t)
{
    return QDateTime::fromMSecsSinceEpoch(t.tv_sec * 1000 + t.tv_nsec / 1000000);
}

QString userName(uid_t uid)
{
    if (const passwd* pw = ::getpwuid(uid))
        return QString::fromLocal8Bit(pw->pw_name);
    return QString::number(uid);
}

QString groupNameOf(gid_t gid)
{
    if (const group* gr = ::getgrgid(gid))
        return QString::fromLocal8Bit(gr->gr_name);
    return QString::number(gid);
}

QString shortValue(const QByteArray& value)
{
    const QByteArray head = value.left(kShortValue);
    QString text;
    const bool controls = std::any_of(head.begin(), head.end(), [](char c) { return uchar(c) < 0x20 && c != '\t' && c != '\n'; });
    if (isValidUtf8(head) && !controls)
        text = QString::fromUtf8(head);
    else
        text = QString::fromLatin1(head.toHex(' '));
    if (value.size() > kShortValue)
        text += QStringLiteral("…");
    return text;
}

QList<FileInfo::Attribute> attributesOf(const FilePath& path)
{
    QList<FileInfo::Attribute> list;
    const ssize_t length = ::llistxattr(path.c_str(), nullptr, 0);
    if (length <= 0)
        return list;
    QByteArray names(length, '\0');
    const ssize_t got = ::llistxattr(path.c_str(), names.data(), names.size());
    if (got <= 0)
        return list;
    names.truncate(got);
    for (const QByteArray& name : names.split('\0')) {
        if (name.isEmpty())
            continue;
        const std::optional<QByteArray> value = xattr::get(path, name.constData());
        list.append({name, value ? shortValue(*value) : QString()});
    }
    return list;
}

} // namespace

FileInfo loadFileInfo(const FilePath& path)
{
    FileInfo info;
    info.path = path;
    info.name = path.fileName();
    struct statx sx {};
    const unsigned mask = STATX_BASIC_STATS | STATX_BTIME;
    if (::statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW, mask, &sx) != 0) {
        info.error = errorReason(errno);
        return info;
    }
    info.isFolder = S_ISDIR(sx.stx_mode);
    info.isLink = S_ISLNK(sx.stx_mode);
    info.access = {static_cast<unsigned>(sx.stx_mode & 07777), sx.stx_uid, sx.stx_gid};
    info.ownerName = userName(sx.stx_uid);
    info.groupName = groupNameOf(sx.stx_gid);
    if (sx.stx_mask & STATX_BTIME)
        info.created = timeOf(sx.stx_btime);
    info.modified = timeOf(sx.stx_mtime);
    info.accessed = timeOf(sx.stx_atime);
    static const QMimeDatabase mimes;
    if (info.isFolder) {
        info.mimeType = QStringLiteral("inode/directory");
        info.kind = QStringLiteral("Folder");
    } else if (info.isLink) {
        info.mimeType = QStringLiteral("inode/symlink");
        info.kind = QStringLiteral("Symbolic link");
        info.size = qint64(sx.stx_size);
        QByteArray target(4096, '\0');
        const ssize_t n = ::readlink(path.c_str(), target.data(), target.size());
        if (n >= 0)
            info.linkTarget = displayName(QByteArrayView(target.constData(), n));
    } else {
        const QMimeType type = mimes.mimeTypeForFile(path.text());
        info.mimeType = type.name();
        info.kind = kindOfMimeComment(type.comment());
        info.size = qint64(sx.stx_size);
    }
    if (const std::optional<QByteArray> tags = xattr::get(path, xattr::tags))
        info.tags = TagList::parse(*tags).names();
    info.attributes = attributesOf(path);
    return info;
}

namespace {

void measureInto(int dirFd, dev_t device, const CancelFlag& cancel, FolderSize& size,
                 const std::function<void(const FolderSize&)>& progress)
{
    DIR* dir = ::fdopendir(dirFd);
    if (!dir) {
        ::close(dirFd);
        size.complete = false;
        return;
    }
    while (const dirent* entry = ::readdir(dir)) {
        if (cancel.isCancelled()) {
            size.complete = false;
            break;
        }
        const char* name = entry->d_name;
        if (name[0] == '.' && (name[1] == 0 || (name[1] == '.' && name[2] == 0)))
            continue;
        struct stat st {};
        if (::fstatat(::dirfd(dir), name, &st, AT_SYMLINK_NOFOLLOW) != 0) {
            size.complete = false;
            continue;
        }
        ++size.items;
        if (S_ISDIR(st.st_mode)) {
            if (st.st_dev != device)
                continue;
            const int child = ::openat(::dirfd(dir), name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
            if (child < 0)
                size.complete = false;
            else
                measureInto(child, device, cancel, size, progress);
        } else {
            size.bytes += st.st_size;
        }
        if (progress && size.items % 256 == 0)
            progress(size);
    }
    ::closedir(dir);
}

} // namespace

FolderSize measureFolder(const FilePath& folder, const CancelFlag& cancel,
                         const std::function<void(const FolderSize&)>& progress)
{
    FolderSize size;
    const int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    struct stat st {};
    if (fd < 0 || ::fstat(fd, &st) != 0) {
        if (fd >= 0)
            ::close(fd);
        size.complete = false;
        return size;
    }
    measureInto(fd, st.st_dev, cancel, size, progress);
    return size;
}

QString infoDateText(const std::optional<QDateTime>& date)
{
    if (!date || !date->isValid())
        return QStringLiteral("—");
    return date->toLocalTime().toString(QStringLiteral("d MMM yyyy HH:mm:ss"));
}

} // namespace orwick
