#pragma once
// SourceRemoval: the second half of a move between disks. Once the copy is complete and on the
// disk, the source loses exactly what was copied and is still as it was copied — same identity
// (device and inode), type, size and times — removed from the leaves up. Anything that changed
// meanwhile, or appeared after its folder was read, stays where it is with the folders that
// hold it, and is counted, so nothing saved during a long move is lost.
// Safe on any thread; no Qt objects are touched.

#include "fileops/TreeCopy.h"

namespace orwick {

struct RemovalResult {
    int leftInPlace = 0;         // items that changed or appeared during the move and stayed
    QList<QByteArray> leftNames; // the first few of them, relative to the moved item
    int failed = 0;              // unchanged items that could not be removed
    int firstError = 0;
};

RemovalResult removeCopiedSource(const FilePath& from, const CopyManifest& manifest);

} // namespace orwick
