#include "terminal/FolderFollowing.h"

#include "app/Settings.h"
#include "state/TabState.h"
#include "terminal/TabTerminals.h"
#include "terminal/TerminalSession.h"

#include <sys/stat.h>

namespace orwick {

namespace {
bool isFolder(const FilePath& path)
{
    struct stat status;
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}
} // namespace

FolderFollowing::FolderFollowing(TabTerminals* terminals) : QObject(terminals), m_terminals(terminals)
{
    connect(terminals->tab(), &TabState::activePaneChanged, this, &FolderFollowing::watchActivePane);
    connect(terminals, &TabTerminals::selectedChanged, this, &FolderFollowing::watchSelectedSession);
    watchActivePane();
    watchSelectedSession();
}

bool FolderFollowing::terminalFollowsPane() { return readSettingsBool(*openSettings(), QLatin1StringView(settingsKey::terminalFollowsPane), true); }
bool FolderFollowing::paneFollowsTerminal() { return readSettingsBool(*openSettings(), QLatin1StringView(settingsKey::paneFollowsTerminal), false); }

void FolderFollowing::watchActivePane()
{
    if (m_pane)
        m_pane->disconnect(this);
    m_pane = m_terminals->tab()->activePane();
    if (m_pane)
        connect(m_pane, &PaneState::locationChanged, this, &FolderFollowing::paneMoved);
    paneMoved(); // another pane is another folder
}

void FolderFollowing::watchSelectedSession()
{
    if (m_session)
        m_session->disconnect(this);
    m_session = m_terminals->selected();
    if (m_session)
        connect(m_session, &TerminalSession::folderReported, this, &FolderFollowing::shellMoved);
}

void FolderFollowing::paneMoved()
{
    if (!m_pane || !m_session || m_pane->listing() || !terminalFollowsPane())
        return;
    m_session->changeDirectory(m_pane->url()); // does nothing unless the shell waits at its prompt
}

void FolderFollowing::shellMoved(const FilePath& folder)
{
    if (!m_pane || folder == m_pane->url() || !paneFollowsTerminal() || !isFolder(folder))
        return;
    m_pane->navigate(folder);
}

} // namespace orwick

#include "moc_FolderFollowing.cpp"
