#pragma once
// PaneGrid: one tab's panes on screen — columns side by side, rows within a column, with
// draggable dividers. Rebuilt when the tab's grid changes; pane widgets of panes that stay are
// kept, so their views, scroll positions and decorations survive. The active pane is marked
// and holds the keyboard.
//
// A grid made before its window is first on screen (a window opening on a restored split) makes
// only the active pane's widget at once and holds a blank place of the same size for each other
// pane; their widgets are made right after the active pane's rows have been painted, or at once
// when one is asked for (widgetFor, or its pane becoming active). Everything a pane shows lives
// in its PaneState, so a widget made later shows the same folder, selection, view and history.

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
    // The pane's widget, made now if it was still waiting for the first paint.
    PaneWidget* widgetFor(PaneState* pane);
    PaneWidget* activeWidget() { return widgetFor(m_tab->activePane()); }
    // The widgets made so far, in grid order (a pane still waiting has none yet).
    QList<PaneWidget*> paneWidgets() const;
    // Whether some pane's widget is still waiting for the first paint.
    bool hasWaitingPanes() const { return !m_waiting.isEmpty(); }

Q_SIGNALS:
    void messageRequested(const QString& message);

protected:
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void rebuild();
    void markActive();
    PaneWidget* makeWidget(PaneState* pane);
    void makeWaitingWidgets();
    void makeWaitingWidgetsAfterFirstRows();

    TabState* m_tab;
    std::function<void(PaneWidget*)> m_decorate;
    QHash<PaneState*, QPointer<PaneWidget>> m_widgets;
    QHash<PaneState*, QPointer<QWidget>> m_waiting; // the blank place held for each waiting pane
    QSplitter* m_columns = nullptr;
};

} // namespace orwick
