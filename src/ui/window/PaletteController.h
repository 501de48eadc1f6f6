#pragma once
// Connects a window to its palette: opens it as commands ask (with the catalogue's commands in
// their current enabled state, the shown folder's files and the shared name index as
// candidates) and carries out the row the user chooses: runs a command, goes to a folder,
// reveals a file, opens a project.

#include "commands/PaletteState.h"
#include "state/WindowState.h"

#include <QObject>

namespace orwick {

class PaletteWidget;

class PaletteController : public QObject {
    Q_OBJECT
public:
    PaletteController(WindowState* state, Frecency* frecency, QWidget* window);

    PaletteState* palette() const { return m_palette; }

private:
    void open(PaletteRequest request);
    void carryOut(const PaletteItem& item, PaletteMode mode, bool alternate);

    WindowState* m_state;
    PaletteState* m_palette;
    PaletteWidget* m_widget;
};

} // namespace orwick
