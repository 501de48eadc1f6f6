#pragma once
// PreviewPanel: the column at the right of the window that previews the active pane's cursor
// item — shown while the window state's showPreview() is set, across the whole content area
// while previewExpanded() is. It loads only while shown; toggling a task in a note asks the
// owner through taskToggleRequested(). While the window edits a file (documentMode() isn't
// `preview`) the panel holds a NoteEditor for it in place of the preview; going back saves what
// the editor holds first, and a refused save brings the editor back with the reason. Lives on
// the GUI thread.

#include "state/WindowState.h"

#include <QFrame>

namespace orwick {

class NoteEditor;
class PreviewFollower;
class PreviewView;

class PreviewPanel : public QFrame {
    Q_OBJECT
public:
    PreviewPanel(WindowState* window, QWidget* parent = nullptr);

    PreviewView* view() const { return m_view; }
    PreviewFollower* follower() const { return m_follower; }
    // The editor while the window edits a file.
    NoteEditor* editor() const { return m_editor; }
    // What takes the keyboard when the panel does: the editor's text, or the preview's view.
    QWidget* focusTarget() const;

Q_SIGNALS:
    void taskToggleRequested(const orwick::FilePath& note, int line);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void updateBox();
    void followEditing();
    void leave(NoteEditor* editor);
    void updateActive();

    PreviewView* m_view;
    PreviewFollower* m_follower;
    WindowState* m_window;
    NoteEditor* m_editor = nullptr;
};

} // namespace orwick
