#pragma once
// The duplicate finder's first stage: walk a tree and note every regular file at or above a
// minimum size, with what identifies it (device, inode) and what orders it (size, time).
// Internal to Duplicates; kept apart so the walk reads top to bottom.

#include "base/CancelFlag.h"
#include "base/FilePath.h"
#include "disktools/Duplicates.h"

#include <vector>

namespace orwick::Duplicates {

struct WalkedFile {
    quint32 folder = 0; // index into the worker's folders
    QByteArray name;
    qint64 size = 0;
    qint64 modifiedNs = 0;
    quint64 device = 0;
    quint64 inode = 0;
};

// What one worker saw; files name their folder by index into `folders`.
struct WalkedPart {
    std::vector<FilePath> folders;
    std::vector<WalkedFile> files;
};

struct WalkResult {
    std::vector<WalkedPart> parts; // one per worker
    qint64 files = 0;              // regular files looked at (at or above the minimum or not)
    bool isPartial = false;
};

WalkResult walkTree(const FilePath& folder, const Options& options, const CancelFlag& cancel, Progress* progress);

bool isSkippedFolder(QByteArrayView name);

} // namespace orwick::Duplicates
