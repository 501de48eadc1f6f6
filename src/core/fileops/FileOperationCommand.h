#pragma once
// FileOperationCommand: the undo step of one file operation. It holds the operation's changes;
// undo and redo hand them to FileOperations, which runs them as a job, one at a time in the
// order they were asked. The first redo (made by QUndoStack::push) does nothing: the
// operation itself already ran.

#include "fileops/FileChange.h"

#include <QPointer>
#include <QUndoCommand>
#include <QUndoStack>
#include <functional>
#include <memory>

namespace orwick {

class FileOperations;

class FileOperationCommand : public QUndoCommand {
public:
    // `stack` is the undo stack the step goes on: failures of its undo and redo are told to its window.
    // `alongside` runs with each later undo (false) and redo (true), on this thread, when the
    // file work is asked for: state of the caller's own that goes with the files. `moved` gets
    // the moves each later undo and redo made, once that work is done (FileOperations::Moved).
    FileOperationCommand(FileOperations* operations, const QString& actionName, std::vector<FileChange> changes,
                         QUndoStack* stack = nullptr, std::function<void(bool forward)> alongside = {},
                         std::function<void(const QList<FileMove>& moves)> moved = {});

    void undo() override;
    void redo() override;

    // The changes as they stand now; read by tests and by the batch rename.
    const std::vector<FileChange>& changes() const { return *m_changes; }

private:
    QPointer<FileOperations> m_operations;
    QPointer<QUndoStack> m_stack;
    std::shared_ptr<std::vector<FileChange>> m_changes;
    std::function<void(bool forward)> m_alongside;
    std::function<void(const QList<FileMove>& moves)> m_moved;
    bool m_done = true;
};

} // namespace orwick
