#pragma once
// PreviewPanel: the column at the right of the window that previews the active pane's cursor
// item — shown while the window state's showPreview() is set, across the whole content area
// while previewExpanded() is. It loads only while shown; toggling a task in a note asks the
// owner through taskToggleRequested(). While the window edits a file (documentMode() isn't
// `preview`) the panel holds a NoteEditor for it in place of the preview; going back saves what
// the editor holds first, and a refused save brings the editor back with the reason; closing
// the window waits for that save too (readyToClose). Lives on the GUI thread.

#include "state/WindowState.h"

#include <QFrame>
#include <functional>

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
    // The window's question before it closes: true when no editor (the one shown, or one going
    // back to the preview whose save still runs) holds unsaved text. Otherwise it saves them and
    // answers false; `whenSaved` follows once every save succeeded. A refused save leaves the
    // editor shown with the reason (Reload / Keep Mine) and `whenSaved` is never called.
    [[nodiscard]] bool readyToClose(std::function<void()> whenSaved);

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
