#pragma once
// The "Tags" submenus of the File menu and the file list's context menu, and the colour tags'
// keys. Each row is a command of the catalogue's tag family ("tag." + name): a colour dot, the
// tag's name, checked when every selected item carries it; choosing it adds or removes the tag
// (TagCommands::toggle). The rows are read afresh each time a submenu opens, so the tags in use
// show as they come and go. The colour tags' keys (Alt+1 … Alt+7) work while the menus are
// closed; a key whose command is dimmed says why in a toast.

class QMainWindow;
class QMenu;

namespace orwick {

class WindowState;

namespace TagsMenu {

// The shortcut actions of the colour tags, on `window`; the menus share them.
void addShortcuts(QMainWindow* window, WindowState* state);
// Appends the "Tags" submenu to `menu`.
QMenu* addTo(QMenu* menu, QMainWindow* window, WindowState* state);

} // namespace TagsMenu
} // namespace orwick
