#pragma once
// FileAccess: who owns a file and what its owner, group and others may do with it — the
// permission bits (including set-id and sticky) and the numeric owner and group. A plain value
// that the engine records before and after a change so that undo puts back exactly what was.

#include "base/FilePath.h"

#include <optional>
#include <sys/types.h>

namespace orwick {

struct FileAccess {
    unsigned mode = 0; // the permission bits, 07777
    uid_t owner = 0;
    gid_t group = 0;
    bool operator==(const FileAccess&) const = default;

    // The file's access as it is now, without following a link; nothing when it can't be read.
    static std::optional<FileAccess> of(const FilePath& path);
    // "rwxr-x---" for the nine permission bits.
    static QString permissionText(unsigned mode);
};

} // namespace orwick
