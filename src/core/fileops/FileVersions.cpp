// fileversions: made files placed under free names, and files replaced with their old versions
// kept in the Trash (the swap that undo and redo make is in FileVersionsSwap.cpp).

#include "fileops/FileVersions.h"
#include "fileops/FileVersionsIo.h"

#include "fileops/ItemCopier.h"
#include "fileops/OperationTexts.h"
#include "fileops/UniqueName.h"
#include "platform/ErrorText.h"
#include "platform/Trash.h"
#include "platform/UniqueFd.h"
#include "platform/Xattr.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <xxhash.h>

namespace orwick::fileversions {

using namespace io;

namespace {

QString changeRefusal(const FilePath& file, const QString& reason)
{
    return QStringLiteral("Couldn’t change %1: %2.").arg(quoted(file.fileName()), reason);
}

// "“a.webp” couldn’t be made (the disk is full)": the reason a source's transform failed.
QString notMade(const FilePath& wanted, const QString& reason)
{
    return QStringLiteral("%1 couldn’t be made (%2)").arg(quoted(wanted.fileName()), reason);
}

// Removes an item this code put in the Trash, with its record.
void dropFromTrash(const FilePath& kept)
{
    ::unlink(kept.c_str());
    trash::removeInfo(kept);
}

bool sameVersion(const FilePath& path, const notefile::Fingerprint& version)
{
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0 && notefile::versionOf(st) == version;
}

// A temporary file beside the target holding `bytes`, given the target's owner, group, mode and
// attributes; nothing (and no file left) when one of those can't be given, so that the bytes go
// through the target's own inode instead.
struct Prepared {
    FilePath temporary;
    bool needsInPlace = false;
};
Result<Prepared> prepareTemporary(const FilePath& target, int fd, const struct stat& st, const QByteArray& bytes)
{
    auto [out, temporary] = makeTemporary(target, "replace", 0600);
    if (!out.ok())
        return failure(changeRefusal(target, writeReason(errno)));
    auto discard = [&temporary](int error) -> Result<Prepared> {
        ::unlink(temporary.c_str());
        if (error == 0)
            return Prepared{{}, true};
        return failure(writeReason(error));
    };
    int error = 0;
    if (!writeAll(out.get(), bytes, &error))
        return discard(error);
    struct stat made {};
    if (::fstat(out.get(), &made) != 0)
        return discard(errno);
    // Owner before mode: a change of owner clears the set-user-ID and set-group-ID bits.
    if ((made.st_uid != st.st_uid || made.st_gid != st.st_gid) && ::fchown(out.get(), st.st_uid, st.st_gid) != 0)
        return discard(0);
    if (::fchmod(out.get(), st.st_mode & 07777) != 0 || !xattr::copyAll(fd, out.get()).isEmpty())
        return discard(0);
    if (::fsync(out.get()) != 0)
        return discard(errno);
    return Prepared{temporary, false};
}

// The old version kept in the Trash as `target`: a second name of its inode, or a copy of it.
Result<FilePath> keepOld(const FilePath& target, int fd, const struct stat& st, bool byLink)
{
    FilePath aside;
    if (byLink) {
        aside = temporarySibling(target, "old");
        struct stat linked {};
        if (::link(target.c_str(), aside.c_str()) != 0)
            byLink = false; // a disk without hard links: a copy serves
        else if (::lstat(aside.c_str(), &linked) != 0 || linked.st_ino != st.st_ino || linked.st_dev != st.st_dev) {
            ::unlink(aside.c_str());
            return failure(notefile::changedOnDiskMessage(target));
        }
    }
    if (!byLink) {
        auto copy = copyAside(fd, st, target, "old");
        if (!copy)
            return failure(changeRefusal(target, QStringLiteral("its old version can’t be kept: ") + copy.error()));
        aside = *copy;
    }
    auto kept = trash::trashItemAs(aside, target);
    if (!kept) {
        ::unlink(aside.c_str());
        return failure(changeRefusal(target, QStringLiteral("its old version can’t go to the Trash: ") + kept.error()));
    }
    return *kept;
}

// Writes `bytes` into the target's own inode; on failure the kept old version is copied back,
// and `restored` says whether that worked (if not, the Trash holds the only whole old version).
Status writeThrough(const FilePath& target, const struct stat& st, const QByteArray& bytes, const FilePath& kept,
                    bool* restored)
{
    *restored = true;
    UniqueFd out(::open(target.c_str(), O_WRONLY | kOpenFlags));
    if (!out.ok())
        return failure(changeRefusal(target, writeReason(errno)));
    // Room first, so that a full disk refuses before a byte changes.
    if (bytes.size() > st.st_size
        && ::fallocate(out.get(), FALLOC_FL_KEEP_SIZE, off_t(st.st_size), off_t(bytes.size() - st.st_size)) != 0
        && (errno == ENOSPC || errno == EDQUOT))
        return failure(changeRefusal(target, writeReason(errno)));
    int error = 0;
    if (writeAll(out.get(), bytes, &error) && ::ftruncate(out.get(), off_t(bytes.size())) == 0 && ::fsync(out.get()) == 0)
        return {};
    if (error == 0)
        error = errno;
    const UniqueFd old(::open(kept.c_str(), O_RDONLY | kOpenFlags));
    *restored = old.ok() && copyOver(old.get(), qint64(st.st_size), out.get()) == 0;
    if (!*restored)
        return failure(changeRefusal(target, writeReason(error) + QStringLiteral("; its old version is in the Trash")));
    return failure(changeRefusal(target, writeReason(error)));
}

} // namespace

// XXH3-128: the digests only tell, within this process, whether a file still holds what was
// there or what was written; nothing adversarial and nothing stored, so a fast hash serves.
namespace {

QByteArray bytesOf(XXH128_hash_t hash)
{
    XXH128_canonical_t canonical;
    XXH128_canonicalFromHash(&canonical, hash);
    return QByteArray(reinterpret_cast<const char*>(canonical.digest), sizeof canonical.digest);
}

} // namespace

QByteArray digestOf(QByteArrayView bytes)
{
    return bytesOf(XXH3_128bits(bytes.data(), size_t(bytes.size())));
}

void Digester::FreeState::operator()(XXH3_state_s* state) const
{
    XXH3_freeState(state);
}

Digester::Digester()
    : m_state(XXH3_createState())
{
    if (!m_state || XXH3_128bits_reset(m_state.get()) != XXH_OK)
        qFatal("fileversions: no memory for a digest");
}

Digester::~Digester() = default;

void Digester::add(QByteArrayView bytes)
{
    XXH3_128bits_update(m_state.get(), bytes.data(), size_t(bytes.size()));
}

QByteArray Digester::result() const
{
    return bytesOf(XXH3_128bits_digest(m_state.get()));
}

std::optional<QByteArray> digestOfFile(int fd)
{
    Digester digest;
    QByteArray chunk(1 << 20, Qt::Uninitialized);
    for (off_t offset = 0;;) {
        const ssize_t n = ::pread(fd, chunk.data(), size_t(chunk.size()), offset);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return std::nullopt;
        if (n == 0)
            return digest.result();
        digest.add(QByteArrayView(chunk.constData(), n));
        offset += n;
    }
}

Result<FilePath> writeTemporary(const FilePath& wanted, const QByteArray& bytes)
{
    auto refused = [&wanted](int error) { return failure(notMade(wanted, writeErrorReason(error, -1))); };
    auto [fd, temporary] = makeTemporary(wanted, "make", 0666);
    if (!fd.ok())
        return refused(errno);
    int error = 0;
    if (!writeAll(fd.get(), bytes, &error) || ::fsync(fd.get()) != 0 || ::close(fd.release()) != 0) {
        if (error == 0)
            error = errno;
        ::unlink(temporary.c_str());
        return refused(error == EDQUOT ? ENOSPC : error);
    }
    return temporary;
}

Result<FilePath> placeTemporary(const FilePath& temporary, const FilePath& wanted)
{
    for (int attempt = 0; attempt < 64; ++attempt) {
        const FilePath at = uniqueURL(wanted, false);
        if (renameNoReplace(temporary, at))
            return at;
        if (errno != EEXIST)
            break;
    }
    return failure(notMade(wanted, errorReason(errno)));
}

std::optional<Result<Found>> findForReplace(const FilePath& file)
{
    // A link is followed, so it stays a link to the rewritten file.
    char resolved[PATH_MAX];
    const FilePath target = ::realpath(file.c_str(), resolved) ? FilePath::fromNative(resolved) : file;
    struct stat st {};
    if (::stat(target.c_str(), &st) != 0) {
        if (errno == ENOENT)
            return std::nullopt;
        return failure(changeRefusal(file, errorReason(errno)));
    }
    if (!S_ISREG(st.st_mode))
        return failure(changeRefusal(file, QStringLiteral("it isn’t a file")));
    if (const Status writable = notefile::checkWritable(target); !writable)
        return failure(writable.error());
    // The new version and the kept old one are made beside it.
    if (::faccessat(AT_FDCWD, target.parent().c_str(), W_OK | X_OK, AT_EACCESS) != 0)
        return failure(changeRefusal(file, errno == EROFS ? QStringLiteral("the disk is read-only")
                                                          : QStringLiteral("its folder is read-only")));
    return Found{target, notefile::versionOf(st)};
}

Result<Replaced> replaceKeepingOld(const Found& found, const QByteArray& bytes)
{
    const FilePath& target = found.target;
    const UniqueFd fd(::open(target.c_str(), O_RDONLY | O_NONBLOCK | kOpenFlags));
    struct stat st {};
    if (!fd.ok() || ::fstat(fd.get(), &st) != 0)
        return failure(errno == ENOENT ? changeRefusal(target, QStringLiteral("it is no longer there"))
                                       : changeRefusal(target, writeReason(errno)));
    if (notefile::versionOf(st) != found.version)
        return failure(notefile::changedOnDiskMessage(target));
    const auto before = digestOfFile(fd.get());
    if (!before)
        return failure(changeRefusal(target, errorReason(errno)));
    Replaced replaced{target, {}, *before, digestOf(bytes)};
    if (replaced.digestBefore == replaced.digestAfter)
        return replaced; // nothing to write

    // One name: a new file renamed over it, atomically. Several: the same inode, rewritten.
    Prepared prepared{{}, true};
    if (st.st_nlink <= 1) {
        auto made = prepareTemporary(target, fd.get(), st, bytes);
        if (!made)
            return failure(changeRefusal(target, made.error()));
        prepared = *made;
    }
    auto kept = keepOld(target, fd.get(), st, !prepared.needsInPlace);
    if (!kept) {
        if (!prepared.needsInPlace)
            ::unlink(prepared.temporary.c_str());
        return failure(kept.error());
    }
    replaced.kept = *kept;
    // The last look: a change made by another program since the transform read it wins.
    if (!sameVersion(target, found.version)) {
        dropFromTrash(*kept);
        if (!prepared.needsInPlace)
            ::unlink(prepared.temporary.c_str());
        return failure(notefile::changedOnDiskMessage(target));
    }
    if (prepared.needsInPlace) {
        bool restored = true;
        if (Status written = writeThrough(target, st, bytes, *kept, &restored); !written) {
            if (restored)
                dropFromTrash(*kept);
            return failure(written.error());
        }
        return replaced;
    }
    if (::rename(prepared.temporary.c_str(), target.c_str()) != 0) {
        const int error = errno;
        ::unlink(prepared.temporary.c_str());
        dropFromTrash(*kept);
        return failure(changeRefusal(target, writeReason(error)));
    }
    return replaced;
}

} // namespace orwick::fileversions
