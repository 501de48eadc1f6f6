#pragma once
// Puts the ThemeStore's resolved theme into the application and keeps it there: the style's
// check boxes (ThemedStyle.h), the application palette (every role, for active, inactive and disabled widgets), the tooltip palette, the base
// font's pixel size, and a new layout of every item view (row heights). Widgets that colour
// themselves beyond the palette ask to be told (whenChanged).
//
// GUI thread only. follow() is idempotent; the first call also notes the desktop style's own
// light or dark (systemPaletteAppearance), before Orwick's palette replaces it.

#include "theme/ThemeColors.h"

#include <QObject>
#include <QPalette>
#include <functional>

namespace orwick::theme {

// From now on the application follows ThemeStore::shared(): applied at once and after each
// change, before any whenChanged() callback runs.
void follow();

// Light or dark as the desktop style's palette was before Orwick's replaced it: the fallback of
// "Match System" when the settings portal has no say.
Appearance systemPaletteAppearance();

// The application palette for one appearance's colours.
QPalette paletteFor(const ThemeColors& colors);

// Calls `apply` now and after every change of the theme, while `context` lives.
void whenChanged(QObject* context, std::function<void()> apply);

} // namespace orwick::theme
