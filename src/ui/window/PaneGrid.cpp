#include "ui/window/PaneGrid.h"

#include "ui/pane/PaneWidget.h"
#include "ui/theme/ThemedSplitter.h"

#include <QApplication>
#include <QSplitter>
#include <QVBoxLayout>

namespace orwick {

PaneGrid::PaneGrid(TabState* tab, std::function<void(PaneWidget*)> decorate, QWidget* parent)
    : QWidget(parent), m_tab(tab), m_decorate(std::move(decorate))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    connect(tab, &TabState::panesChanged, this, &PaneGrid::rebuild);
    connect(tab, &TabState::activePaneChanged, this, &PaneGrid::markActive);
    rebuild();
}

QList<PaneWidget*> PaneGrid::paneWidgets() const
{
    QList<PaneWidget*> widgets;
    for (PaneState* pane : m_tab->panes())
        if (PaneWidget* widget = widgetFor(pane))
            widgets << widget;
    return widgets;
}

void PaneGrid::rebuild()
{
    // Keep the widgets of panes that stay; take them out of the old splitters first.
    QHash<PaneState*, QPointer<PaneWidget>> kept;
    const QList<PaneState*> panes = m_tab->panes();
    for (auto it = m_widgets.begin(); it != m_widgets.end(); ++it) {
        if (!it.value())
            continue;
        if (panes.contains(it.key())) {
            it.value()->setParent(this);
            kept.insert(it.key(), it.value());
        } else {
            it.value()->deleteLater();
        }
    }
    m_widgets = kept;
    delete m_columns;
    m_columns = new ThemedSplitter(Qt::Horizontal, this);
    m_columns->setChildrenCollapsible(false);
    m_columns->setHandleWidth(3);
    for (const auto& column : m_tab->columns()) {
        auto* rows = new ThemedSplitter(Qt::Vertical, m_columns);
        rows->setChildrenCollapsible(false);
        rows->setHandleWidth(3);
        for (PaneState* pane : column) {
            PaneWidget* widget = m_widgets.value(pane);
            if (!widget) {
                widget = new PaneWidget(pane, rows);
                m_widgets.insert(pane, widget);
                connect(widget, &PaneWidget::activated, this, [this, pane] { m_tab->activate(pane); });
                connect(widget, &PaneWidget::messageRequested, this, &PaneGrid::messageRequested);
                if (m_decorate)
                    m_decorate(widget);
            }
            rows->addWidget(widget);
            widget->show();
        }
    }
    layout()->addWidget(m_columns);
    markActive();
}

void PaneGrid::markActive()
{
    const bool split = m_tab->isSplit();
    PaneState* active = m_tab->activePane();
    for (auto it = m_widgets.begin(); it != m_widgets.end(); ++it)
        if (it.value())
            it.value()->setActive(split && it.key() == active);
    if (PaneWidget* widget = widgetFor(active))
        if (isVisible() && !widget->isAncestorOf(QApplication::focusWidget()))
            widget->takeFocus();
}

} // namespace orwick
