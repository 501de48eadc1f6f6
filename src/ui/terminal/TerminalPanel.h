#pragma once
// TerminalPanel: a tab's terminal panel on screen — a row of its sessions (choose one, close
// one, "+" for a new one) over the shown session's TerminalView. Follows the tab's
// TabTerminals; a view per session, so each keeps its scroll position and selection.
//
// Signals: paneFocusRequested() asks the window to give the keyboard back to the active pane
// (Ctrl+` from the terminal).

#include "terminal/TerminalSession.h"
#include "ui/terminal/TerminalView.h"

#include <QHash>
#include <QPointer>
#include <QWidget>

class QStackedWidget;
class QTabBar;

namespace orwick {

class TabTerminals;
class TerminalSession;
class TerminalView;

class TerminalPanel : public QWidget {
    Q_OBJECT
public:
    explicit TerminalPanel(TabTerminals* terminals, QWidget* parent = nullptr);

    TerminalView* currentView() const;
    TerminalView* viewFor(TerminalSession* session) const;
    void focusTerminal();

Q_SIGNALS:
    void paneFocusRequested();

private:
    void syncSessions();
    void showSelected();
    void updateTitles();

    TabTerminals* m_terminals;
    QTabBar* m_tabs;
    QStackedWidget* m_stack;
    QHash<TerminalSession*, QPointer<TerminalView>> m_views;
    bool m_syncing = false;
};

} // namespace orwick
