#pragma once
// Opening the disk-tool panels (Find Duplicates…, Show Space Used…, Clean Up Build Folders…,
// Find in Files…) on the active pane's folder, and Compare on the two items it names, as the
// commands of the same names ask. Opening a panel closes the one shown before; asking again for
// the disk-tool panel already shown on the same folder keeps it as it is.

class QMainWindow;

namespace orwick {

class PaneState;
class WindowState;

namespace DiskToolKeys {

// Draws the window state's panel (the disk tools, and the batch rename the rename command opens
// for several items): the commands set it, a sheet opens; a sheet the user closes sets it back
// to none.
void follow(WindowState& state, QMainWindow* window);

void openDuplicates(QMainWindow* window, PaneState* pane);
void openSpace(QMainWindow* window, PaneState* pane);
void openCleanUp(QMainWindow* window, PaneState* pane);

} // namespace DiskToolKeys
} // namespace orwick
