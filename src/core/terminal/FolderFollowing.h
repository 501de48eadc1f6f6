#pragma once
// FolderFollowing: keeps a tab's shown terminal and its active pane in the same folder, in both
// directions, each a setting (keys in app/Settings.h):
//   "terminalFollowsPane" (on by default): when the active pane shows another folder, the shown
//     shell changes to it — only while it waits at its prompt, never into a running program;
//   "paneFollowsTerminal" (off by default): when the shown shell reports a new folder (OSC 7),
//     the active pane goes there.
// A child of the TabTerminals it serves.

#include <QObject>
#include <QPointer>

namespace orwick {

class FilePath;
class PaneState;
class TabTerminals;
class TerminalSession;

class FolderFollowing : public QObject {
    Q_OBJECT
public:
    explicit FolderFollowing(TabTerminals* terminals);

    static bool terminalFollowsPane();
    static bool paneFollowsTerminal();

private:
    void watchActivePane();
    void watchSelectedSession();
    void paneMoved();
    void shellMoved(const FilePath& folder);

    TabTerminals* m_terminals;
    QPointer<PaneState> m_pane;
    QPointer<TerminalSession> m_session;
};

} // namespace orwick
