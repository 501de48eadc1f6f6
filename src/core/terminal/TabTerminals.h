#pragma once
// TabTerminals: a tab's terminal panel — its sessions in order, the one shown, whether the
// panel is open and how tall it is. Made on first use as a child of its TabState, so the shells
// end (SIGHUP) when the tab closes, and live on while other tabs are shown.
//
// A session whose shell ends leaves the list by itself; when the last one goes the panel closes.
//
// Signals: sessionsChanged() follows every change of the list; selectedChanged() every change of
// the shown session; shownChanged() every opening and closing of the panel; focusRequested()
// asks the panel's view to take the keyboard (the terminal was opened or chosen by a command);
// focusToggleRequested() asks it to move the keyboard between the terminal and the pane.

#include "base/FilePath.h"

#include <QObject>
#include <QPointer>

namespace orwick {

class TabState;
class TerminalSession;

class TabTerminals : public QObject {
    Q_OBJECT
public:
    // The tab's terminals, made on first use.
    static TabTerminals* of(TabState* tab);
    // The tab's terminals when any were made; null otherwise.
    static TabTerminals* existing(const TabState* tab);

    TabState* tab() const;
    const QList<TerminalSession*>& sessions() const { return m_sessions; }
    TerminalSession* selected() const;
    void select(TerminalSession* session);
    bool isShown() const { return m_shown; }
    void setShown(bool shown);
    // The panel's height in pixels; 0 until the user or the window chose one.
    int panelHeight() const { return m_panelHeight; }
    void setPanelHeight(int height) { m_panelHeight = height; }

    // A new shell started in `folder`, shown in the open panel.
    TerminalSession* newTerminal(const FilePath& folder);
    // Ends a session's shell and removes it.
    void closeTerminal(TerminalSession* session);
    // Shells in these folders (a folder gone since starts at home), the panel open or not: a
    // tab brought back from a saved session.
    void restore(const QList<FilePath>& folders, bool shown);

    void requestFocus() { Q_EMIT focusRequested(); }
    void requestFocusToggle() { Q_EMIT focusToggleRequested(); }

Q_SIGNALS:
    void sessionsChanged();
    void selectedChanged();
    void shownChanged();
    void focusRequested();
    void focusToggleRequested();

private:
    explicit TabTerminals(TabState* tab);
    void remove(TerminalSession* session);

    QList<TerminalSession*> m_sessions;
    QPointer<TerminalSession> m_selected;
    bool m_shown = false;
    int m_panelHeight = 0;
};

} // namespace orwick
