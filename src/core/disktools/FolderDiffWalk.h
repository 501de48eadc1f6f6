#pragma once
// One side of a folder comparison: every entry under a root with its relative path, read with the
// directory reader (getdents64, statx relative to each folder's descriptor), links never
// followed, stopping after `limit` files. Internal to FolderDiff; kept apart so the comparison
// reads top to bottom.

#include "async/CancelFlag.h"
#include "files/FilePath.h"

#include <vector>

namespace orwick::FolderDiff {

struct SideItem {
    enum class Kind : quint8 { file, folder, link, other };
    QByteArray path; // relative, "/"-separated
    Kind kind = Kind::file;
    bool unreadable = false; // a folder that couldn't be read: left out with what it holds
    qint64 size = 0;
    qint64 modifiedNs = 0;
    QByteArray linkTarget;
};

struct Side {
    FilePath root;                // links in it resolved
    std::vector<SideItem> items;  // ascending by path
    bool isPartial = false;
};

Side walkSide(const FilePath& root, qint64 limit, const CancelFlag& cancel);

// Are the two files' bytes equal? Reads both in kChunk pieces, in turns, with read-ahead hints,
// and stops at the first difference. False when either can't be read or no longer has the size
// and time the walk saw.
// `leftRoot` and `rightRoot` are open descriptors of the two roots; the item's relative path is
// opened below each (no link followed in its last component).
bool sameBytes(int leftRoot, int rightRoot, const SideItem& leftItem, const SideItem& rightItem, const CancelFlag& cancel);

} // namespace orwick::FolderDiff
