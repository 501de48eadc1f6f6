// ChangeRunner's undo and redo of what was made or replaced: a replaced file swaps versions with
// the one kept in the Trash, and a made item (a transform's file, a new file or folder, a copy)
// goes to the Trash only while it is still as made (MadeState.h). Either leaves an item changed
// meanwhile as it is, and says so.

#include "fileops/FileChange.h"
#include "fileops/FileVersions.h"
#include "fileops/MadeState.h"
#include "fileops/OperationTexts.h"

#include <cerrno>
#include <sys/stat.h>

namespace orwick {

void rememberMadeState(FileChange& change)
{
    const auto state = madestate::of(change.to, change.kind == FileChange::Kind::copied ? madestate::Contents::stampOnly
                                                                                       : madestate::Contents::digest);
    change.madeStamp = state ? state->stamp : QByteArray();
    change.digestAfter = state ? state->digest : QByteArray();
}

bool ChangeRunner::stillAsMade(const FileChange& change)
{
    if (change.madeStamp.isEmpty() && change.digestAfter.isEmpty())
        return true;
    struct stat st {};
    if (::lstat(change.to.c_str(), &st) != 0 && errno == ENOENT)
        return true; // gone: the Trash step counts it as skipped
    const bool same = madestate::unchanged({change.madeStamp, change.digestAfter}, change.to);
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
