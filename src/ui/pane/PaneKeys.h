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
};

// Acts on the key and returns true when it was one of the pane's.
bool handlePaneKey(PaneState& pane, QKeyEvent* event, const PaneKeyContext& context);

} // namespace orwick
