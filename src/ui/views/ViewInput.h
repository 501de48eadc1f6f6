#pragma once
// Mouse and key handling every view of a pane shares, so a click, a double click or a key does
// the same in the list, the table, the grid and the columns: the pane holds the selection, the
// view only says which row was hit and how much fits on a screen.

#include "ui/pane/PaneKeys.h"

class QAbstractItemView;
class QKeyEvent;
class QMouseEvent;
class QWidget;

namespace orwick {

// A press on `view`: selects (plain, Ctrl toggles, Shift extends); a right press on a selected row
// keeps the selection (its menu is for all of it); a plain press on empty space, left or right, clears.
void pressOnView(QAbstractItemView* view, PaneState& pane, QMouseEvent* event);
// A double click on a row opens the selection.
void doubleClickOnView(QAbstractItemView* view, PaneState& pane, QMouseEvent* event);
// Brings the pane's caret into sight in `view` and redraws it. Does nothing while `visibleOwner`
// is hidden: a hidden view catches up when shown (laying out 100,000 rows nobody sees is waste).
void followCursor(QAbstractItemView* view, const QWidget* visibleOwner);
// Rows that fit on one screen of `view` (for Page Up and Page Down).
int pageRowsOf(const QAbstractItemView* view, int rowsPerLine = 1);

} // namespace orwick
