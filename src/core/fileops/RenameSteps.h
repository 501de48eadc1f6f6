#pragma once
// RenameSteps: moves a set of items at once when their new names may be one another's old names
// (a ↔ b, a → b → c → a, a change of letter case), in as few renames as the names allow. The
// batch rename commits through it, and undo and redo move a run of moves back and forth with it.
//
// Phase one renames each item straight to its new name (renameat2 with RENAME_NOREPLACE: the
// kernel says when a name is taken; nothing is looked up first). An item whose new name another
// item of the set still holds waits until that one has moved (a → b after b → c); an item of a
// swap or cycle, one whose name is held by something else, and one that only changes its letter
// case (one name on a case-insensitive disk) wait under a temporary name in their folder
// (".orwick-rename-…"); one that has to cross to another disk waits where it is. Phase two names
// the items that wait. So a set without swaps or cycles costs one rename per item, and a swap
// two renames for one of its items. Renames go relative to a descriptor of the folder, opened
// once for consecutive items in one folder.
//
// An item gone before its turn is `vanished` and the others go on. Nothing is ever left under a
// temporary name: an item that can't take its new name goes back to its old one, or, when that
// was taken meanwhile, to the first free name beside it ("name 2"), and the result says where.
// Runs on a worker thread; touches no Qt objects.

#include "fileops/CopyProgress.h"
#include "fileops/FileChange.h"

#include <functional>
#include <vector>

namespace orwick {

struct RenameStepResult {
    enum class Outcome {
        renamed,  // the item lies at `landed` now
        vanished, // it was gone before its turn
        failed,   // it couldn't take its new name: `reason`; it lies at `landed` (its old path, or
                  // a free name beside that when the old one was taken meanwhile)
        notTried, // stopped before its turn; it stays where it was
    };
    Outcome outcome = Outcome::notTried;
    FilePath landed;
    QString reason; // failed: in a few plain words, as errorReason() says them ("the disk is full")
};

// What an item does when its new name is held by something outside the set after phase one.
enum class WhenNameTaken {
    fail,          // it keeps its old name and fails (a commit: the user's names or nothing)
    takeNameBeside // it takes the first free name beside its new one, "name 2" (undo and redo)
};

// Moves `moves[i].from` to `moves[i].to` for every i; result i says what became of item i.
// `stop`, when given, is asked before each item of phase one; the items not tried stay put.
// Items set aside in phase one always finish.
std::vector<RenameStepResult> renameInSteps(const QList<FileMove>& moves, WhenNameTaken whenTaken,
                                            CopyProgress& progress, const std::function<bool()>& stop = {});

} // namespace orwick
