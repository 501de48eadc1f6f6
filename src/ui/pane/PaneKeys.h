#pragma once
// The keys every view of a pane shares, so moving, extending, type-select and the catalogue's
// pane keys work the same in the list, the table, the grid and the columns. Only movement lives
// here; every key that runs a command is the command catalogue's: its window keys are the
// window's shortcuts, and its pane keys (Return, Backspace, Esc, Space: AppCommand::paneShortcuts),
// which fields and editors keep for themselves, are looked up here and run on the pane's window.

#include "state/PaneState.h"

class QKeyEvent;

namespace orwick {

// What a view tells the keys about itself.
struct PaneKeyContext {
    int pageRows = 20;          // rows that fit on one screen, for Page Up and Page Down
    bool horizontalMoves = false; // Left and Right move between tiles (grid)
    bool levelMoves = false;    // Left and Right go out of and into folders (columns)
    bool* vimPendingG = nullptr; // the view's memory of a first "g" (for "gg")
};

// Acts on the key and returns true when it was one of the pane's: arrows, Home, End, Page Up
// and Page Down move the cursor (Shift extends the selection; in the grid Left and Right move
// between tiles, in the columns they go out of and into folders), with "vimKeys" on j k J K h l
// gg G move, printable text selects by name, and a pane key of the catalogue runs its command
// (on the window the pane belongs to; a pane outside any window has none to run) once per
// press: a held pane key doesn't repeat its command.
bool handlePaneKey(PaneState& pane, QKeyEvent* event, const PaneKeyContext& context);

} // namespace orwick
