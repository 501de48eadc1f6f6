#pragma once
// The colours of the colour tags (FinderTag's indices: 1 gray, 2 green, 3 purple, 4 blue,
// 5 yellow, 6 red, 7 orange) in their full hue, as dots on rows, tiles, the sidebar and the
// tag commands draw them; a lighter set in dark appearance. Fixed like the tags' names: a
// red tag is red in every theme.

#include <QColor>

namespace orwick::theme {

// The tag's colour; the theme's dimmed text colour for an index without colour (0 or unknown).
QColor tagColor(int colorIndex);

} // namespace orwick::theme
