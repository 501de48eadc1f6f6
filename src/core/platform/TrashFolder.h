#pragma once
// Which Trash folder serves a volume other than the home's, and whether a Trash folder is safe
// to use, by the freedesktop Trash rules as gio applies them:
//
// 1. $topdir/.Trash/$UID, when $topdir/.Trash is a real folder (not a link) with the sticky bit
//    set by an administrator, and $UID in it is a real folder owned by the user with mode 0700
//    (made so when missing);
// 2. otherwise $topdir/.Trash-$UID, made with mode 0700 when missing; when it is there it must be
//    a real folder owned by the user with mode 0700: not a link, not another user's, not open to
//    group or others.
//
// When neither passes, the volume has no Trash we may use: the item is not trashed there, and the
// reason names the problem. A folder another user controls never receives the user's files, and
// the records in it (.trashinfo) are never believed. Plain system calls, safe on any thread.

#include "base/FilePath.h"
#include "base/Result.h"

#include <sys/stat.h>

namespace orwick::trash {

// The Trash folder (holding files/ and info/) for items on the volume whose top folder is
// `top`, made when missing; the error is a reason in plain words, lower-case.
[[nodiscard]] Result<FilePath> volumeTrashFolder(const FilePath& top);

// Whether `folder` is the home Trash or a volume's Trash folder of the user that passes the
// checks above. Makes nothing.
[[nodiscard]] Status checkTrashFolder(const FilePath& folder);

// Whether an open per-volume Trash folder (as fstat or lstat gives it) is the user's own: a
// folder, owned by the user, mode 0700. `name` is how the reason names it: "the Trash on this
// disk, “.Trash-1000”, belongs to another user, so it isn’t safe to use".
[[nodiscard]] Status checkOwnFolder(const struct stat& st, const QString& name);

} // namespace orwick::trash
