#include "state/WindowState.h"

namespace orwick {

WindowState::WindowState(const FilePath& folder, ViewPreferences* preferences, QObject* parent)
    : QObject(parent), m_preferences(preferences)
{
    auto* tab = new TabState(folder, preferences, this);
    m_tabs = {tab};
    m_selectedTabID = tab->id();
}

TabState* WindowState::selectedTab() const
{
    for (TabState* tab : m_tabs)
        if (tab->id() == m_selectedTabID)
            return tab;
    return m_tabs.first();
}

} // namespace orwick
