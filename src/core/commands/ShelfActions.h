#pragma once
// The shelf's commands: Add to Shelf, Copy Shelf Here, Move Shelf Here and Clear Shelf, on the
// process's Shelf, each telling the window what it did in a toast.
//
// Landing the shelf is one job of the file operations engine, the path F5 and drops take:
// progress, conflict questions, the toast, one undo step; the landed items are selected in the
// pane once they show. Items that are gone since they were shelved go to the job too, so the
// engine's report counts them ("1 item was no longer there") and never as landed. A move takes
// off the shelf exactly the items the engine moved; the ones skipped, failed, gone or not reached
// before a cancel stay on it. Undoing the move puts the items it brings back to their places on
// the shelf again; redo takes them off again.

#include "base/FilePath.h"
#include "fileops/FileOperations.h"

#include <QList>

namespace orwick {

class WindowState;

namespace shelfActions {

inline constexpr const char* kAddNote = "Select the items to add to the shelf";
inline constexpr const char* kLandNote = "Needs items on the shelf, and a folder shown";
inline constexpr const char* kEmptyNote = "The shelf is empty";

// A selection of files or folders; not of the Trash's or This Computer's rows.
bool canAdd(const WindowState& window);
void addSelection(WindowState& window);
// Puts `items` on the shelf (a drop on it) and says what happened: "Added 3 items to the shelf",
// "“a.txt” is on the shelf already"…
void add(WindowState& window, const QList<FilePath>& items);

// Something on the shelf and a folder shown to land it in.
bool canLand(const WindowState& window);
void land(WindowState& window, FileOperations::Mode mode);

bool canClear(const WindowState& window);
void clear(WindowState& window);

// The toast's words for an add that put `added` on the shelf out of `asked`.
QString addedText(const QList<FilePath>& asked, const QList<FilePath>& added);

} // namespace shelfActions

} // namespace orwick
