#include "ui/window/MainWindow.h"

#include "ui/pane/PaneWidget.h"
#include "ui/window/ToastHost.h"

namespace orwick {

MainWindow::MainWindow(WindowState* state, QWidget* parent) : QMainWindow(parent), m_state(state)
{
    PaneState* pane = state->activePane();
    m_paneWidget = new PaneWidget(pane, this);
    setCentralWidget(m_paneWidget);
    m_toasts = new ToastHost(this);
    connect(m_paneWidget, &PaneWidget::messageRequested, this, [this](const QString& message) { m_toasts->show(message); });
    connect(pane, &PaneState::locationChanged, this, &MainWindow::updateTitle);
    updateTitle();
    resize(1100, 700);
    m_paneWidget->takeFocus();
}

void MainWindow::updateTitle()
{
    PaneState* pane = m_state->activePane();
    setWindowTitle(pane->title() + QStringLiteral(" — Orwick"));
}

} // namespace orwick
