#pragma once
// Opening the disk-tool panels (Find Duplicates…, Show Space Used…, Clean Up Build Folders…) on
// the active pane's folder, as the commands of the same names ask. Opening a panel closes the
// one shown before.

class QMainWindow;

namespace orwick {

class PaneState;

namespace DiskToolKeys {

void openDuplicates(QMainWindow* window, PaneState* pane);
void openSpace(QMainWindow* window, PaneState* pane);
void openCleanUp(QMainWindow* window, PaneState* pane);

} // namespace DiskToolKeys
} // namespace orwick
