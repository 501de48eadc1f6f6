#include "platform/Xattr.h"

#include <cerrno>
#include <sys/xattr.h>

namespace orwick::xattr {

std::optional<QByteArray> get(const FilePath& path, const char* name)
{
    QByteArray value(256, Qt::Uninitialized);
    for (int attempt = 0; attempt < 4; ++attempt) {
        const ssize_t n = lgetxattr(path.c_str(), name, value.data(), value.size());
        if (n >= 0) {
            value.truncate(n);
            return value;
        }
        if (errno != ERANGE)
            return std::nullopt;
        const ssize_t needed = lgetxattr(path.c_str(), name, nullptr, 0);
        if (needed < 0)
            return std::nullopt;
        value.resize(needed);
    }
    return std::nullopt;
}

Reading read(const FilePath& path, const char* name)
{
    QByteArray value(256, Qt::Uninitialized);
    for (int attempt = 0; attempt < 4; ++attempt) {
        const ssize_t n = lgetxattr(path.c_str(), name, value.data(), value.size());
        if (n >= 0) {
            value.truncate(n);
            return {value, 0};
        }
        if (errno == ENODATA || errno == ENOTSUP)
            return {}; // a disk without attributes holds none
        if (errno != ERANGE)
            return {std::nullopt, errno};
        const ssize_t needed = lgetxattr(path.c_str(), name, nullptr, 0);
        if (needed < 0)
            return errno == ENODATA ? Reading{} : Reading{std::nullopt, errno};
        value.resize(needed);
    }
    return {std::nullopt, ERANGE};
}

int write(const FilePath& path, const char* name, const std::optional<QByteArray>& value)
{
    if (value)
        return lsetxattr(path.c_str(), name, value->constData(), size_t(value->size()), 0) == 0 ? 0 : errno;
    if (lremovexattr(path.c_str(), name) == 0 || errno == ENODATA)
        return 0;
    return errno;
}

static QString refusal(const FilePath& path)
{
    if (errno == ENOTSUP)
        return QStringLiteral("The disk that holds “%1” doesn’t keep extra attributes.").arg(path.fileName());
    if (errno == EACCES || errno == EPERM || errno == EROFS)
        return QStringLiteral("“%1” can’t be changed: no permission.").arg(path.fileName());
    if (errno == ENOSPC || errno == EDQUOT)
        return QStringLiteral("There’s no room left to store attributes on “%1”.").arg(path.fileName());
    if (errno == ENOENT)
        return QStringLiteral("“%1” is no longer there.").arg(path.fileName());
    return QStringLiteral("Couldn’t change the attributes of “%1”.").arg(path.fileName());
}

Status set(const FilePath& path, const char* name, const QByteArray& value)
{
    if (lsetxattr(path.c_str(), name, value.constData(), value.size(), 0) != 0)
        return failure(refusal(path));
    return {};
}

Status remove(const FilePath& path, const char* name)
{
    if (lremovexattr(path.c_str(), name) != 0 && errno != ENODATA)
        return failure(refusal(path));
    return {};
}

std::optional<QList<QByteArray>> names(int fd)
{
    QByteArray buffer;
    for (;;) {
        const ssize_t needed = flistxattr(fd, nullptr, 0);
        if (needed < 0)
            return errno == ENOTSUP ? std::optional<QList<QByteArray>>(QList<QByteArray>{}) : std::nullopt;
        if (needed == 0)
            return QList<QByteArray>{};
        buffer.resize(needed);
        const ssize_t n = flistxattr(fd, buffer.data(), size_t(buffer.size()));
        if (n >= 0) {
            buffer.truncate(n);
            break;
        }
        if (errno != ERANGE) // ERANGE: one was added meanwhile; ask again
            return std::nullopt;
    }
    QList<QByteArray> list;
    for (const QByteArray& name : buffer.split('\0'))
        if (!name.isEmpty())
            list.append(name);
    return list;
}

QList<QByteArray> copyAll(int from, int to, int* error)
{
    QList<QByteArray> refused;
    auto refuse = [&](const QByteArray& name) {
        if (error && refused.isEmpty())
            *error = errno;
        refused.append(name);
    };
    const auto list = names(from);
    if (!list) {
        refused.append(QByteArray());
        if (error)
            *error = errno;
        return refused;
    }
    QByteArray value;
    for (const QByteArray& name : *list) {
        ssize_t n = -1;
        for (int attempt = 0; attempt < 4; ++attempt) {
            const ssize_t needed = fgetxattr(from, name.constData(), nullptr, 0);
            if (needed < 0)
                break;
            value.resize(needed);
            n = fgetxattr(from, name.constData(), value.data(), size_t(value.size()));
            if (n >= 0 || errno != ERANGE)
                break;
        }
        if (n < 0) {
            if (errno != ENODATA) // removed meanwhile: nothing to keep
                refuse(name);
            continue;
        }
        if (fsetxattr(to, name.constData(), value.constData(), size_t(n), 0) != 0
            && !(name.startsWith("security.") && (errno == ENOTSUP || errno == EPERM)))
            refuse(name);
    }
    return refused;
}

} // namespace orwick::xattr
