// fileversions::io: the small file steps the made files, the replacements and the swaps share.

#include "fileops/FileVersionsIo.h"

#include "fileops/CopyProgress.h"
#include "fileops/FileDataCopy.h"
#include "fileops/ItemCopier.h"
#include "platform/ErrorText.h"
#include "platform/Xattr.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick::fileversions::io {

QString writeReason(int error)
{
    if (error == ENOSPC || error == EDQUOT)
        return QStringLiteral("there’s no room left on the disk");
    if (error == EACCES || error == EPERM)
        return QStringLiteral("it is read-only");
    return errorReason(error);
}

bool writeAll(int fd, QByteArrayView bytes, int* error)
{
    for (qsizetype written = 0; written < bytes.size();) {
        const ssize_t n = ::pwrite(fd, bytes.data() + written, size_t(bytes.size() - written), off_t(written));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            *error = n < 0 ? errno : ENOSPC;
            return false;
        }
        written += n;
    }
    return true;
}

std::pair<UniqueFd, FilePath> makeTemporary(const FilePath& path, QByteArrayView purpose, mode_t mode)
{
    for (int attempt = 0; attempt < 8; ++attempt) {
        const FilePath temporary = temporarySibling(path, purpose);
        UniqueFd fd(::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | kOpenFlags, mode));
        if (fd.ok() || errno != EEXIST)
            return {std::move(fd), temporary};
    }
    return {UniqueFd(), FilePath()};
}

int copyOver(int from, qint64 size, int to)
{
    struct stat st {};
    if (::fstat(from, &st) != 0 || ::lseek(from, 0, SEEK_SET) < 0 || ::lseek(to, 0, SEEK_SET) < 0)
        return errno;
    CopyProgress progress;
    const FileDataResult copied = copyFileData(from, to, size, qint64(st.st_blocks) * 512, progress);
    if (copied.outcome != FileDataResult::Outcome::done)
        return copied.error ? copied.error : EIO;
    if (::ftruncate(to, off_t(size)) != 0 || ::fsync(to) != 0)
        return errno;
    return 0;
}

Result<FilePath> copyAside(int from, const struct stat& st, const FilePath& near, QByteArrayView purpose)
{
    auto [fd, temporary] = makeTemporary(near, purpose, 0600);
    if (!fd.ok())
        return failure(writeReason(errno));
    if (const int error = copyOver(from, qint64(st.st_size), fd.get())) {
        ::unlink(temporary.c_str());
        return failure(writeReason(error));
    }
    (void)::fchmod(fd.get(), st.st_mode & 07777);
    xattr::copyAll(from, fd.get());
    return temporary;
}

} // namespace orwick::fileversions::io
