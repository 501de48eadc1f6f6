#include "preview/FileHead.h"

#include "base/Formatting.h"
#include "platform/ErrorText.h"
#include "platform/UniqueFd.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick::preview {

namespace {
constexpr qint64 kChunk = 64 * 1024;
}

Result<FileHead> readHead(const FilePath& path, qint64 limit, const CancelFlag& cancel)
{
    UniqueFd fd(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    if (!fd.ok())
        return failure(QStringLiteral("Can’t read “%1”: %2.").arg(path.fileName(), errorReason(errno)));
    struct stat st {};
    if (::fstat(fd.get(), &st) != 0)
        return failure(QStringLiteral("Can’t read “%1”: %2.").arg(path.fileName(), errorReason(errno)));
    if (!S_ISREG(st.st_mode))
        return failure(QStringLiteral("“%1” isn’t a regular file.").arg(path.fileName()));
    FileHead head;
    head.size = st.st_size;
    const qint64 wanted = std::min(limit, qint64(st.st_size));
    head.bytes.resize(wanted);
    qint64 done = 0;
    while (done < wanted && !cancel.isCancelled()) {
        const ssize_t got = ::read(fd.get(), head.bytes.data() + done, size_t(std::min(kChunk, wanted - done)));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return failure(QStringLiteral("Can’t read “%1”: %2.").arg(path.fileName(), errorReason(errno)));
        if (got == 0)
            break; // the file shrank while being read
        done += got;
    }
    head.bytes.truncate(done);
    head.size = std::max(head.size, done);
    return head;
}

QString firstPartNote(qint64 shown, qint64 whole)
{
    return QStringLiteral("Showing the first %1 of %2").arg(formatByteCount(shown), formatByteCount(whole));
}

} // namespace orwick::preview
