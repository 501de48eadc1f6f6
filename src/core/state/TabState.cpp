#include "state/TabState.h"

namespace orwick {

TabState::TabState(const FilePath& folder, ViewPreferences* preferences, QObject* parent) : QObject(parent)
{
    auto* pane = new PaneState(folder, preferences, this);
    m_columns = {{pane}};
    m_activePaneID = pane->id();
    m_recent = {pane->id()};
}

QList<PaneState*> TabState::panes() const
{
    QList<PaneState*> all;
    for (const auto& column : m_columns)
        all += column;
    return all;
}

PaneState* TabState::activePane() const
{
    for (PaneState* pane : panes())
        if (pane->id() == m_activePaneID)
            return pane;
    return m_columns.first().first();
}

void TabState::setActivePane(PaneState* pane)
{
    if (!pane || pane->id() == m_activePaneID)
        return;
    m_activePaneID = pane->id();
    m_recent.removeAll(pane->id());
    m_recent.prepend(pane->id());
    Q_EMIT activePaneChanged();
}

PaneState* TabState::otherPane() const
{
    const QList<PaneState*> all = panes();
    for (const QUuid& id : m_recent) {
        if (id == m_activePaneID)
            continue;
        for (PaneState* pane : all)
            if (pane->id() == id)
                return pane;
    }
    return nullptr;
}

} // namespace orwick
