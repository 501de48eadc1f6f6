#include "state/WindowState.h"

#include "state/FileActions.h"

namespace orwick {

WindowState::WindowState(const FilePath& folder, ViewPreferences* preferences, QObject* parent, PaneState::Start start)
    : QObject(parent), m_preferences(preferences), m_files(new FileActions(this, &FileOperations::shared()))
{
    auto* tab = new TabState(folder, m_preferences, this, start);
    m_tabs = {tab};
    m_selectedTabID = tab->id();
}

TabState* WindowState::makeTab(const FilePath& folder)
{
    auto* tab = new TabState(folder, m_preferences, this);
    return tab;
}

TabState* WindowState::selectedTab() const
{
    for (TabState* tab : m_tabs)
        if (tab->id() == m_selectedTabID)
            return tab;
    return m_tabs.first();
}

TabState* WindowState::newTab(const std::optional<FilePath>& folder)
{
    TabState* tab = makeTab(folder.value_or(activePane()->url()));
    m_tabs.insert(m_tabs.indexOf(selectedTab()) + 1, tab);
    Q_EMIT tabsChanged();
    selectTabWithID(tab->id());
    return tab;
}

void WindowState::closeTab(const std::optional<QUuid>& id)
{
    if (m_tabs.size() < 2) {
        Q_EMIT closeRequested();
        return;
    }
    TabState* closing = selectedTab();
    if (id)
        for (TabState* tab : m_tabs)
            if (tab->id() == *id)
                closing = tab;
    const qsizetype at = m_tabs.indexOf(closing);
    m_closedTabURLs.append(closing->activePane()->url());
    const bool wasSelected = closing->id() == m_selectedTabID;
    m_tabs.removeAt(at);
    closing->deleteLater();
    Q_EMIT tabsChanged();
    // The tab that takes the closed one's place, or the last when it was last.
    if (wasSelected)
        selectTabWithID(m_tabs[std::min(at, m_tabs.size() - 1)]->id());
}

void WindowState::reopenClosedTab()
{
    if (m_closedTabURLs.isEmpty())
        return;
    newTab(m_closedTabURLs.takeLast());
}

void WindowState::selectTab(int offset)
{
    if (m_tabs.isEmpty())
        return;
    const qsizetype count = m_tabs.size();
    const qsizetype at = m_tabs.indexOf(selectedTab());
    selectTabWithID(m_tabs[((at + offset) % count + count) % count]->id());
}

void WindowState::selectTabWithID(const QUuid& id)
{
    if (id == m_selectedTabID)
        return;
    for (TabState* tab : m_tabs) {
        if (tab->id() == id) {
            m_selectedTabID = id;
            tab->loadPanes();
            Q_EMIT selectedTabChanged();
            return;
        }
    }
}

// --- Session

Session WindowState::session() const
{
    Session session;
    for (TabState* tab : m_tabs)
        session.tabs.append(tab->saved());
    session.selected = int(m_tabs.indexOf(selectedTab()));
    session.showPreview = m_showPreview;
    return session;
}

void WindowState::restore(const Session& session, Load load)
{
    if (session.tabs.isEmpty())
        return;
    const QList<TabState*> old = std::exchange(m_tabs, {});
    for (const Session::Tab& saved : session.tabs)
        m_tabs.append(new TabState(saved, m_preferences, this));
    TabState* selected = m_tabs[session.selected >= 0 && session.selected < m_tabs.size() ? session.selected : 0];
    m_selectedTabID = selected->id();
    if (load == Load::now)
        selected->loadPanes();
    for (TabState* tab : old)
        tab->deleteLater();
    Q_EMIT tabsChanged();
    Q_EMIT selectedTabChanged();
    setShowPreview(session.showPreview);
}

void WindowState::setShowPreview(bool shown)
{
    if (shown == m_showPreview)
        return;
    if (!shown && m_documentMode != DocumentMode::preview)
        stopEditing(); // the editor lives in the preview column
    m_showPreview = shown;
    Q_EMIT showPreviewChanged();
}

void WindowState::startEditing(const FilePath& file, DocumentMode mode)
{
    if (file.isEmpty())
        mode = DocumentMode::preview;
    if (mode == m_documentMode && file == m_editedFile)
        return;
    m_documentMode = mode;
    m_editedFile = mode == DocumentMode::preview ? FilePath() : file;
    if (mode != DocumentMode::preview)
        setShowPreview(true);
    Q_EMIT documentModeChanged();
}

void WindowState::moveTab(const QUuid& id, const QUuid& onto)
{
    qsizetype from = -1, to = -1;
    for (qsizetype i = 0; i < m_tabs.size(); ++i) {
        if (m_tabs[i]->id() == id)
            from = i;
        if (m_tabs[i]->id() == onto)
            to = i;
    }
    if (from < 0 || to < 0 || from == to)
        return;
    m_tabs.move(from, to);
    Q_EMIT tabsChanged();
}

void WindowState::openSelectionInNewTabs()
{
    for (const FilePath& folder : selectedFolders())
        newTab(folder);
}

QList<FilePath> WindowState::selectedURLs() const
{
    QList<FilePath> urls;
    for (const FileItem& item : activePane()->selectedItems())
        urls.append(item.url);
    return urls;
}

QList<FilePath> WindowState::selectedFolders() const
{
    QList<FilePath> folders;
    for (const FileItem& item : activePane()->selectedItems())
        if (item.isFolder)
            folders.append(item.destination);
    return folders;
}

bool WindowState::canActOnSelection() const
{
    for (TabState* tab : m_tabs)
        for (PaneState* pane : tab->madePanes()) // a tab whose panes aren't made renames nothing
            if (pane->renaming())
                return false;
    return !activePane()->selection().isEmpty();
}

bool WindowState::beginRename()
{
    const QList<FilePath> urls = selectedURLs();
    if (urls.isEmpty())
        return false;
    if (urls.size() > 1) {
        showPanel(Panel::batchRename, activePane()->url(), urls);
        return true;
    }
    activePane()->setRenaming(urls.first());
    return true;
}

bool WindowState::transferSelection(bool move, const FilePath& folder)
{
    return m_files->transferSelection(folder, move ? FileOperations::Mode::move : FileOperations::Mode::copy);
}

void WindowState::endFilter() { activePane()->setFiltering(false); }

void WindowState::showPanel(Panel panel, const FilePath& folder, const QList<FilePath>& items)
{
    m_panel = panel;
    m_panelFolder = folder;
    m_panelItems = items;
    Q_EMIT panelChanged();
}

} // namespace orwick

#include "moc_WindowState.cpp"
