#pragma once
// FileActions: the file verbs of one window and the tests that enable them — what the file
// commands of the catalogue run, whether they come from a key, a menu or the palette. Each acts
// on the window's active pane (its selection, its folder) through FileOperations with the
// window's undo stack. Owned by its WindowState; GUI thread only.
//
// The tests share one rule: nothing acts on files while a name is being edited anywhere in the
// window (PaneState::renaming()). Renaming in place is state: beginRename() marks the item, the
// window's view edits it and ends with commitRename() or endRename().
//
// A new folder or file is put into inline rename once its pane shows it (PaneState's
// renameRequested(), which the view answers by editing the name).
//
// Drops (from the window's own views or from other programs) follow DropPlan: each is one job
// of the engine with one undo step, and a refused drop's sentence goes to the window's
// messageRequested(), which shows it as a toast.
//
// Signals: tidyUpRequested() asks the view to confirm tidying `folder` (it then calls tidyUp);
// emptyTrashRequested() asks it to confirm deleting what lies in the Trash (then emptyTrash).

#include "fileops/FileOperations.h"
#include "fileops/TrashContents.h"

#include <QObject>
#include <QPointer>

namespace orwick {

class PaneState;
class WindowState;

class FileActions : public QObject {
    Q_OBJECT
public:
    FileActions(WindowState* window, FileOperations* operations);

    FileOperations* operations() const { return m_operations; }

    // --- Enabled tests
    bool isRenaming() const;          // a name is being edited in some pane of the window
    bool canActOnSelection() const;   // something selected, no name being edited
    bool canCreateHere() const;       // the active pane shows a folder, no name being edited
    bool canRename() const;           // exactly one item, not in the Trash
    bool canChangeSelection() const;  // duplicate, trash: a selection outside the Trash
    bool canCompress() const;         // a selection in a shown folder
    bool canExtract() const;          // every selected item is an archive, not in the Trash
    bool canPutBack() const;          // in the Trash listing, with an item whose origin is known
    bool canTransferToOther() const;  // a selection and another pane showing a folder
    bool canPaste() const;            // files on the clipboard and a folder to land them in
    bool showsTrash() const;          // the active pane lists the Trash

    // --- Actions; each does nothing when its test fails
    void newFolder();
    void newFile();
    void beginRename();
    void commitRename(const FilePath& item, const QString& name);
    void endRename(); // the editor closed, committed or not
    void duplicateSelection();
    void trashSelection();
    void putBackSelection();
    void compressSelection();
    void extractSelection();
    void copySelection(bool cut); // to the clipboard other file managers read
    void paste(bool forceMove);
    void transferSelectionToOtherPane(FileOperations::Mode mode);
    // Symbolic links to the selected items in the other pane's folder (as Ctrl+Shift drops make).
    void linkSelectionToOtherPane();
    // Copies or moves the selection into `folder` (the palette's Copy to… and Move to…).
    bool transferSelection(const FilePath& folder, FileOperations::Mode mode);
    // Copies or moves `items` into the active pane's folder (the shelf landing there) and
    // selects them as they landed; `moved` follows the items a move really moved, through the
    // step's undo and redo too (FileOperations::Moved). False when no folder is shown or a name
    // is being edited.
    bool transferHere(const QList<FilePath>& items, FileOperations::Mode mode, FileOperations::Moved moved = {});
    // Copies, moves or links what was dropped on `folder` (see DropPlan).
    void drop(const QList<QUrl>& urls, const FilePath& folder, Qt::KeyboardModifiers modifiers);
    // Folders dropped on the tab bar open in new tabs, in the order dropped.
    void openDroppedInTabs(const QList<QUrl>& urls);
    void requestTidyUp();
    void tidyUp(const FilePath& folder);
    // Measures all the Trash folders off the GUI thread, then asks the view to confirm
    // (emptyTrashRequested), or says "The Trash is empty".
    void requestEmptyTrash();
    // Deletes for good exactly the items that were measured and confirmed.
    void emptyTrash(const TrashContents& contents);

    // The name a new file gets before the user renames it.
    static constexpr const char* kNewFileName = "untitled.txt";

Q_SIGNALS:
    void tidyUpRequested(const orwick::FilePath& folder);
    void emptyTrashRequested(const orwick::TrashContents& contents);

private:
    PaneState* pane() const;
    QList<FilePath> selection() const;
    // A pane of the shown tab that shows `folder`, where items landing there get selected.
    PaneState* paneShowing(const FilePath& folder) const;
    // Copies or moves `items` into `target`'s folder and selects them there once they show.
    void transferInto(const QList<FilePath>& items, PaneState* target, const FilePath& folder, FileOperations::Mode mode,
                      FileOperations::Moved moved = {});
    void renameWhenShown(const QPointer<PaneState>& target, const FilePath& made);

    WindowState* m_window;
    QPointer<FileOperations> m_operations;
    bool m_measuringTrash = false;
};

// True for names of archives Extract Here can unpack (zip, tar and its compressed forms, 7z…).
bool isArchiveName(const QByteArray& name);

} // namespace orwick
