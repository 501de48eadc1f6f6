#include "ui/panels/PanelTrash.h"

#include "fileops/FileOperations.h"
#include "ui/window/MainWindow.h"

namespace orwick {

void trashForPanel(QWidget* window, const QList<FilePath>& items, const QString& actionName,
                   std::function<void(const std::vector<FilePath>& moved)> done)
{
    auto* main = qobject_cast<MainWindow*>(window);
    QUndoStack* undo = main ? main->state()->undoStack() : nullptr;
    FileOperations::shared().trash(items, actionName, undo, true, [done = std::move(done)](const QList<FilePath>& moved) {
        if (done)
            done(std::vector<FilePath>(moved.begin(), moved.end()));
    });
}

} // namespace orwick
