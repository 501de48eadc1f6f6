#include "ui/panels/DiskToolKeys.h"

#include "state/PaneState.h"
#include "ui/panels/CleanUpPanel.h"
#include "ui/panels/DuplicatesPanel.h"
#include "ui/panels/SpacePanel.h"

#include <QMainWindow>

namespace orwick::DiskToolKeys {

namespace {

bool showsFolder(PaneState* pane) { return pane && !pane->url().isEmpty() && !pane->listing(); }

template <class Panel>
void open(QMainWindow* window, PaneState* pane)
{
    if (!showsFolder(pane))
        return;
    PanelSheet::closeOpenSheet(window);
    new Panel(pane, window);
}

} // namespace

void openDuplicates(QMainWindow* window, PaneState* pane) { open<DuplicatesPanel>(window, pane); }
void openSpace(QMainWindow* window, PaneState* pane) { open<SpacePanel>(window, pane); }
void openCleanUp(QMainWindow* window, PaneState* pane) { open<CleanUpPanel>(window, pane); }

} // namespace orwick::DiskToolKeys
