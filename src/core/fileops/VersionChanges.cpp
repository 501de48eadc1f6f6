// ChangeRunner's undo and redo of the batch transforms' changes: a replaced file swaps versions
// with the one kept in the Trash, and a made file goes to the Trash only while it still holds
// what was made. Either leaves a file changed meanwhile as it is, and says so.

#include "fileops/FileChange.h"
#include "fileops/FileVersions.h"
#include "fileops/OperationTexts.h"
#include "platform/UniqueFd.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace orwick {

bool ChangeRunner::stillAsMade(const FileChange& change)
{
    if (change.digestAfter.isEmpty())
        return true;
    const UniqueFd fd(::open(change.to.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    if (!fd.ok() && errno == ENOENT)
        return true; // gone: the Trash step counts it as skipped
    struct stat st {};
    const bool same = fd.ok() && ::fstat(fd.get(), &st) == 0 && S_ISREG(st.st_mode)
        && fileversions::digestOfFile(fd.get()) == std::optional(change.digestAfter);
    if (!same)
        fail(QStringLiteral("Couldn’t move %1 to the Trash: it was changed after it was made, so it was left as it is.")
                 .arg(quoted(change.to.fileName())));
    return same;
}

void ChangeRunner::swapVersions(const FileChange& change, bool forward)
{
    const QByteArray& expected = forward ? change.digestBefore : change.digestAfter;
    if (const Status swapped = fileversions::swapWithKept(change.from, change.to, expected); !swapped)
        fail(swapped.error());
}

} // namespace orwick
