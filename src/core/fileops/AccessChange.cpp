// ChangeRunner's access changes: a file's permission bits, owner and group set as asked, the
// exact old values recorded, and put back on undo only where nobody changed them since.

#include "fileops/FileChange.h"
#include "fileops/OperationTexts.h"
#include "platform/ErrorText.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick {

namespace {

QString refusal(int error)
{
    switch (error) {
    case EPERM: return QStringLiteral("only its owner or an administrator can change that");
    case EROFS: return QStringLiteral("the disk is read-only");
    default: return errorReason(error);
    }
}

QString sentence(const FilePath& item, int error)
{
    return QStringLiteral("Couldn’t change the permissions of %1: %2.").arg(quoted(item.fileName()), refusal(error));
}

// Sets `wanted` on `item` where it differs from `now`: owner and group first, since changing
// them clears the set-id bits, then the mode. Returns 0 or the errno of the refusal.
int apply(const FilePath& item, const FileAccess& now, const FileAccess& wanted)
{
    if (wanted.owner != now.owner || wanted.group != now.group) {
        if (::lchown(item.c_str(), wanted.owner, wanted.group) != 0)
            return errno;
    }
    const std::optional<FileAccess> after = FileAccess::of(item);
    if (after && after->mode != wanted.mode) {
        struct stat st {};
        if (::lstat(item.c_str(), &st) == 0 && S_ISLNK(st.st_mode))
            return EOPNOTSUPP; // a link has no permissions of its own
        if (::chmod(item.c_str(), wanted.mode) != 0)
            return errno;
    }
    return 0;
}

} // namespace

bool ChangeRunner::changeAccess(const FilePath& item, const FileAccess& wanted)
{
    const std::optional<FileAccess> now = FileAccess::of(item);
    if (!now) {
        ++m_report.skipped;
        return false;
    }
    if (*now == wanted)
        return true;
    if (const int error = apply(item, *now, wanted)) {
        if (error == EOPNOTSUPP)
            fail(QStringLiteral("Couldn’t change the permissions of %1: a link has no permissions of its own.")
                     .arg(quoted(item.fileName())));
        else
            fail(sentence(item, error));
        // A partial change (owner changed, mode refused) is put back at once.
        if (const auto partly = FileAccess::of(item); partly && *partly != *now)
            apply(item, *partly, *now);
        return false;
    }
    FileChange change{FileChange::Kind::accessChanged, item, {}, {}};
    change.accessBefore = *now;
    change.accessAfter = FileAccess::of(item).value_or(wanted);
    m_report.changes.push_back(std::move(change));
    return true;
}

void ChangeRunner::rewriteAccess(const FileChange& change, bool forward)
{
    const FileAccess& expected = forward ? change.accessBefore : change.accessAfter;
    const FileAccess& wanted = forward ? change.accessAfter : change.accessBefore;
    const std::optional<FileAccess> now = FileAccess::of(change.from);
    if (!now) {
        ++m_report.skipped;
        return;
    }
    // Only what this step changed, and nobody changed since, is taken back (or made again).
    FileAccess target = *now;
    if (now->mode == expected.mode)
        target.mode = wanted.mode;
    if (now->owner == expected.owner)
        target.owner = wanted.owner;
    if (now->group == expected.group)
        target.group = wanted.group;
    if (target == *now)
        return;
    if (const int error = apply(change.from, *now, target))
        fail(sentence(change.from, error));
}

} // namespace orwick
