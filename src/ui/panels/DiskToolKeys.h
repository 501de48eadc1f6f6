#pragma once
// The disk tools' keys, in one place until the command catalogue takes them over:
//   Ctrl+Alt+D  Find Duplicates…          (on the active pane's folder)
//   Ctrl+Alt+S  Show Space Used…
//   Ctrl+Alt+B  Clean Up Build Folders…
// Opening a panel closes the one shown before.

class QMainWindow;

namespace orwick {

class PaneState;

namespace DiskToolKeys {

// `activePane` answers the pane whose folder a panel opens on.
void install(QMainWindow* window, PaneState* (*activePane)(QMainWindow*));

void openDuplicates(QMainWindow* window, PaneState* pane);
void openSpace(QMainWindow* window, PaneState* pane);
void openCleanUp(QMainWindow* window, PaneState* pane);

} // namespace DiskToolKeys
} // namespace orwick
