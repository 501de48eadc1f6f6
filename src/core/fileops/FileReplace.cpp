// filereplace::replaceFile: a file's new bytes (a note's) written so that it stays the same file
// to the user. The preferred way is a temporary file and a rename (atomic: a reader sees the old note or
// the new one, never half of each); it is taken only when the temporary file can be made to be
// the note in everything but its inode: owner, group, mode and every extended attribute. When
// the note has hard links, or its owner, attributes or folder stand in the way, the bytes go into
// the note's own inode instead.

#include "fileops/FileReplace.h"

#include "fileops/FileVersionsIo.h"
#include "fileops/OperationTexts.h"
#include "platform/ErrorText.h"
#include "platform/UniqueFd.h"
#include "platform/Xattr.h"

#include <QHash>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick::filereplace {

namespace io = fileversions::io;

using notefile::Fingerprint;
using notefile::readFile;
using notefile::versionOf;

namespace {

QString refusal(const FilePath& path, const QString& reason)
{
    return QStringLiteral("Couldn’t change %1: %2.").arg(quoted(path.fileName()), reason);
}

QString readOnlyMessage(const FilePath& path) { return refusal(path, QStringLiteral("it is read-only")); }

QString changedOnDiskMessage(const FilePath& path) { return notefile::changedOnDiskMessage(path); }

// The sentence for a write that failed with `error` (an errno value).
QString writeFailure(const FilePath& path, int error) { return refusal(path, io::writeReason(error)); }

// The file still holds what the caller read, in the same version.
bool unchangedSinceRead(const FilePath& path, const QByteArray& original, const Fingerprint& originalVersion)
{
    const auto now = readFile(path);
    return now && now->version == originalVersion && now->bytes == original;
}

// Writes into the note's own inode, so hard links, owner, attributes and every other trait of
// the file stay as they are. Not atomic: room is reserved first so that a full disk refuses
// before a byte changes, and a failed write puts the original bytes back.
Result<Fingerprint> rewriteInPlace(const FilePath& path, const struct stat& before, const QByteArray& original,
                                   const Fingerprint& originalVersion, const QByteArray& bytes,
                                   const std::function<void()>& beforeCommit)
{
    UniqueFd fd(::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    struct stat st;
    if (!fd.ok())
        return failure(errno == EACCES || errno == EPERM ? readOnlyMessage(path) : writeFailure(path, errno));
    if (::fstat(fd.get(), &st) != 0 || st.st_ino != before.st_ino || st.st_dev != before.st_dev)
        return failure(changedOnDiskMessage(path));
    if (bytes.size() > original.size()
        && ::fallocate(fd.get(), FALLOC_FL_KEEP_SIZE, off_t(original.size()), off_t(bytes.size() - original.size())) != 0
        && (errno == ENOSPC || errno == EDQUOT))
        return failure(writeFailure(path, errno));
    if (beforeCommit)
        beforeCommit();
    if (!unchangedSinceRead(path, original, originalVersion))
        return failure(changedOnDiskMessage(path));
    int error = 0;
    if (!io::writeAll(fd.get(), bytes, &error) || ::ftruncate(fd.get(), off_t(bytes.size())) != 0
        || ::fsync(fd.get()) != 0) {
        if (error == 0)
            error = errno;
        int ignored = 0;
        if (io::writeAll(fd.get(), original, &ignored))
            (void)::ftruncate(fd.get(), off_t(original.size()));
        ::fsync(fd.get());
        return failure(writeFailure(path, error));
    }
    if (::fstat(fd.get(), &st) != 0)
        return failure(writeFailure(path, errno));
    return versionOf(st);
}

// How the making of a temporary file ended.
enum class Swap { done, refused, needsInPlace };

// A temporary file beside the note holding its new bytes, made to be the note in everything but
// its inode; renamed over the note by commitTemporary().
struct Prepared {
    Swap outcome = Swap::done;
    QByteArray temporary;        // its path (done)
    struct stat written {};      // its status once written (done)
    Result<Fingerprint> refusal = Fingerprint(); // why not (refused)
};

// The temporary file is given the note's owner, group, mode and attributes; if any of them
// can't be given, the note is left for rewriteInPlace. With `sync` its data reaches the disk
// here; without, the caller flushes the disk before committing.
Prepared prepareTemporary(const FilePath& path, int noteFd, const struct stat& before, const QByteArray& bytes,
                          bool sync)
{
    QByteArray temp = path.parent().child(QByteArrayView(QByteArray("." + path.fileNameBytes() + ".orwick-XXXXXX"))).native();
    UniqueFd fd(::mkstemp(temp.data()));
    if (!fd.ok()) {
        // A folder we can't write in: the note itself may still be writable.
        if (errno == EACCES || errno == EPERM || errno == EROFS)
            return {Swap::needsInPlace, {}, {}, {}};
        return {Swap::refused, {}, {}, failure(writeFailure(path, errno))};
    }
    auto discard = [&](Swap outcome, int error) -> Prepared {
        ::unlink(temp.constData());
        if (outcome == Swap::needsInPlace)
            return {outcome, {}, {}, {}};
        return {outcome, {}, {}, failure(writeFailure(path, error))};
    };
    int error = 0;
    if (!io::writeAll(fd.get(), bytes, &error))
        return discard(Swap::refused, error);
    struct stat made;
    if (::fstat(fd.get(), &made) != 0)
        return discard(Swap::refused, errno);
    // Owner before mode: a change of owner clears the set-user-ID and set-group-ID bits.
    if ((made.st_uid != before.st_uid || made.st_gid != before.st_gid)
        && ::fchown(fd.get(), before.st_uid, before.st_gid) != 0)
        return discard(Swap::needsInPlace, errno);
    if (::fchmod(fd.get(), before.st_mode & 07777) != 0)
        return discard(Swap::needsInPlace, errno);
    if (!xattr::copyAll(noteFd, fd.get()).isEmpty())
        return discard(Swap::needsInPlace, 0);
    Prepared prepared;
    if ((sync && ::fsync(fd.get()) != 0) || ::fstat(fd.get(), &prepared.written) != 0)
        return discard(Swap::refused, errno);
    prepared.temporary = temp;
    return prepared;
}

// Renames a prepared temporary file over the note, after the last look: another program's
// change since the read wins.
Result<Fingerprint> commitTemporary(const FilePath& path, const Prepared& prepared, const QByteArray& original,
                                    const Fingerprint& originalVersion)
{
    if (!unchangedSinceRead(path, original, originalVersion)) {
        ::unlink(prepared.temporary.constData());
        return failure(changedOnDiskMessage(path));
    }
    if (::rename(prepared.temporary.constData(), path.c_str()) != 0) {
        const int error = errno;
        ::unlink(prepared.temporary.constData());
        return failure(writeFailure(path, error));
    }
    return versionOf(prepared.written);
}

// The note's checks before anything is written: where it really lives (a link is followed, so
// it stays a link), that it is still the regular, writable file that was read. Open on success.
struct Opened {
    FilePath target;
    UniqueFd fd;
    struct stat st {};
};

Result<Opened> openForReplace(const FilePath& path, const Fingerprint& originalVersion)
{
    char resolved[PATH_MAX];
    Opened opened;
    opened.target = ::realpath(path.c_str(), resolved) ? FilePath::fromNative(resolved) : path;
    opened.fd = UniqueFd(::open(opened.target.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    if (!opened.fd.ok() || ::fstat(opened.fd.get(), &opened.st) != 0) {
        if (errno == ENOENT)
            return failure(refusal(path, QStringLiteral("it is no longer there")));
        return failure(writeFailure(path, errno));
    }
    if (!S_ISREG(opened.st.st_mode))
        return failure(refusal(path, QStringLiteral("it isn’t a file")));
    if (const Status writable = notefile::checkWritable(opened.target); !writable)
        return failure(writable.error());
    if (versionOf(opened.st) != originalVersion)
        return failure(changedOnDiskMessage(path));
    return opened;
}

} // namespace

Result<Fingerprint> replaceFile(const FilePath& path, const QByteArray& original, const Fingerprint& originalVersion,
                                const QByteArray& bytes, const std::function<void()>& beforeCommit)
{
    auto opened = openForReplace(path, originalVersion);
    if (!opened)
        return failure(opened.error());
    const FilePath& target = opened->target;
    if (opened->st.st_nlink <= 1) {
        const Prepared prepared = prepareTemporary(target, opened->fd.get(), opened->st, bytes, true);
        if (prepared.outcome == Swap::refused)
            return prepared.refusal;
        if (prepared.outcome == Swap::done) {
            if (beforeCommit)
                beforeCommit();
            return commitTemporary(target, prepared, original, originalVersion);
        }
    }
    return rewriteInPlace(target, opened->st, original, originalVersion, bytes, beforeCommit);
}

QList<Result<Fingerprint>> replaceFiles(const QList<Replacement>& replacements)
{
    QList<Result<Fingerprint>> results(replacements.size(), Fingerprint());
    // Written first, all of them; then one flush of each disk they lie on; then each renamed
    // into place. A crash before the renames leaves every note as it was.
    QList<std::pair<qsizetype, Prepared>> prepared;
    QHash<dev_t, int> disks; // a folder open on each disk, for syncfs
    QList<FilePath> targets(replacements.size());
    // One file alone is synced by itself, as replaceFile() does: a flush of the whole disk would
    // also wait for everything else written there.
    const bool flushOnce = replacements.size() > 1;
    for (qsizetype i = 0; i < replacements.size(); ++i) {
        const Replacement& replacement = replacements[i];
        auto opened = openForReplace(replacement.path, replacement.originalVersion);
        if (!opened) {
            results[i] = failure(opened.error());
            continue;
        }
        targets[i] = opened->target;
        if (opened->st.st_nlink <= 1) {
            Prepared made = prepareTemporary(opened->target, opened->fd.get(), opened->st, replacement.bytes,
                                             !flushOnce);
            if (made.outcome == Swap::refused) {
                results[i] = made.refusal;
                continue;
            }
            if (made.outcome == Swap::done) {
                if (flushOnce && !disks.contains(opened->st.st_dev)) {
                    const int folder = ::open(opened->target.parent().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
                    disks.insert(opened->st.st_dev, folder);
                }
                prepared.append({i, std::move(made)});
                continue;
            }
        }
        results[i] = rewriteInPlace(opened->target, opened->st, replacement.original, replacement.originalVersion,
                                    replacement.bytes, {});
    }
    int flushError = 0;
    for (const int folder : std::as_const(disks)) {
        if (folder < 0 || ::syncfs(folder) != 0)
            flushError = folder < 0 ? EIO : errno;
        if (folder >= 0)
            ::close(folder);
    }
    for (const auto& [i, made] : prepared) {
        const Replacement& replacement = replacements[i];
        if (flushError != 0) {
            ::unlink(made.temporary.constData());
            results[i] = failure(writeFailure(replacement.path, flushError));
            continue;
        }
        results[i] = commitTemporary(targets[i], made, replacement.original, replacement.originalVersion);
    }
    return results;
}

Result<Fingerprint> swapBytes(const FilePath& path, const QByteArray& expected, const QByteArray& bytes)
{
    char resolved[PATH_MAX];
    const FilePath target = ::realpath(path.c_str(), resolved) ? FilePath::fromNative(resolved) : path;
    const auto file = readFile(target);
    if (!file)
        return failure(file.error());
    if (file->bytes != expected)
        return failure(changedOnDiskMessage(path));
    return replaceFile(target, file->bytes, file->version, bytes);
}

} // namespace orwick::filereplace
