#pragma once
// PaneGrid: one tab's panes on screen — columns side by side, rows within a column, with
// draggable dividers. Rebuilt when the tab's grid changes; pane widgets of panes that stay are
// kept, so their views, scroll positions and decorations survive. The active pane is marked
// and holds the keyboard.

#include "state/TabState.h"

#include <QHash>
#include <QPointer>
#include <QWidget>
#include <functional>

class QSplitter;

namespace orwick {

class PaneWidget;

class PaneGrid : public QWidget {
    Q_OBJECT
public:
    // `decorate` is called once for every pane widget made (git marks and the like).
    PaneGrid(TabState* tab, std::function<void(PaneWidget*)> decorate, QWidget* parent = nullptr);

    TabState* tab() const { return m_tab; }
    PaneWidget* widgetFor(PaneState* pane) const { return m_widgets.value(pane); }
    PaneWidget* activeWidget() const { return widgetFor(m_tab->activePane()); }
    QList<PaneWidget*> paneWidgets() const;

Q_SIGNALS:
    void messageRequested(const QString& message);

private:
    void rebuild();
    void markActive();

    TabState* m_tab;
    std::function<void(PaneWidget*)> m_decorate;
    QHash<PaneState*, QPointer<PaneWidget>> m_widgets;
    QSplitter* m_columns = nullptr;
};

} // namespace orwick
