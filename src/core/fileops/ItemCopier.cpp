#include "fileops/ItemCopier.h"

#include "platform/DirectoryReader.h"
#include "platform/ErrorText.h"
#include "platform/UniqueFd.h"

#include <QRandomGenerator>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

namespace orwick {

namespace {

constexpr size_t kChunk = 8u << 20;        // between two cancel checks inside a large file
constexpr size_t kBufferSize = 1u << 20;   // for file systems without copy_file_range

struct Meta {
    unsigned mode = 0;
    qint64 size = 0;
    struct timespec times[2] = {}; // access, modification
};

// statx of `name` in `dirFd` without following a link; errno kept on failure.
bool readMeta(int dirFd, const char* name, Meta& meta)
{
    struct statx sx;
    if (statx(dirFd, name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, STATX_TYPE | STATX_MODE | STATX_SIZE | STATX_ATIME | STATX_MTIME, &sx) != 0)
        return false;
    meta.mode = sx.stx_mode;
    meta.size = qint64(sx.stx_size);
    meta.times[0] = {sx.stx_atime.tv_sec, sx.stx_atime.tv_nsec};
    meta.times[1] = {sx.stx_mtime.tv_sec, sx.stx_mtime.tv_nsec};
    return true;
}

class TreeCopier {
public:
    explicit TreeCopier(CopyProgress& progress) : m_progress(progress) {}

    // Copies one entry (already stat'ed) from srcDir/srcName to dstDir/dstName.
    bool copyEntry(int srcDir, const char* srcName, int dstDir, const char* dstName, const Meta& meta)
    {
        if (m_progress.isCancelled())
            return cancel();
        if (S_ISDIR(meta.mode))
            return copyFolder(srcDir, srcName, dstDir, dstName, meta);
        if (S_ISREG(meta.mode))
            return copyFile(srcDir, srcName, dstDir, dstName, meta);
        if (S_ISLNK(meta.mode))
            return copyLink(srcDir, srcName, dstDir, dstName, meta);
        if (S_ISFIFO(meta.mode)) {
            if (mkfifoat(dstDir, dstName, meta.mode & 07777) != 0)
                return fail(errno);
            utimensat(dstDir, dstName, meta.times, AT_SYMLINK_NOFOLLOW);
            return true;
        }
        m_reason = QStringLiteral("“%1” is a device or socket, which can’t be copied").arg(displayName(srcName));
        return false;
    }

    CopyResult result() const
    {
        if (m_cancelled)
            return {CopyResult::Outcome::cancelled, {}};
        if (!m_reason.isEmpty())
            return CopyResult::failedWith(m_reason);
        return CopyResult::failedWith(m_error);
    }

    bool fail(int error)
    {
        m_error = error;
        return false;
    }

private:
    bool cancel()
    {
        m_cancelled = true;
        return false;
    }

    bool copyFolder(int srcDir, const char* srcName, int dstDir, const char* dstName, const Meta& meta)
    {
        auto source = DirectoryHandle::openChild(srcDir, srcName);
        if (!source)
            return fail(errno);
        // Made writable for us while it fills; its own permissions are set at the end.
        if (mkdirat(dstDir, dstName, 0700) != 0)
            return fail(errno);
        auto target = DirectoryHandle::openChild(dstDir, dstName);
        if (!target)
            return fail(errno);
        std::vector<DirEntry> entries;
        if (!source->readEntries(entries))
            return fail(errno ? errno : EIO);
        for (const DirEntry& entry : entries) {
            Meta child;
            if (!readMeta(source->fd(), entry.name.constData(), child)) {
                if (errno == ENOENT)
                    continue; // vanished meanwhile: nothing to copy
                return fail(errno);
            }
            if (!copyEntry(source->fd(), entry.name.constData(), target->fd(), entry.name.constData(), child))
                return false;
        }
        copyAttributes(source->fd(), target->fd());
        if (fchmod(target->fd(), meta.mode & 07777) != 0 || futimens(target->fd(), meta.times) != 0)
            return fail(errno);
        return true;
    }

    bool copyFile(int srcDir, const char* srcName, int dstDir, const char* dstName, const Meta& meta)
    {
        UniqueFd in(openat(srcDir, srcName, O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
        if (in.get() < 0)
            return fail(errno);
        UniqueFd out(openat(dstDir, dstName, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
        if (out.get() < 0)
            return fail(errno);
        m_progress.startFile(srcName, meta.size);
        if (meta.size > 0 && !copyData(in.get(), out.get(), meta.size, srcName))
            return false;
        copyAttributes(in.get(), out.get());
        if (fchmod(out.get(), meta.mode & 07777) != 0 || futimens(out.get(), meta.times) != 0)
            return fail(errno);
        if (close(out.release()) != 0) // a network or full disk may only say so here
            return fail(errno);
        return true;
    }

    bool copyData(int in, int out, qint64 size, const char* name)
    {
        qint64 done = 0;
        while (done < size) {
            if (m_progress.isCancelled())
                return cancel();
            ssize_t n = -1;
            if (m_useCopyRange) {
                n = copy_file_range(in, nullptr, out, nullptr, kChunk, 0);
                if (n < 0 && done == 0 && (errno == EXDEV || errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP)) {
                    m_useCopyRange = false;
                    continue;
                }
            } else {
                n = readWriteChunk(in, out);
            }
            if (n < 0) {
                if (errno == EINTR)
                    continue;
                return fail(errno);
            }
            if (n == 0)
                break;
            done += n;
            m_progress.advance(n);
        }
        if (done != size) {
            m_reason = QStringLiteral("“%1” changed while it was being copied").arg(displayName(name));
            return false;
        }
        return true;
    }

    ssize_t readWriteChunk(int in, int out)
    {
        thread_local std::unique_ptr<char[]> buffer(new char[kBufferSize]);
        const ssize_t n = ::read(in, buffer.get(), kBufferSize);
        if (n <= 0)
            return n;
        for (ssize_t written = 0; written < n;) {
            const ssize_t w = ::write(out, buffer.get() + written, size_t(n - written));
            if (w < 0) {
                if (errno == EINTR)
                    continue;
                return -1;
            }
            written += w;
        }
        return n;
    }

    bool copyLink(int srcDir, const char* srcName, int dstDir, const char* dstName, const Meta& meta)
    {
        const auto target = readLinkAt(srcDir, srcName);
        if (!target)
            return fail(errno);
        if (symlinkat(target->constData(), dstDir, dstName) != 0)
            return fail(errno);
        utimensat(dstDir, dstName, meta.times, AT_SYMLINK_NOFOLLOW);
        return true;
    }

    // Extended attributes (tags, properties); ones the target refuses are left behind.
    static void copyAttributes(int in, int out)
    {
        char names[4096];
        const ssize_t length = flistxattr(in, names, sizeof names);
        if (length <= 0)
            return;
        QByteArray value(4096, Qt::Uninitialized);
        for (const char* name = names; name < names + length; name += strlen(name) + 1) {
            ssize_t size = fgetxattr(in, name, value.data(), size_t(value.size()));
            if (size < 0 && errno == ERANGE) {
                value.resize(65536);
                size = fgetxattr(in, name, value.data(), size_t(value.size()));
            }
            if (size >= 0)
                fsetxattr(out, name, value.constData(), size_t(size), 0);
        }
    }

    CopyProgress& m_progress;
    bool m_useCopyRange = true;
    bool m_cancelled = false;
    int m_error = 0;
    QString m_reason;
};

bool removeChildren(int dirFd)
{
    auto folder = DirectoryHandle::openChild(dirFd, ".");
    std::vector<DirEntry> entries;
    if (!folder || !folder->readEntries(entries))
        return false;
    bool ok = true;
    for (const DirEntry& entry : entries) {
        const char* name = entry.name.constData();
        if (unlinkat(dirFd, name, 0) == 0 || errno == ENOENT)
            continue;
        if (errno != EISDIR && errno != EPERM) {
            ok = false;
            continue;
        }
        auto child = DirectoryHandle::openChild(dirFd, name);
        if (!child) {
            ok = false;
            continue;
        }
        fchmod(child->fd(), 0700); // a read-only folder must let its entries go
        ok = removeChildren(child->fd()) && ok;
        if (unlinkat(dirFd, name, AT_REMOVEDIR) != 0 && errno != ENOENT)
            ok = false;
    }
    return ok;
}

} // namespace

CopyResult CopyResult::failedWith(int error)
{
    if (error == ENOENT)
        return {Outcome::vanished, errorReason(error)};
    return {Outcome::failed, errorReason(error)};
}

FilePath temporarySibling(const FilePath& path, QByteArrayView purpose)
{
    const QByteArray suffix = QByteArray::number(QRandomGenerator::global()->generate64(), 16);
    return path.parent().child(QByteArrayView(".orwick-" + purpose.toByteArray() + "-" + suffix));
}

bool renameNoReplace(const FilePath& from, const FilePath& to)
{
    return renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0;
}

CopyResult copyItem(const FilePath& from, const FilePath& to, CopyProgress& progress, DataSync sync)
{
    Meta meta;
    if (!readMeta(AT_FDCWD, from.c_str(), meta))
        return CopyResult::failedWith(errno);
    const FilePath temporary = temporarySibling(to, "copy");
    TreeCopier copier(progress);
    bool ok = copier.copyEntry(AT_FDCWD, from.c_str(), AT_FDCWD, temporary.c_str(), meta);
    if (ok && sync == DataSync::yes) {
        UniqueFd folder(::open(to.parent().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (folder.get() < 0 || syncfs(folder.get()) != 0)
            ok = copier.fail(errno);
    }
    if (ok && !renameNoReplace(temporary, to))
        ok = copier.fail(errno);
    if (ok)
        return {};
    const CopyResult result = copier.result();
    (void)removeTree(temporary);
    // Only the source vanishing makes a skip; a failure at the target stays a failure.
    if (result.outcome == CopyResult::Outcome::vanished && statPath(from))
        return CopyResult::failedWith(result.reason);
    return result;
}

CopyResult moveItem(const FilePath& from, const FilePath& to, CopyProgress& progress, MoveKind* how)
{
    if (how)
        *how = MoveKind::renamed;
    if (renameNoReplace(from, to))
        return {};
    if (errno != EXDEV)
        return CopyResult::failedWith(errno);
    if (how)
        *how = MoveKind::copied;
    CopyResult copied = copyItem(from, to, progress, DataSync::yes);
    if (!copied.ok())
        return copied;
    if (const Status removed = removeTree(from); !removed)
        return CopyResult::failedWith(QStringLiteral("it was copied, but the original couldn’t be removed (%1)").arg(removed.error()));
    return {};
}

Status removeTree(const FilePath& path)
{
    if (unlink(path.c_str()) == 0 || errno == ENOENT)
        return {};
    if (errno != EISDIR && errno != EPERM)
        return failure(errorReason(errno));
    UniqueFd folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (folder.get() < 0)
        return failure(errorReason(errno));
    fchmod(folder.get(), 0700);
    const bool emptied = removeChildren(folder.get());
    const int error = errno;
    if (rmdir(path.c_str()) != 0)
        return failure(errorReason(emptied ? errno : error));
    return {};
}

namespace {
qint64 folderBytes(int dirFd, const CopyProgress* cancel)
{
    std::vector<DirEntry> entries;
    const auto folder = DirectoryHandle::openChild(dirFd, ".");
    if (!folder || !folder->readEntries(entries))
        return 0;
    qint64 total = 0;
    for (const DirEntry& entry : entries) {
        if (cancel && cancel->isCancelled())
            return total;
        if (entry.type == DT_DIR) {
            if (auto child = DirectoryHandle::openChild(dirFd, entry.name.constData()))
                total += folderBytes(child->fd(), cancel);
        } else if (entry.type == DT_REG || entry.type == DT_UNKNOWN) {
            const auto st = statAt(dirFd, entry.name.constData());
            if (st && st->isRegular())
                total += st->size;
            else if (st && st->isDirectory())
                if (auto child = DirectoryHandle::openChild(dirFd, entry.name.constData()))
                    total += folderBytes(child->fd(), cancel);
        }
    }
    return total;
}
} // namespace

qint64 treeBytes(const FilePath& path, const CopyProgress* cancel)
{
    const auto st = statPath(path);
    if (!st)
        return 0;
    if (st->isRegular())
        return st->size;
    if (!st->isDirectory())
        return 0;
    auto folder = DirectoryHandle::open(path);
    return folder ? folderBytes(folder->fd(), cancel) : 0;
}

} // namespace orwick
