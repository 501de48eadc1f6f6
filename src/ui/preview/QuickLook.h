#pragma once
// QuickLook: the cursor's item previewed over the whole window. Opened by the quickLook command
// (Ctrl+Y, and Space in a pane's list as the command's pane key); Up and Down (Left and Right too) move the pane's
// cursor to the previous or next item, whose preview follows; Space, Esc or the command again
// close it and give the keyboard back to the pane. Lives on the GUI thread, a child of the
// window it covers.

#include "state/WindowState.h"

#include <QWidget>

namespace orwick {

class PreviewFollower;
class PreviewView;

class QuickLook : public QWidget {
    Q_OBJECT
public:
    QuickLook(WindowState* window, QWidget* parentWindow);

    void open();
    void close();
    bool isOpen() const { return isVisible(); }
    PreviewView* view() const { return m_view; }
    PreviewFollower* follower() const { return m_follower; }

Q_SIGNALS:
    void taskToggleRequested(const orwick::FilePath& note, int line);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:

    WindowState* m_window;
    PreviewView* m_view;
    PreviewFollower* m_follower;
    QWidget* m_returnFocus = nullptr;
};

} // namespace orwick
