#pragma once
// The byte comparison of one file pair of a folder comparison. Internal to FolderDiff.
//
// Opens the file `name` in both open folders (no link followed in the last component, and
// without touching its access time where the file is ours to open so), reads their sizes there
// and, when they are equal and at most kLargestRead, compares their bytes in kChunk pieces, in
// turns, stopping at the first difference; equal sizes above that are the same when their times
// are. A file that can't be read makes the pair changed, and so does one read in several pieces
// that changed while it was read. Safe on several threads at once: each thread keeps its own two
// chunk buffers.

#include "base/CancelFlag.h"

#include <QtGlobal>
#include <optional>

namespace orwick::FolderDiff {

struct PairCheck {
    std::optional<qint64> leftSize;
    std::optional<qint64> rightSize;
    bool same = false;
};

PairCheck comparePair(int leftFolder, int rightFolder, const char* name, const CancelFlag& cancel);

} // namespace orwick::FolderDiff
