#pragma once
// The one place where the disk-tool panels hand files to the Trash. Every removal a panel offers
// goes through trashForPanel(): one undoable move to the Trash by the file operations engine,
// then `done` gets the files that really left (those it could not move stay in the panel).
//
// PENDING: the file operations engine (FileOperations::trash with the window's undo stack) is
// not in this tree yet. Until it is, isTrashAvailable() is false, the panels show their removal
// actions disabled with trashPendingNote(), and trashForPanel() moves nothing. When it lands,
// this file's .cpp is the only code to change.

#include "files/FilePath.h"

#include <QList>
#include <functional>
#include <vector>

class QWidget;

namespace orwick {

bool isTrashAvailable();
QString trashPendingNote();

// `window` is the MainWindow whose undo stack takes the step; `actionName` names the undo step.
void trashForPanel(QWidget* window, const QList<FilePath>& items, const QString& actionName,
                   std::function<void(const std::vector<FilePath>& moved)> done);

} // namespace orwick
