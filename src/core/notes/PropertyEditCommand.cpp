#include "notes/PropertyEditCommand.h"

namespace orwick {

PropertyEditCommand::PropertyEditCommand(FileProperties* store, const QString& title,
                                         QList<FileProperties::FileEdit> edits, FilePath folder,
                                         std::optional<FolderColumns> columnsBefore,
                                         std::optional<FolderColumns> columnsAfter, bool alreadyDone)
    : QUndoCommand(title)
    , m_store(store)
    , m_edits(std::move(edits))
    , m_folder(std::move(folder))
    , m_columnsBefore(std::move(columnsBefore))
    , m_columnsAfter(std::move(columnsAfter))
    , m_skipRedo(alreadyDone)
{
}

void PropertyEditCommand::redo()
{
    if (std::exchange(m_skipRedo, false))
        return;
    run(true);
}

void PropertyEditCommand::undo() { run(false); }

void PropertyEditCommand::run(bool forward)
{
    if (!m_store)
        return;
    const FileProperties::EditOutcome outcome = m_store->applyEdits(m_edits, forward);
    if (m_columnsBefore || m_columnsAfter)
        m_store->restoreColumns(m_folder, forward ? m_columnsAfter : m_columnsBefore);
    if (!outcome.failures.isEmpty())
        Q_EMIT m_store->writeFailed(summarizeFailures(outcome.failures, m_edits.size()));
}

} // namespace orwick
