#pragma once
// The workspace entries of the Window menu: "Open Workspace" and "Delete Workspace" submenus,
// listing the saved workspaces afresh each time they open, and running the same catalogue
// commands as the palette rows ("workspace." + name, "deleteWorkspace." + name).

class QMenu;

namespace orwick {

class WindowState;

namespace WorkspacesMenu {

// Appends the two submenus to `menu`.
void addTo(QMenu* menu, WindowState* state);

} // namespace WorkspacesMenu
} // namespace orwick
