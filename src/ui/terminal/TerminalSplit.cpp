#include "ui/terminal/TerminalSplit.h"

#include "terminal/TabTerminals.h"
#include "ui/pane/PaneWidget.h"
#include "ui/terminal/TerminalPanel.h"
#include "ui/window/PaneGrid.h"

#include <QApplication>

namespace orwick {

namespace {
constexpr int kDefaultHeight = 260; // the panel's height when it first opens
constexpr int kMinimumHeight = 60;
} // namespace

TerminalSplit::TerminalSplit(TabState* tab, PaneGrid* grid, QWidget* parent)
    : QSplitter(Qt::Vertical, parent), m_grid(grid), m_terminals(TabTerminals::of(tab))
{
    setChildrenCollapsible(false);
    setHandleWidth(3);
    addWidget(grid);
    m_panel = new TerminalPanel(m_terminals, this);
    m_panel->setMinimumHeight(kMinimumHeight);
    addWidget(m_panel);
    setStretchFactor(0, 1);
    setStretchFactor(1, 0);
    m_panel->setVisible(false);
    connect(m_terminals, &TabTerminals::shownChanged, this, &TerminalSplit::place);
    connect(this, &QSplitter::splitterMoved, this, [this] {
        if (m_panel->isVisible())
            m_terminals->setPanelHeight(sizes().value(1));
    });
    connect(m_panel, &TerminalPanel::paneFocusRequested, this, [this] {
        if (PaneWidget* pane = m_grid->activeWidget())
            pane->takeFocus();
    });
    place();
}

TerminalSplit* TerminalSplit::of(PaneGrid* grid) { return grid ? qobject_cast<TerminalSplit*>(grid->parentWidget()) : nullptr; }

void TerminalSplit::place()
{
    const bool shown = m_terminals->isShown();
    if (shown == m_panel->isVisible())
        return;
    if (!shown) {
        const bool hadFocus = m_panel->isAncestorOf(QApplication::focusWidget());
        m_panel->setVisible(false);
        if (hadFocus)
            if (PaneWidget* pane = m_grid->activeWidget())
                pane->takeFocus();
        return;
    }
    m_panel->setVisible(true);
    const int total = std::max(height(), 2 * kMinimumHeight);
    const int wanted = m_terminals->panelHeight() > 0 ? m_terminals->panelHeight() : std::min(kDefaultHeight, total * 2 / 5);
    const int panel = std::clamp(wanted, kMinimumHeight, std::max(kMinimumHeight, total - kMinimumHeight));
    setSizes({total - panel, panel});
}

} // namespace orwick
