#pragma once
// lineText: the text a row of terminal cells shows — what the screen's text, a selection and the
// tests read. A cell with no character is a blank; the second half of a wide character is not
// repeated; combining marks follow their base character; trailing blanks are dropped.

#include "terminal/TerminalCell.h"

#include <QString>

namespace orwick {

enum class TrailingBlanks { drop, keep };

// The text of one line's cells from `from` up to `to` (exclusive; -1: to the line's end),
// without trailing blanks unless asked to keep them (a wrapped line's blanks are its text's).
QString lineText(const TerminalLine& line, int from = 0, int to = -1, TrailingBlanks trailing = TrailingBlanks::drop);

} // namespace orwick
