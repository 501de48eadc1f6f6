#pragma once
// The keys every view of a pane shares, so moving, extending, selecting, opening, history and
// type-select work the same in the list, the table, the grid and the columns.

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

// Acts on the key and returns true when it was one of the pane's. Besides moving and selecting:
// Ctrl+1 grid, Ctrl+2 list, Ctrl+3 columns, Ctrl+4 table; Ctrl+Alt+1…4 sort by name, date
// modified, size, kind; Ctrl+Meta+G groups by date; with "vimKeys" on, j k J K h l gg G.
bool handlePaneKey(PaneState& pane, QKeyEvent* event, const PaneKeyContext& context);

} // namespace orwick
