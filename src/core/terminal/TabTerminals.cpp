#include "terminal/TabTerminals.h"

#include "app/Session.h"
#include "state/TabState.h"
#include "terminal/FolderFollowing.h"
#include "terminal/TerminalSession.h"

namespace orwick {

namespace {
const char* const kObjectName = "tabTerminals";
}

TabTerminals* TabTerminals::of(TabState* tab)
{
    if (TabTerminals* found = existing(tab))
        return found;
    auto* made = new TabTerminals(tab);
    new FolderFollowing(made);
    return made;
}

TabTerminals* TabTerminals::existing(const TabState* tab)
{
    return tab ? tab->findChild<TabTerminals*>(QLatin1StringView(kObjectName), Qt::FindDirectChildrenOnly) : nullptr;
}

TabTerminals::TabTerminals(TabState* tab) : QObject(tab) { setObjectName(QLatin1StringView(kObjectName)); }

TerminalSession* TabTerminals::selected() const { return m_selected; }

TabState* TabTerminals::tab() const { return static_cast<TabState*>(parent()); }

void TabTerminals::select(TerminalSession* session)
{
    if (!m_sessions.contains(session) || m_selected == session)
        return;
    m_selected = session;
    Q_EMIT selectedChanged();
}

void TabTerminals::setShown(bool shown)
{
    if (m_shown == shown)
        return;
    m_shown = shown;
    Q_EMIT shownChanged();
}

TerminalSession* TabTerminals::newTerminal(const FilePath& folder)
{
    TerminalSession::Options options;
    options.folder = folder;
    auto* session = new TerminalSession(options, this);
    connect(session, &TerminalSession::finished, this, [this, session] { remove(session); });
    m_sessions.append(session);
    Q_EMIT sessionsChanged();
    m_selected = session;
    Q_EMIT selectedChanged();
    setShown(true);
    return session;
}

void TabTerminals::restore(const QList<FilePath>& folders, bool shown)
{
    for (const FilePath& folder : folders)
        newTerminal(Session::folder(folder));
    setShown(shown && !m_sessions.isEmpty());
}

void TabTerminals::closeTerminal(TerminalSession* session)
{
    if (!m_sessions.contains(session))
        return;
    remove(session); // its PtyProcess hangs up as it goes
}

void TabTerminals::remove(TerminalSession* session)
{
    const qsizetype index = m_sessions.indexOf(session);
    if (index < 0)
        return;
    m_sessions.removeAt(index);
    session->disconnect(this);
    session->deleteLater();
    Q_EMIT sessionsChanged();
    if (m_selected == session || !m_selected) {
        m_selected = m_sessions.isEmpty() ? nullptr : m_sessions.value(std::min(index, m_sessions.size() - 1));
        Q_EMIT selectedChanged();
    }
    if (m_sessions.isEmpty())
        setShown(false);
}

} // namespace orwick

#include "moc_TabTerminals.cpp"
