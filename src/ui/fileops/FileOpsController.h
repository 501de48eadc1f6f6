#pragma once
// FileOpsController: the views of the file operations in one window — progress card, toasts
// with Undo, the conflict question, the tidy-up and Empty Trash confirmations and the editor of an
// inline rename.
// An operation that did not go entirely as asked gets a toast that says what was done and what
// wasn't (OperationOutcome's words), with Undo for the part done and, when several things
// failed, Show All, which lists every message (FailureList).
// The file commands themselves are catalogue commands that run the window's FileActions; this
// class only answers what they need from a person, and never touches a file itself. It answers
// for the jobs started with its window's undo stack only: with several windows open, each
// question, failure and toast shows in the window whose command started the job.
//
// Inline rename follows the pane state: when a pane's renaming() is set (Rename, or a new folder
// or file showing up), an editor opens over the item's name in place — in
// the list, the table, the grid and the columns alike — and ends the rename through FileActions
// when it closes. The editor stays open while the folder reloads under it.

#include "fileops/FileOperations.h"
#include "fileops/TrashContents.h"
#include "state/WindowState.h"

#include <QObject>
#include <QPointer>

class QWidget;

namespace orwick {

class PaneWidget;
class ProgressCard;
class ToastHost;

class FileOpsController : public QObject {
    Q_OBJECT
public:
    FileOpsController(QWidget* window, WindowState* state, ToastHost* toasts, FileOperations* operations);

    // Lets the controller edit names in the pane's views, and hands what is dropped on them to
    // the window's FileActions.
    void attach(PaneWidget* pane);

    ProgressCard* progressCard() const { return m_card; }
    bool isRenaming() const;

private:
    PaneWidget* widgetFor(const PaneState* pane) const;
    void showRename(PaneState* pane);
    // An editor over `url`'s name in the view `widget` shows now, or null when it isn't shown.
    QWidget* startNameEditor(PaneWidget* widget, const FilePath& url, std::function<void(const FilePath&, const QString&)> commit);
    void confirmTidyUp(const FilePath& folder);
    void confirmEmptyTrash(const TrashContents& contents);
    void showOutcome(const OperationOutcome& outcome);
    void showToast(const QString& text, bool canUndo, const QStringList& failures);

    QPointer<QWidget> m_window;
    WindowState* m_state;
    ToastHost* m_toasts;
    ProgressCard* m_card;
    int m_toastUndoIndex = -1; // the undo stack's index when the shown toast offered Undo, else -1
    QList<QPointer<PaneWidget>> m_panes;
    QPointer<QWidget> m_editor; // the open rename editor
};

} // namespace orwick
