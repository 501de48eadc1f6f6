#pragma once
// Icons the window draws itself, in the theme's colours and sharp at any scale: the clear mark of
// a search or filter field and the chevron of a bar whose items don't all fit. They stand in for
// the style's stock pictures, which are loaded from image files through Qt's image plugins and
// the desktop's icon theme: work a window would do before it first shows its files, for two marks.

#include <QIcon>

namespace orwick::drawn {

// A thin cross in the dim text colour (the text colour while pressed or pointed at).
QIcon clearMark();
// "»", pointing along `orientation`'s direction of overflow (right, or down).
QIcon moreChevron(Qt::Orientation orientation);
// The marks of commands that icon themes have no picture for (the view modes, splits, the
// sidebar and preview, the filter, rename), by the command's symbol: "list.bullet",
// "square.grid.2x2", "tablecells", "rectangle.split.3x1", "rectangle.split.2x1",
// "rectangle.bottomhalf.inset.filled", "rectangle.righthalf.inset.filled", "sidebar.left",
// "sidebar.right", "line.3.horizontal.decrease", "pencil", "circle". A null icon for any other.
QIcon symbolMark(const QString& symbol);

} // namespace orwick::drawn
