#pragma once
// NameWalk: the name index's reads of the disk, all through the one search walker
// (SearchWalker.h) — so the index sees what a search sees: no hidden names, no build folders or
// ".git", no network mounts inside a root, no symbolic links followed.
//
// walk() records whole trees into a NameTable (many walker threads feed one table under a
// lock; a thread remembers the folder it is in, so the lock guards only an append). list()
// reads the direct entries of a few folders, for the index's small updates.
// Both run on the calling thread (a background task) and stop soon after `cancel` is set.

#include "base/CancelFlag.h"
#include "search/NameTable.h"

#include <vector>

namespace orwick::NameWalk {

inline constexpr qsizetype kDefaultMaxNames = 2'000'000;

struct Result {
    NameTable table;        // compacted: shallow folders first
    bool isPartial = false; // stopped at maxNames, or cancelled
};

// Each root becomes a root of the table (one that can't be read stays empty).
Result walk(const std::vector<FilePath>& roots, const CancelFlag& cancel, qsizetype maxNames = kDefaultMaxNames,
            int threads = 0);

struct FolderEntries {
    FilePath folder;
    bool exists = false; // false: the folder is gone (or is no folder now)
    struct Entry {
        QByteArray name;
        bool isFolder = false;
        bool isEntered = false; // a folder that a walk goes into (not a build folder or ".git")
    };
    std::vector<Entry> entries; // in the order read
};

std::vector<FolderEntries> list(const std::vector<FilePath>& folders, const CancelFlag& cancel);

} // namespace orwick::NameWalk
