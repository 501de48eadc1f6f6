#pragma once
// TabState: one tab — a grid of panes (columns left to right, panes top to bottom in each), the
// active pane that commands act on, and the order in which panes were last active.

#include "state/PaneState.h"

#include <QObject>
#include <QUuid>

namespace orwick {

class TabState : public QObject {
    Q_OBJECT
public:
    TabState(const FilePath& folder, ViewPreferences* preferences, QObject* parent = nullptr);

    QUuid id() const { return m_id; }
    const QList<QList<PaneState*>>& columns() const { return m_columns; }
    PaneState* activePane() const;
    QList<PaneState*> panes() const;
    void setActivePane(PaneState* pane);
    // The most recently active pane other than the active one; none with a single pane.
    PaneState* otherPane() const;

Q_SIGNALS:
    void activePaneChanged();
    void panesChanged();

private:
    QUuid m_id = QUuid::createUuid();
    QList<QList<PaneState*>> m_columns;
    QUuid m_activePaneID;
    QList<QUuid> m_recent;
};

} // namespace orwick
