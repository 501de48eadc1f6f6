#pragma once
// The theme family of the command catalogue, rebuilt from the theme store each time the
// catalogue is read, in this order:
//   "theme." + name        "Theme: NAME"                chooses a theme (built in or a file)
//   "appearance.system"    "Appearance: Match System"   follows the desktop's light or dark
//   "appearance.dark"      "Appearance: Dark"
//   "appearance.light"     "Appearance: Light"
//   "accent." + name       "Accent: NAME"               overrides the theme's accent
//   "accent.themesOwn"     "Accent: Theme's Own"        clears the override
// Besides them the fixed commands "chooseTheme" (the Customize sheet, which opens on the theme)
// and "openThemesFolder" (makes the folder and shows it in the active pane) use the store too.

#include "commands/AppCommand.h"

#include <QList>

namespace orwick {

class ThemeStore;

namespace ThemeCommands {

inline constexpr QLatin1StringView kThemePrefix("theme.");
inline constexpr QLatin1StringView kAccentPrefix("accent.");
inline constexpr QLatin1StringView kThemesOwnAccentId("accent.themesOwn");

QList<AppCommand> family(ThemeStore& store);
QList<AppCommand> family(); // over ThemeStore::shared()

// Whether the command `id` of this family is the current choice (menus check it).
bool isChosen(const QString& id, const ThemeStore& store);

// The actions of the two fixed commands.
void chooseTheme(WindowState& window);
void openThemesFolder(WindowState& window);

} // namespace ThemeCommands

} // namespace orwick
