#include "ui/preview/PreviewFollower.h"

#include "ui/preview/PreviewLoad.h"
#include "ui/preview/PreviewView.h"

namespace orwick {

PreviewFollower::PreviewFollower(WindowState* window, PreviewView* view, QObject* parent)
    : QObject(parent), m_window(window), m_view(view), m_load(new PreviewLoad(this))
{
    connect(m_load, &PreviewLoad::ready, m_view, [this](std::shared_ptr<PreparedPreview> prepared) {
        if (prepared->content.isEmpty())
            return;
        m_view->showPrepared(std::move(*prepared));
    });
    connect(m_load, &PreviewLoad::sizeMeasured, m_view, &PreviewView::addDetail);
    connect(window, &WindowState::selectedTabChanged, this, &PreviewFollower::followPane);
    connect(window, &WindowState::tabsChanged, this, &PreviewFollower::followPane);
    followPane();
}

std::optional<FilePath> PreviewFollower::target() const
{
    const PaneState* pane = m_window->activePane();
    if (!pane)
        return std::nullopt;
    return pane->cursor();
}

void PreviewFollower::followPane()
{
    disconnect(m_paneSelection);
    disconnect(m_paneItems);
    disconnect(m_tabPane);
    TabState* tab = m_window->selectedTab();
    m_tabPane = connect(tab, &TabState::activePaneChanged, this, &PreviewFollower::followPane);
    PaneState* pane = tab->activePane();
    m_paneSelection = connect(pane, &PaneState::selectionChanged, this, &PreviewFollower::update);
    m_paneItems = connect(pane, &PaneState::itemsChanged, this, &PreviewFollower::update);
    update();
}

void PreviewFollower::setActive(bool active)
{
    if (std::exchange(m_active, active) == active)
        return;
    if (active)
        update();
    else
        m_load->clear();
}

void PreviewFollower::update()
{
    if (!m_active)
        return;
    const std::optional<FilePath> shown = target();
    if (!shown) {
        m_load->clear();
        m_view->showPlaceholder(QStringLiteral("Select a file to preview it"));
        return;
    }
    const PaneState* pane = m_window->activePane();
    const FileItem* item = pane->item(*shown);
    const std::pair<qint64, qint64> stamp{item ? item->modified : 0, item && item->size ? *item->size : -1};
    const bool changed = *shown == m_load->path() && stamp != m_stamp;
    m_stamp = stamp;
    m_load->setPictureRoom(m_view->pictureRoom());
    m_load->show(*shown, changed);
}

void PreviewFollower::reload()
{
    if (m_active)
        if (const auto shown = target()) {
            m_load->setPictureRoom(m_view->pictureRoom());
            m_load->show(*shown, true);
        }
}

} // namespace orwick
