#pragma once
// FolderColumnsCommand: the undo step of a change to a folder's database settings alone (an
// option moved or coloured: "Move done", "Color done"), for a window's QUndoStack. It changes no
// file of the user's: changes that reach files are the file operations engine's steps, which
// carry the settings that go with them.

#include <QUndoCommand>
#include <functional>

namespace orwick {

class FolderColumnsCommand : public QUndoCommand {
public:
    // `restore` puts the settings as they were (false) or as they became (true); the change was
    // made already, so the stack's first redo() does nothing.
    FolderColumnsCommand(const QString& title, std::function<void(bool forward)> restore)
        : QUndoCommand(title), m_restore(std::move(restore))
    {
    }

    void redo() override
    {
        if (!std::exchange(m_first, false))
            m_restore(true);
    }
    void undo() override { m_restore(false); }

private:
    std::function<void(bool forward)> m_restore;
    bool m_first = true;
};

} // namespace orwick
