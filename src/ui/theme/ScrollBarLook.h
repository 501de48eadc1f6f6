#pragma once
// The look of the scroll bars: a thin rounded thumb on the ground of the list or text it
// scrolls, without arrows and without a drawn groove, as today's desktop file managers show them.
// The thumb is the theme's text colour made faint, stronger under the pointer and while dragged,
// so it reads on any theme; a bar with nothing to scroll shows its ground only. ThemedStyle asks
// these for the bar's thickness, the places of its parts (which also decide where a click lands)
// and its paint.

#include <QColor>
#include <QStyle>
#include <optional>

class QPainter;
class QStyleOptionSlider;
class QWidget;

namespace orwick::scrollbars {

// The thickness of a bar, and the shortest its thumb gets, in device-independent pixels.
int thickness();
int shortestThumb();

// Where `part` of the bar in `option` is: the thumb, the pages before and after it, the groove
// (the whole bar); the arrow buttons have no place.
QRect partRect(const QStyleOptionSlider& option, QStyle::SubControl part);

// The colour a bar, or the corner between two, sits on: the ground of what the nearest scroll
// area at or above `widget` scrolls (a list's rows, a text), so no strip of another colour runs
// beside it. None outside a scroll area.
std::optional<QColor> groundUnder(const QWidget* widget);

// Paints the bar `widget` (a QScrollBar) of `option`.
void paint(const QStyleOptionSlider& option, QPainter* painter, const QWidget* widget);

} // namespace orwick::scrollbars
