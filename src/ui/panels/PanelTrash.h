#pragma once
// The one place where the disk-tool panels hand files to the Trash. Every removal a panel offers
// goes through trashForPanel(): one move to the Trash by the file operations engine, registered
// as one step on the window's undo stack (so Ctrl+Z puts everything back), with the engine's
// toast and its Undo button; then `done` gets the files that really left. Those it could not
// move stay where they were, and in the panel; the engine reports why in its own words.

#include "files/FilePath.h"

#include <QList>
#include <functional>
#include <vector>

class QWidget;

namespace orwick {

// `window` is the MainWindow whose undo stack takes the step (none: the move can't be undone
// from a window); `actionName` names the undo step. `done` runs on the interface thread.
void trashForPanel(QWidget* window, const QList<FilePath>& items, const QString& actionName,
                   std::function<void(const std::vector<FilePath>& moved)> done);

} // namespace orwick
