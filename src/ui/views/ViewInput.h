#pragma once
// Mouse and key handling every view of a pane shares, so a click, a double click or a key does
// the same in the list, the table, the grid and the columns: the pane holds the selection, the
// view only says which row was hit and how much fits on a screen.

#include "ui/pane/PaneKeys.h"

class QAbstractItemView;
class QKeyEvent;
class QMouseEvent;

namespace orwick {

// A press on `view`: selects (plain, Ctrl toggles, Shift extends); on empty space clears.
void pressOnView(QAbstractItemView* view, PaneState& pane, QMouseEvent* event);
// A double click on a row opens the selection.
void doubleClickOnView(QAbstractItemView* view, PaneState& pane, QMouseEvent* event);
// Rows that fit on one screen of `view` (for Page Up and Page Down).
int pageRowsOf(const QAbstractItemView* view, int rowsPerLine = 1);

} // namespace orwick
