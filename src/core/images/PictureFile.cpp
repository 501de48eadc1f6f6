#include "images/PictureFile.h"

#include "platform/ErrorText.h"
#include "platform/UniqueFd.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick::images {
namespace {

QString problemText(const FilePath& file, int error)
{
    if (error == ENOENT)
        return QStringLiteral("“%1” is no longer there.").arg(file.fileName());
    return QStringLiteral("Couldn’t read “%1”: %2.").arg(file.fileName(), errorReason(error));
}

QString notAFileText(const FilePath& file) { return QStringLiteral("“%1” isn’t a file.").arg(file.fileName()); }

} // namespace

Status checkPictureFile(const FilePath& file)
{
    struct stat st;
    if (::stat(file.c_str(), &st) != 0)
        return failure(problemText(file, errno));
    if (!S_ISREG(st.st_mode))
        return failure(notAFileText(file));
    if (::access(file.c_str(), R_OK) != 0)
        return failure(problemText(file, errno));
    return {};
}

Result<QByteArray> readPictureFile(const FilePath& file)
{
    UniqueFd fd(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    if (!fd.ok())
        return failure(problemText(file, errno));
    struct stat st;
    if (::fstat(fd.get(), &st) != 0)
        return failure(problemText(file, errno));
    if (!S_ISREG(st.st_mode))
        return failure(notAFileText(file));
    QByteArray bytes;
    bytes.reserve(qsizetype(st.st_size));
    char chunk[1 << 16];
    for (;;) {
        const ssize_t got = ::read(fd.get(), chunk, sizeof chunk);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return failure(problemText(file, errno));
        if (got == 0)
            return bytes;
        bytes.append(chunk, got);
    }
}

} // namespace orwick::images
