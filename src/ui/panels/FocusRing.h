#pragma once
// Tab and Shift+Tab round a panel's own controls, in the order given, skipping those hidden or
// disabled: from the last back to the first, never on to the panes beneath the panel, where the
// keyboard would be out of sight. A panel's focusNextPrevChild hands its controls here.

#include <QList>

class QWidget;

namespace orwick {

// Moves the keyboard to the next (or previous) of `controls` after the one that has it; from
// anywhere else (the panel itself), to the first (or last). False when none can take it.
bool moveAroundFocusRing(const QList<QWidget*>& controls, bool next);

} // namespace orwick
