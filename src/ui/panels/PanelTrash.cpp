#include "ui/panels/PanelTrash.h"

namespace orwick {

bool isTrashAvailable() { return false; }

QString trashPendingNote() { return QStringLiteral("Moving to the Trash isn't available in this build yet."); }

void trashForPanel(QWidget* window, const QList<FilePath>& items, const QString& actionName,
                   std::function<void(const std::vector<FilePath>& moved)> done)
{
    // PENDING (file operations engine): FileOperations::shared().trash(items, actionName,
    // mainWindow->state()->undoStack()), then, after its operationFinished(), report the items
    // that no longer exist where they were as moved. Nothing is moved until then.
    Q_UNUSED(window);
    Q_UNUSED(items);
    Q_UNUSED(actionName);
    done({});
}

} // namespace orwick
