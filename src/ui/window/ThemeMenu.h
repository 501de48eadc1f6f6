#pragma once
// The "Theme" submenu of the View menu: every theme (built in and from the themes folder, read
// afresh each time it opens), the three appearances and an "Accent" submenu, the current choice
// of each checked; then "Choose Theme…" and "Open Themes Folder". Every entry runs the catalogue
// command its palette row runs ("theme." + name, "appearance.dark", "accent.Green"…).

class QMenu;

namespace orwick {

class WindowState;

namespace ThemeMenu {

// Appends the submenu to `menu`; returns it.
QMenu* addTo(QMenu* menu, WindowState* state);

} // namespace ThemeMenu
} // namespace orwick
