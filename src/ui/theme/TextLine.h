#pragma once
// One line of text in a row: drawn at its baseline, vertically centred in its box, and cut only
// when it doesn't fit. QPainter::drawText(QRect, flags, …) lays the text out for wrapping and
// alignment on every call, and eliding first shapes it once more; a list that paints forty rows of
// two texts each pays for that on every frame, so rows use these instead.

#include <Qt>

class QFontMetrics;
class QPainter;
class QRect;
class QString;

namespace orwick {

// The y of the baseline that centres a line of `metrics` in `box`.
int centredBaseline(const QFontMetrics& metrics, const QRect& box);

// Draws `text` at the left of `box` (at its right with Qt::AlignRight), cut by `elide` when wider
// than the box, and returns the width drawn.
int drawTextLine(QPainter* painter, const QFontMetrics& metrics, const QRect& box, const QString& text,
                 Qt::TextElideMode elide = Qt::ElideRight, Qt::Alignment alignment = Qt::AlignLeft);

} // namespace orwick
