#pragma once
// A small picture of a theme for the rows that choose one (the palette's "Theme: NAME" rows, the
// Theme menu): its background with the sidebar's strip, a line in its text colour and a dot
// of its accent, in the appearance shown now (or the one the theme is made for).
// Drawn once per theme and change of the theme store.

#include <QIcon>
#include <QString>

namespace orwick::theme {

// The swatch of the theme named `name`; an empty icon when no theme has that name.
QIcon themeSwatchIcon(const QString& name);

} // namespace orwick::theme
