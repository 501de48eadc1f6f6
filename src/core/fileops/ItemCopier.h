#pragma once
// ItemCopier: the worker-side primitives every operation is built from — copy an item (file,
// folder tree, link), move it, remove a tree, measure a tree.
//
// Guarantees:
// - A copy is written under a temporary name beside its destination (".orwick-copy-…") and
//   renamed to the final name only when complete, so a cancelled or failed copy never leaves
//   a half-written item under the final name; the temporary item is removed.
// - Copies keep data with its holes, hard links within the copied item, every extended
//   attribute, owner and group where allowed, permissions and times, and copy links as links
//   (see TreeCopy). What could not be kept is said in the result's notes, never dropped quietly.
// - An item is never copied or moved into itself, however the destination is reached (links,
//   bind mounts): the destination's folder and its ancestors are compared by device and inode.
// - A move on one volume is one rename of the top item. Across volumes it is a copy that is
//   flushed to the disk (syncfs) before the source loses what was copied and is unchanged
//   (see SourceRemoval); what changed or appeared meanwhile stays and is counted.
// - Cancellation is honoured between files and between chunks of a large file.
// Safe on any thread; no Qt objects are touched.

#include "base/FilePath.h"
#include "base/Result.h"
#include "fileops/CopyProgress.h"

#include <QStringList>

namespace orwick {

struct CopyResult {
    enum class Outcome { done, vanished, cancelled, failed };
    Outcome outcome = Outcome::done;
    QString reason;      // plain words for `failed` ("the disk is full")
    QStringList notes;   // sentences on what was kept differently, one per item
    int leftOut = 0;     // items inside that weren't copied (sockets, devices)
    int attributesLost = 0; // items that lost an extended attribute on the way
    int leftInPlace = 0; // a move across volumes: items that changed or appeared meanwhile and stayed

    bool ok() const { return outcome == Outcome::done; }
    static CopyResult failedWith(int error);
    static CopyResult failedWith(QString reason) { return {Outcome::failed, std::move(reason), {}, 0, 0, 0}; }
};

enum class DataSync { no, yes };

// Copies the item at `from` to the free path `to`.
CopyResult copyItem(const FilePath& from, const FilePath& to, CopyProgress& progress, DataSync sync = DataSync::no);

enum class MoveKind { renamed, copied };
// Moves `from` to the free path `to`; `how` tells whether it was a rename or a copy and remove.
CopyResult moveItem(const FilePath& from, const FilePath& to, CopyProgress& progress, MoveKind* how = nullptr);

// True when `folder` is the folder `item` or lies inside it, judged by what the path really
// reaches (device and inode of `folder` and each of its ancestors), so links and bind mounts
// into `item` count too. False for an item that is not a folder.
bool liesWithin(const FilePath& folder, const FilePath& item);

// One rename that never replaces what is at `to`; fails with errno kept.
bool renameNoReplace(const FilePath& from, const FilePath& to);

// Removes an item and everything inside it. Never follows links.
[[nodiscard]] Status removeTree(const FilePath& path);

// The bytes of regular files in an item (a folder counts what it holds); links count nothing.
qint64 treeBytes(const FilePath& path, const CopyProgress* cancel = nullptr);

// A name in the same folder that nothing uses, for work in progress: ".orwick-PURPOSE-XXXXXXXX".
FilePath temporarySibling(const FilePath& path, QByteArrayView purpose);

} // namespace orwick
