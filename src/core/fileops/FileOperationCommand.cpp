#include "fileops/FileOperationCommand.h"

#include "fileops/FileOperations.h"

namespace orwick {

FileOperationCommand::FileOperationCommand(FileOperations* operations, const QString& actionName,
                                           std::vector<FileChange> changes, QUndoStack* stack,
                                           std::function<void(bool forward)> alongside,
                                           std::function<void(const QList<FileMove>& moves)> moved)
    : QUndoCommand(actionName)
    , m_operations(operations)
    , m_stack(stack)
    , m_changes(std::make_shared<std::vector<FileChange>>(std::move(changes)))
    , m_alongside(std::move(alongside))
    , m_moved(std::move(moved))
{
}

void FileOperationCommand::undo()
{
    m_done = false;
    if (m_alongside)
        m_alongside(false);
    if (m_operations && !m_changes->empty())
        m_operations->replay(m_changes, false, text(), m_stack, m_moved);
}

void FileOperationCommand::redo()
{
    if (m_done)
        return; // pushed after the operation ran
    m_done = true;
    if (m_alongside)
        m_alongside(true);
    if (m_operations && !m_changes->empty())
        m_operations->replay(m_changes, true, text(), m_stack, m_moved);
}

} // namespace orwick
