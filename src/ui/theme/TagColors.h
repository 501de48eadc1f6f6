#pragma once
// The colours of the colour tags (FinderTag's indices: 1 gray, 2 green, 3 purple, 4 blue,
// 5 yellow, 6 red, 7 orange), as dots on rows, tiles, the sidebar and the tag commands draw
// them. They are theme keys ("tag.red"…, themekeys::tag()): the default colour set gives full
// hues (lighter ones in dark appearance), a theme may give its own red or green, and a theme
// file may set any of them; a red tag stays red in every theme.

#include <QColor>

namespace orwick::theme {

// The tag's colour; the theme's dimmed text colour for an index without colour (0 or unknown).
QColor tagColor(int colorIndex);

} // namespace orwick::theme
