#include "ui/panels/PanelTrash.h"

#include "fileops/FileOperations.h"
#include "ui/window/MainWindow.h"

#include <QPointer>

namespace orwick {

namespace {

// Runs `replayed` each time the step that ends at `after` on `undo` is undone or redone, once
// the file operations have finished replaying it.
void watchStep(QWidget* panel, QUndoStack* undo, int after, std::function<void()> replayed)
{
    struct Watch {
        bool applied = true;
        bool pending = false;
    };
    auto watch = std::make_shared<Watch>();
    QObject::connect(undo, &QUndoStack::indexChanged, panel, [watch, after](int index) {
        if ((index >= after) != watch->applied) {
            watch->applied = !watch->applied;
            watch->pending = true;
        }
    });
    FileOperations* operations = &FileOperations::shared();
    QObject::connect(operations, &FileOperations::operationFinished, panel, [watch, operations, replayed] {
        if (watch->pending && operations->isIdle()) {
            watch->pending = false;
            replayed();
        }
    });
}

} // namespace

void trashForPanel(QWidget* panel, const QList<FilePath>& items, const QString& actionName,
                   std::function<void(const std::vector<FilePath>& moved)> done, std::function<void()> replayed)
{
    auto* main = qobject_cast<MainWindow*>(panel->window());
    QPointer<QUndoStack> undo = main ? main->state()->undoStack() : nullptr;
    FileOperations::shared().trash(items, actionName, undo, true,
                                   [guard = QPointer(panel), undo, done = std::move(done), replayed = std::move(replayed)](const QList<FilePath>& moved) {
        if (!guard)
            return;
        // The step is on the stack by now, just below the stack's index.
        if (undo && replayed && !moved.isEmpty())
            watchStep(guard, undo, undo->index(), replayed);
        if (done)
            done(std::vector<FilePath>(moved.begin(), moved.end()));
    });
}

} // namespace orwick
