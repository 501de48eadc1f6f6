#pragma once
// FileOpsController: the window's file commands — the actions behind keys, the context menu
// and (later) the command catalogue — and the views of the file operations engine in that window:
// progress card, toasts with Undo, the conflict question and inline rename.
//
// The keys live in one place, handleKey(), so they can move into the command catalogue whole:
// Ctrl+C / Ctrl+X / Ctrl+V (clipboard shared with other file managers), Delete and Ctrl+Delete
// (Move to Trash), F2 (Rename), Ctrl+Shift+N (New Folder, then rename), Ctrl+D (Duplicate),
// Ctrl+Z / Ctrl+Shift+Z / Ctrl+Y (Undo / Redo on the window's one undo stack).
// Every change goes through FileOperations; this class never touches a file itself.

#include "fileops/FileOperations.h"
#include "state/WindowState.h"

#include <QObject>
#include <QPointer>

class QKeyEvent;
class QMenu;
class QWidget;

namespace orwick {

class PaneWidget;
class ProgressCard;
class ToastHost;

class FileOpsController : public QObject {
    Q_OBJECT
public:
    FileOpsController(QWidget* window, WindowState* state, ToastHost* toasts, FileOperations* operations);

    // Lets the controller see the pane's keys first and start inline renames in its list.
    void attach(PaneWidget* pane);
    // Acts on a file key; true when it was one.
    bool handleKey(QKeyEvent* event);
    // Adds the file commands that apply now to a context menu (for the window's menus to use).
    void fillContextMenu(QMenu* menu);

    ProgressCard* progressCard() const { return m_card; }
    bool isRenaming() const { return m_renaming; }

    // --- Actions (on the active pane)
    void copySelection(bool cut);
    void paste(bool forceMove = false);
    void trashSelection();
    void beginRename();
    void commitRename(const FilePath& url, const QString& name);
    void newFolder();
    void duplicateSelection();
    void putBackSelection();
    void compressSelection();
    void extractSelection();
    void tidyUp();
    void undo();
    void redo();

    // Availability, for menus and the catalogue.
    bool canActOnSelection() const;
    bool canPaste() const;
    bool canPutBack() const;
    bool canExtract() const;
    bool canCreateHere() const; // the pane shows a folder

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    PaneState* pane() const;
    PaneWidget* paneWidget() const;
    QList<FilePath> selection() const;
    // Selects `items` once they show in the pane (they appear after its next load).
    void selectWhenShown(const QList<FilePath>& items);
    void startRename(const FilePath& url);

    QPointer<QWidget> m_window;
    WindowState* m_state;
    ToastHost* m_toasts;
    FileOperations* m_operations;
    ProgressCard* m_card;
    QList<QPointer<PaneWidget>> m_panes;
    bool m_renaming = false;
};

} // namespace orwick
