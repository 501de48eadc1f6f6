#pragma once
// PreviewPanel: the column at the right of the window that previews the active pane's cursor
// item — shown while the window state's showPreview() is set, across the whole content area
// while previewExpanded() is. It loads only while shown; toggling a task in a note asks the
// owner through taskToggleRequested(). Lives on the GUI thread.

#include "state/WindowState.h"

#include <QFrame>

namespace orwick {

class PreviewFollower;
class PreviewView;

class PreviewPanel : public QFrame {
    Q_OBJECT
public:
    PreviewPanel(WindowState* window, QWidget* parent = nullptr);

    PreviewView* view() const { return m_view; }
    PreviewFollower* follower() const { return m_follower; }

Q_SIGNALS:
    void taskToggleRequested(const orwick::FilePath& note, int line);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void updateBox();

    PreviewView* m_view;
    PreviewFollower* m_follower;
};

} // namespace orwick
