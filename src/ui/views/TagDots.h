#pragma once
// Colour-tag dots on file rows and tiles. A pane's tag decoration puts the colour indices of an
// item's colour tags (QList<int>, FinderTag's indices) into the name cell's data under
// TagColorsRole; a row delegate keeps room for the dots at the right end of the cell, a tile
// draws them in its picture's corner. At most kMaxDots show, overlapping a little as the
// desktop's tags always have.

#include <QModelIndex>

class QIcon;
class QPainter;
class QPoint;
class QRect;

namespace orwick {

inline constexpr int TagColorsRole = Qt::UserRole + 41;
inline constexpr int kMaxTagDots = 3;

// The width to keep free at the right of a row's cell; 0 when the item has no colour tag.
int tagDotsWidth(const QModelIndex& index);
// Draws the dots right-aligned, ending at `right`, centred on `centreY`.
void paintTagDots(QPainter* painter, int right, int centreY, const QModelIndex& index);
// One dot as an icon, for menus and the palette; a plain dot for a tag without colour.
QIcon tagDotIcon(int colorIndex);

} // namespace orwick
