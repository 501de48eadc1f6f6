#pragma once
// One side of a folder comparison: every entry under a root with its relative path, read with the
// directory reader (getdents64, statx relative to each folder's descriptor), links never
// followed, stopping after `limit` files. Internal to FolderDiff; kept apart so the comparison
// reads top to bottom.

#include "async/CancelFlag.h"
#include "files/FilePath.h"

#include <optional>
#include <vector>

namespace orwick::FolderDiff {

struct SideItem {
    enum class Kind : quint8 { file, folder, link, other };
    QByteArray path; // relative, "/"-separated
    Kind kind = Kind::file;
    bool unreadable = false; // a folder that couldn't be read: left out with what it holds
    qint64 size = 0; // -1 for a regular file: read when it is opened
    qint64 modifiedNs = 0;
    QByteArray linkTarget;
};

struct Side {
    FilePath root;                // links in it resolved
    std::vector<SideItem> items;  // ascending by path
    bool isPartial = false;
};

Side walkSide(const FilePath& root, qint64 limit, const CancelFlag& cancel);

// Opens the file `name` in both open folders (no link followed in the last component, and
// without touching its access time where the file is ours to open so), reads their sizes there
// and, when they are equal and at most kLargestRead, compares their bytes in kChunk pieces, in
// turns, stopping at the first difference; equal sizes above that are the same when their times
// are. A file that can't be read makes the pair changed, and so does one read in several pieces
// that changed while it was read. Safe on several threads at once.
struct PairCheck {
    std::optional<qint64> leftSize;
    std::optional<qint64> rightSize;
    bool same = false;
};
PairCheck comparePair(int leftFolder, int rightFolder, const char* name, const CancelFlag& cancel);

} // namespace orwick::FolderDiff
