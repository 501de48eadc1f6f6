#include "fileops/TreeCopy.h"

#include "fileops/FileDataCopy.h"
#include "fileops/OperationTexts.h"
#include "platform/DirectoryReader.h"
#include "platform/ErrorText.h"
#include "platform/UniqueFd.h"
#include "platform/Xattr.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <mutex>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace orwick {

namespace {

qint64 nanoseconds(const struct statx_timestamp& t) { return qint64(t.tv_sec) * 1000000000 + t.tv_nsec; }

// A deep tree holds two descriptors per level; the default soft limit of 1024 would stop a
// copy long before kMaxDepth. The hard limit is ours to take.
void allowDeepTrees()
{
    static std::once_flag once;
    std::call_once(once, [] {
        struct rlimit limit {};
        if (getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_cur < 8192 && limit.rlim_max > limit.rlim_cur) {
            limit.rlim_cur = std::min<rlim_t>(limit.rlim_max, 8192);
            setrlimit(RLIMIT_NOFILE, &limit);
        }
    });
}

QString shown(const QByteArray& relative) { return quoted(displayName(relative)); }

} // namespace

bool SourceMeta::read(int dirFd, const char* name)
{
    struct statx sx;
    const unsigned mask = STATX_TYPE | STATX_MODE | STATX_NLINK | STATX_UID | STATX_GID | STATX_ATIME | STATX_MTIME
                        | STATX_CTIME | STATX_INO | STATX_SIZE | STATX_BLOCKS;
    if (statx(dirFd, name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, mask, &sx) != 0)
        return false;
    mode = sx.stx_mode;
    device = (quint64(sx.stx_dev_major) << 32) | sx.stx_dev_minor; // as EntryStat has it
    inode = sx.stx_ino;
    links = sx.stx_nlink;
    uid = sx.stx_uid;
    gid = sx.stx_gid;
    rdev = makedev(sx.stx_rdev_major, sx.stx_rdev_minor);
    size = qint64(sx.stx_size);
    allocated = (sx.stx_mask & STATX_BLOCKS) ? qint64(sx.stx_blocks) * 512 : size;
    times[0] = {sx.stx_atime.tv_sec, sx.stx_atime.tv_nsec};
    times[1] = {sx.stx_mtime.tv_sec, sx.stx_mtime.tv_nsec};
    changedNs = nanoseconds(sx.stx_ctime);
    return true;
}

CopiedEntry SourceMeta::entry(QByteArray relative) const
{
    return {std::move(relative), mode, device, inode, size, qint64(times[1].tv_sec) * 1000000000 + times[1].tv_nsec,
            changedNs};
}

// One folder being filled: its source and target open, its entries read, and its own
// metadata to apply once every entry is in.
struct TreeCopy::Frame {
    DirectoryHandle source;
    DirectoryHandle target;
    std::vector<DirEntry> entries;
    size_t next = 0;
    SourceMeta meta;
    QByteArray relative;
};

TreeCopy::TreeCopy(CopyProgress& progress, CopyManifest* manifest) : m_progress(progress), m_manifest(manifest)
{
    allowDeepTrees();
}

TreeCopy::~TreeCopy() = default;

bool TreeCopy::copy(const FilePath& from, const FilePath& to, const SourceMeta& meta)
{
    m_from = from;
    m_to = to;
    const QByteArray fromParent = from.parent().native();
    const QByteArray toParent = to.parent().native();
    UniqueFd srcDir(::open(fromParent.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!srcDir.ok())
        return failReading(errno, {});
    UniqueFd dstDir(::open(toParent.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!dstDir.ok())
        return failWriting(errno, {});
    if (!copyEntry(srcDir.get(), from.fileNameBytes(), dstDir.get(), {}, meta))
        return false;
    // Folders are filled one entry at a time from the top of the stack.
    while (!m_stack.empty()) {
        Frame& frame = m_stack.back();
        if (frame.next == frame.entries.size()) {
            const bool finished = finishFolder(frame);
            m_stack.pop_back();
            if (!finished)
                return false;
            continue;
        }
        const DirEntry& entry = frame.entries[frame.next++];
        const QByteArray relative = frame.relative.isEmpty() ? entry.name : frame.relative + '/' + entry.name;
        SourceMeta child;
        if (!child.read(frame.source.fd(), entry.name.constData())) {
            if (errno == ENOENT)
                continue; // removed meanwhile: nothing to copy
            return failReading(errno, relative);
        }
        if (!copyEntry(frame.source.fd(), entry.name, frame.target.fd(), relative, child))
            return false;
    }
    return true;
}

bool TreeCopy::copyEntry(int srcDir, const QByteArray& name, int dstDir, const QByteArray& relative,
                         const SourceMeta& meta)
{
    if (m_progress.isCancelled())
        return cancel();
    // The copy is made under its own (temporary) name; below the top, names are the source's.
    const QByteArray target = relative.isEmpty() ? m_to.fileNameBytes() : name;
    const char* sourceName = name.constData();
    if (S_ISDIR(meta.mode))
        return enterFolder(srcDir, name, dstDir, relative, meta);
    bool ok = true;
    if (S_ISREG(meta.mode))
        ok = copyFile(srcDir, sourceName, dstDir, relative, meta);
    else if (S_ISLNK(meta.mode))
        ok = copyLink(srcDir, sourceName, dstDir, relative, meta);
    else
        ok = copySpecial(dstDir, target.constData(), relative, meta);
    return ok;
}

bool TreeCopy::enterFolder(int srcDir, const QByteArray& name, int dstDir, const QByteArray& relative,
                           const SourceMeta& meta)
{
    // The copy being made, reached again through a mount inside the source: never copied into itself.
    if (!relative.isEmpty() && meta.device == m_targetDevice && meta.inode == m_targetInode)
        return true;
    if (int(m_stack.size()) >= kMaxDepth) {
        m_reason = QStringLiteral("%1 lies more than %2 folders deep, which is more than Orwick copies")
                       .arg(shown(relative))
                       .arg(kMaxDepth);
        return false;
    }
    Frame frame;
    auto source = DirectoryHandle::openChild(srcDir, name.constData());
    if (!source)
        return failReading(errno, relative);
    frame.source = std::move(*source);
    if (!frame.source.readEntries(frame.entries))
        return failReading(errno ? errno : EIO, relative);
    const QByteArray target = relative.isEmpty() ? m_to.fileNameBytes() : name;
    // Writable for us while it fills; its own permissions are set once it is full.
    if (mkdirat(dstDir, target.constData(), 0700) != 0)
        return failWriting(errno, relative);
    auto made = DirectoryHandle::openChild(dstDir, target.constData());
    if (!made)
        return failWriting(errno, relative);
    frame.target = std::move(*made);
    if (relative.isEmpty()) {
        if (const auto st = statFd(frame.target.fd())) {
            m_targetDevice = st->device;
            m_targetInode = st->inode;
        }
    }
    frame.meta = meta;
    frame.relative = relative;
    record(relative, meta);
    m_stack.push_back(std::move(frame));
    return true;
}

bool TreeCopy::finishFolder(Frame& frame)
{
    const int fd = frame.target.fd();
    keepAttributes(frame.source.fd(), fd, frame.relative);
    if (!keepOwnerAndMode(fd, frame.meta) || futimens(fd, frame.meta.times) != 0)
        return failWriting(errno, frame.relative);
    return true;
}

bool TreeCopy::copyFile(int srcDir, const char* name, int dstDir, const QByteArray& relative, const SourceMeta& meta)
{
    const QByteArray target = relative.isEmpty() ? m_to.fileNameBytes() : QByteArray(name);
    if (meta.links > 1 && linkToEarlierCopy(dstDir, target.constData(), meta)) {
        record(relative, meta);
        m_progress.addFinished(meta.size);
        return true;
    }
    UniqueFd in(openat(srcDir, name, O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    if (!in.ok())
        return failReading(errno, relative);
    // A file that will keep our own owner and group is made with its final permissions, so that
    // most copies need no change of owner or mode afterwards (each would dirty the inode again);
    // one that will be given away stays private to us until it is, and one without write
    // permission gets it until its attributes are written (they are checked against the mode).
    const bool ours = meta.uid == geteuid() && meta.gid == getegid() && (meta.mode & S_IWUSR);
    UniqueFd out(openat(dstDir, target.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                        ours ? (meta.mode & 0777) : 0600));
    if (!out.ok())
        return failWriting(errno, relative);
    m_progress.startFile(relative.isEmpty() ? m_from.fileNameBytes() : QByteArrayView(name), meta.size);
    const FileDataResult data = copyFileData(in.get(), out.get(), meta.size, meta.allocated, m_progress);
    if (data.outcome == FileDataResult::Outcome::cancelled)
        return cancel();
    if (data.outcome == FileDataResult::Outcome::failed) {
        const bool onTarget = data.onTarget || data.error == ENOSPC || data.error == EDQUOT || data.error == EFBIG
                           || data.error == EROFS;
        return onTarget ? failWriting(data.error, relative) : failReading(data.error, relative);
    }
    if (meta.size > 0 && data.copied != meta.size) {
        m_reason = QStringLiteral("%1 changed while it was being copied").arg(shown(relative.isEmpty() ? m_from.fileNameBytes() : relative));
        return false;
    }
    keepAttributes(in.get(), out.get(), relative);
    if (!keepOwnerAndMode(out.get(), meta) || futimens(out.get(), meta.times) != 0)
        return failWriting(errno, relative);
    if (close(out.release()) != 0) // a network or full disk may only say so here
        return failWriting(errno, relative);
    if (meta.links > 1)
        m_linked.insert({meta.device, meta.inode}, relative);
    record(relative, meta);
    return true;
}

bool TreeCopy::linkToEarlierCopy(int dstDir, const char* name, const SourceMeta& meta)
{
    const auto earlier = m_linked.constFind({meta.device, meta.inode});
    if (earlier == m_linked.constEnd())
        return false;
    const FilePath first = earlier->isEmpty() ? m_to : m_to.child(QByteArrayView(*earlier));
    // Too many links on the target, or a target that has none: a separate copy will do.
    return linkat(AT_FDCWD, first.c_str(), dstDir, name, 0) == 0;
}

bool TreeCopy::copyLink(int srcDir, const char* name, int dstDir, const QByteArray& relative, const SourceMeta& meta)
{
    const QByteArray target = relative.isEmpty() ? m_to.fileNameBytes() : QByteArray(name);
    const auto pointsTo = readLinkAt(srcDir, name);
    if (!pointsTo)
        return failReading(errno, relative);
    if (symlinkat(pointsTo->constData(), dstDir, target.constData()) != 0)
        return failWriting(errno, relative);
    if (fchownat(dstDir, target.constData(), meta.uid, meta.gid, AT_SYMLINK_NOFOLLOW) != 0 && geteuid() == 0)
        fchownat(dstDir, target.constData(), uid_t(-1), meta.gid, AT_SYMLINK_NOFOLLOW);
    utimensat(dstDir, target.constData(), meta.times, AT_SYMLINK_NOFOLLOW);
    record(relative, meta);
    return true;
}

bool TreeCopy::copySpecial(int dstDir, const char* name, const QByteArray& relative, const SourceMeta& meta)
{
    if (S_ISSOCK(meta.mode)) {
        // A socket is a live program's endpoint; a copy of it would mean nothing.
        leaveOut(relative, QStringLiteral("is a socket"));
        return true;
    }
    if (mknodat(dstDir, name, meta.mode & (S_IFMT | 07777), meta.rdev) != 0) {
        if (errno == EPERM && !S_ISFIFO(meta.mode)) {
            leaveOut(relative, QStringLiteral("is a device, which only the administrator can make"));
            return true;
        }
        return failWriting(errno, relative);
    }
    fchownat(dstDir, name, meta.uid, meta.gid, AT_SYMLINK_NOFOLLOW);
    fchmodat(dstDir, name, meta.mode & 07777, 0);
    utimensat(dstDir, name, meta.times, AT_SYMLINK_NOFOLLOW);
    record(relative, meta);
    return true;
}

void TreeCopy::keepAttributes(int in, int out, const QByteArray& relative)
{
    int error = 0;
    const QList<QByteArray> refused = xattr::copyAll(in, out, &error);
    if (refused.isEmpty())
        return;
    ++m_attributesLost;
    const QString item = shown(relative.isEmpty() ? m_from.fileNameBytes() : relative);
    const QString why = error == ENOTSUP ? QStringLiteral("the disk it went to doesn’t keep them")
                                         : writeErrorReason(error, out);
    if (refused.size() == 1 && !refused.first().isEmpty())
        m_notes.append(QStringLiteral("%1 lost its attribute “%2”: %3.").arg(item, QString::fromUtf8(refused.first()), why));
    else
        m_notes.append(QStringLiteral("%1 lost %2 of its extra attributes: %3.").arg(item).arg(refused.size()).arg(why));
}

bool TreeCopy::keepOwnerAndMode(int fd, const SourceMeta& meta)
{
    // Only what differs is changed: the owner first (a change of owner clears set-id bits),
    // then the mode.
    struct stat made;
    const bool known = fstat(fd, &made) == 0;
    if (!known || made.st_uid != meta.uid || made.st_gid != meta.gid) {
        // Only the administrator may give a file away; a user keeps the group where they may.
        if (fchown(fd, meta.uid, meta.gid) != 0)
            fchown(fd, uid_t(-1), meta.gid);
        return fchmod(fd, meta.mode & 07777) == 0;
    }
    return (made.st_mode & 07777) == (meta.mode & 07777) || fchmod(fd, meta.mode & 07777) == 0;
}

void TreeCopy::record(const QByteArray& relative, const SourceMeta& meta)
{
    if (m_manifest)
        m_manifest->push_back(meta.entry(relative));
}

void TreeCopy::leaveOut(const QByteArray& relative, const QString& what)
{
    ++m_leftOut;
    m_notes.append(QStringLiteral("%1 %2 and was left out.").arg(shown(relative.isEmpty() ? m_from.fileNameBytes() : relative), what));
}

bool TreeCopy::failReading(int error, const QByteArray& relative)
{
    m_error = error;
    m_reason = relative.isEmpty() ? errorReason(error)
                                  : QStringLiteral("%1 inside it can’t be read (%2)").arg(shown(relative), errorReason(error));
    return false;
}

bool TreeCopy::failWriting(int error, const QByteArray& relative)
{
    m_error = error;
    UniqueFd folder(::open(m_to.parent().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const QString why = writeErrorReason(error, folder.get());
    m_reason = relative.isEmpty() ? why : QStringLiteral("%1 couldn’t be written (%2)").arg(shown(relative), why);
    return false;
}

bool TreeCopy::failAtTarget(int error) { return failWriting(error, {}); }

bool TreeCopy::cancel()
{
    m_cancelled = true;
    return false;
}

} // namespace orwick
