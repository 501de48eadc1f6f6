// fileversions::swapWithKept: undo and redo of a file replaced in place trade the version in place
// with the one kept in the Trash, only while the file holds the version they expect.

#include "fileops/FileVersions.h"
#include "fileops/FileVersionsIo.h"

#include "fileops/ItemCopier.h"
#include "fileops/OperationTexts.h"
#include "platform/ErrorText.h"
#include "platform/UniqueFd.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick::fileversions {

using namespace io;

Status swapWithKept(const FilePath& target, const FilePath& kept, const QByteArray& expected)
{
    auto refused = [&target](const QString& reason) {
        return failure(QStringLiteral("Couldn’t put back %1: %2.").arg(quoted(target.fileName()), reason));
    };
    struct stat keptStat {};
    if (::lstat(kept.c_str(), &keptStat) != 0)
        return refused(QStringLiteral("its other version is no longer in the Trash"));
    const UniqueFd fd(::open(target.c_str(), O_RDONLY | O_NONBLOCK | kOpenFlags));
    struct stat st {};
    if (!fd.ok() || ::fstat(fd.get(), &st) != 0)
        return refused(errno == ENOENT ? QStringLiteral("it is no longer there") : errorReason(errno));
    const auto holds = digestOfFile(fd.get());
    if (!holds)
        return refused(errorReason(errno));
    if (*holds != expected)
        return refused(QStringLiteral("it was changed after it was rewritten, so it was left as it is"));

    if (st.st_nlink <= 1 && st.st_dev == keptStat.st_dev) {
        // The two names trade places in one step; what went to the Trash is checked to be the
        // file that was read, and traded back if another program put a file there meanwhile.
        if (::renameat2(AT_FDCWD, kept.c_str(), AT_FDCWD, target.c_str(), RENAME_EXCHANGE) == 0) {
            struct stat swapped {};
            if (::lstat(kept.c_str(), &swapped) == 0 && swapped.st_ino == st.st_ino)
                return {};
            (void)::renameat2(AT_FDCWD, kept.c_str(), AT_FDCWD, target.c_str(), RENAME_EXCHANGE);
            return refused(QStringLiteral("it was changed after it was rewritten, so it was left as it is"));
        }
        // A disk without that exchange: the version in place is kept by a second name first.
        const FilePath aside = temporarySibling(target, "swap");
        if (::link(target.c_str(), aside.c_str()) == 0) {
            struct stat linked {};
            if (::lstat(aside.c_str(), &linked) != 0 || linked.st_ino != st.st_ino) {
                ::unlink(aside.c_str());
                return refused(QStringLiteral("it was changed after it was rewritten, so it was left as it is"));
            }
            if (::rename(kept.c_str(), target.c_str()) == 0) {
                if (::rename(aside.c_str(), kept.c_str()) != 0)
                    return refused(errorReason(errno));
                return {};
            }
            ::unlink(aside.c_str());
        }
        // Neither (another mount of the disk): through the file's own inode, below.
    }
    // Several names (or another disk): the bytes go through the file's own inode, and what it
    // held goes to the Trash in place of the version put back.
    auto aside = copyAside(fd.get(), st, kept, "swap");
    if (!aside)
        return refused(aside.error());
    const UniqueFd keptFd(::open(kept.c_str(), O_RDONLY | kOpenFlags));
    UniqueFd out(::open(target.c_str(), O_WRONLY | kOpenFlags));
    if (!keptFd.ok() || !out.ok()) {
        ::unlink(aside->c_str());
        return refused(writeReason(errno));
    }
    // Room first, so that a full disk refuses before a byte changes.
    if (keptStat.st_size > st.st_size
        && ::fallocate(out.get(), FALLOC_FL_KEEP_SIZE, off_t(st.st_size), off_t(keptStat.st_size - st.st_size)) != 0
        && (errno == ENOSPC || errno == EDQUOT)) {
        const int error = errno;
        ::unlink(aside->c_str());
        return refused(writeReason(error));
    }
    if (const int error = copyOver(keptFd.get(), qint64(keptStat.st_size), out.get())) {
        const UniqueFd back(::open(aside->c_str(), O_RDONLY | kOpenFlags));
        if (!back.ok() || copyOver(back.get(), qint64(st.st_size), out.get()) != 0)
            return refused(writeReason(error) + QStringLiteral("; what it held is kept in the Trash folder as ")
                           + quoted(aside->fileName()));
        ::unlink(aside->c_str());
        return refused(writeReason(error));
    }
    if (::rename(aside->c_str(), kept.c_str()) != 0)
        return refused(errorReason(errno));
    return {};
}

} // namespace orwick::fileversions
