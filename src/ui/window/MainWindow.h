#pragma once
// The window: the selected tab's panes, toasts over them. Input goes to the panes; window-wide
// keys and menus come from the command catalogue.

#include "state/WindowState.h"

#include <QMainWindow>

namespace orwick {

class PaneWidget;
class ToastHost;

class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    MainWindow(WindowState* state, QWidget* parent = nullptr);

    WindowState* state() const { return m_state; }
    PaneWidget* activePaneWidget() const { return m_paneWidget; }
    ToastHost* toasts() const { return m_toasts; }

private:
    void updateTitle();

    WindowState* m_state;
    PaneWidget* m_paneWidget;
    ToastHost* m_toasts;
};

} // namespace orwick
