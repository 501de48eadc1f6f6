#pragma once
// The one place where the disk-tool panels hand files to the Trash. Every removal a panel offers
// goes through trashForPanel(): one move to the Trash by the file operations engine, registered
// as one step on the window's undo stack (so Ctrl+Z puts everything back), with the engine's
// toast and its Undo button; then `done` gets the files that really left. Those it could not
// move stay where they were, and in the panel; the engine reports why in its own words.
//
// A panel shows what it found before the step; when the step is later undone or redone, its
// picture is out of date. `replayed` then runs (once the file operations are idle again, so the
// files are where the step left them), for the panel to look again.

#include "base/FilePath.h"

#include <QList>
#include <functional>
#include <vector>

class QWidget;

namespace orwick {

// `panel` lies in the MainWindow whose undo stack takes the step (outside one the move can't be
// undone); `actionName` names the step. The callbacks run on the interface thread while `panel`
// lives.
void trashForPanel(QWidget* panel, const QList<FilePath>& items, const QString& actionName,
                   std::function<void(const std::vector<FilePath>& moved)> done, std::function<void()> replayed = {});

} // namespace orwick
