#pragma once
// ItemCopier: the worker-side primitives every operation is built from — copy an item (file,
// folder tree, link), move it, remove a tree, measure a tree.
//
// Guarantees:
// - A copy is written under a temporary name beside its destination (".orwick-copy-…") and
//   renamed to the final name only when complete, so a cancelled or failed copy never leaves
//   a half-written item under the final name; the temporary item is removed.
// - Copies keep modification times, permissions and extended attributes, copy links as links,
//   and check each file's size against the source's.
// - A move on one volume is one rename of the top item; across volumes it is a copy that is
//   flushed to the disk (syncfs) and size-checked before the source is removed.
// - Cancellation is honoured between files and between chunks of a large file.
// Safe on any thread; no Qt objects are touched.

#include "fileops/CopyProgress.h"
#include "files/FilePath.h"
#include "base/Result.h"

namespace orwick {

struct CopyResult {
    enum class Outcome { done, vanished, cancelled, failed };
    Outcome outcome = Outcome::done;
    QString reason; // plain words for `failed` ("the disk is full")

    bool ok() const { return outcome == Outcome::done; }
    static CopyResult failedWith(int error);
    static CopyResult failedWith(QString reason) { return {Outcome::failed, std::move(reason)}; }
};

enum class DataSync { no, yes };

// Copies the item at `from` to the free path `to`.
CopyResult copyItem(const FilePath& from, const FilePath& to, CopyProgress& progress, DataSync sync = DataSync::no);

enum class MoveKind { renamed, copied };
// Moves `from` to the free path `to`; `how` tells whether it was a rename or a copy and remove.
CopyResult moveItem(const FilePath& from, const FilePath& to, CopyProgress& progress, MoveKind* how = nullptr);

// One rename that never replaces what is at `to`; fails with errno kept.
bool renameNoReplace(const FilePath& from, const FilePath& to);

// Removes an item and everything inside it. Never follows links.
[[nodiscard]] Status removeTree(const FilePath& path);

// The bytes of regular files in an item (a folder counts what it holds); links count nothing.
qint64 treeBytes(const FilePath& path, const CopyProgress* cancel = nullptr);

// A name in the same folder that nothing uses, for work in progress: ".orwick-PURPOSE-XXXXXXXX".
FilePath temporarySibling(const FilePath& path, QByteArrayView purpose);

} // namespace orwick
