#pragma once
// PropertyEditCommand: one undo step of a property change ("Set status", "Rename status",
// "Delete done") for a window's QUndoStack. Undo writes every file's previous value back and
// restores the folder's settings; redo writes the change again. A file that can't be written
// on undo or redo (changed meanwhile, gone, refused) is reported through
// FileProperties::writeFailed and left as it is.

#include "notes/FileProperties.h"

#include <QPointer>
#include <QUndoCommand>

namespace orwick {

class PropertyEditCommand : public QUndoCommand {
public:
    // `alreadyDone`: the change has been written; the stack's first redo() only records it.
    PropertyEditCommand(FileProperties* store, const QString& title, QList<FileProperties::FileEdit> edits,
                        FilePath folder, std::optional<FolderColumns> columnsBefore,
                        std::optional<FolderColumns> columnsAfter, bool alreadyDone = true);

    void redo() override;
    void undo() override;

private:
    void run(bool forward);

    QPointer<FileProperties> m_store;
    QList<FileProperties::FileEdit> m_edits;
    FilePath m_folder;
    std::optional<FolderColumns> m_columnsBefore;
    std::optional<FolderColumns> m_columnsAfter;
    bool m_skipRedo;
};

} // namespace orwick
