#pragma once
// Where icons are looked for after the desktop's own icon theme. Without a desktop that names a
// theme (a bare X server, a window manager alone) Qt looks only in "hicolor", which holds hardly
// any action or place icons, so menus, the palette and the sidebar would show none. Adwaita,
// which Orwick's installation brings, is then looked in after the desktop's theme; names it lacks
// too are drawn by Orwick (DrawnIcons.h).

namespace orwick {

// Call once, after the application object exists and before any icon is looked up.
void useIconFallbackTheme();

} // namespace orwick
