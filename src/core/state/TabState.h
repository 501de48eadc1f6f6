#pragma once
// TabState: one tab — a grid of panes (columns left to right, panes top to bottom in each), the
// active pane that commands act on, and the order in which panes were last active.
//
// Signals: panesChanged() follows every change of the grid's shape; activePaneChanged() follows
// every change of the active pane.

#include "app/Session.h"
#include "state/PaneState.h"

#include <QObject>
#include <QUuid>

namespace orwick {

enum class PaneEdge { left, right, top, bottom };

class TabState : public QObject {
    Q_OBJECT
public:
    // `start` whenShown: the pane waits for loadPanes() (a window that may yet restore a session).
    TabState(const FilePath& folder, ViewPreferences* preferences, QObject* parent = nullptr,
             PaneState::Start start = PaneState::Start::loading);
    // A tab rebuilt from a saved one (restoreLayout). Its panes wait to load until loadPanes().
    TabState(const Session::Tab& saved, ViewPreferences* preferences, QObject* parent = nullptr);

    QUuid id() const { return m_id; }
    const QList<QList<PaneState*>>& columns() const { return m_columns; }
    QList<PaneState*> panes() const;
    PaneState* activePane() const;
    bool isSplit() const { return panes().size() > 1; }
    // The most recently active pane other than the active one; none with a single pane.
    PaneState* otherPane() const;
    double columnSplit() const { return m_columnSplit; }
    void setColumnSplit(double fraction) { m_columnSplit = std::clamp(fraction, 0.1, 0.9); }

    // Replaces the grid by `columns` (left to right, top to bottom; at most kMaxColumns columns of
    // kMaxRows panes are kept), each path through Session::folder, and activates the pane at
    // `active`, counted column by column. The new panes wait to load until loadPanes().
    void restoreLayout(const QList<QList<FilePath>>& columns, int active);
    // The tab is shown: panes still waiting load their folders now, the active one first.
    void loadPanes();
    // The grid as folder paths, with the active pane's index counted column by column.
    Session::Tab saved() const;

    void activate(PaneState* pane);
    // Moves activation `offset` panes on, in grid order (columns, then rows), wrapping.
    void activateNext(int offset = 1);

    // Split: keeps only the active pane when split; otherwise a new pane on the same folder to its right.
    void toggleSplit();
    // Whether a new pane may go at that edge: at most three columns, at most two rows in a column.
    bool canSplit(PaneState* pane, PaneEdge edge) const;
    // Puts a new pane showing `folder` beside `pane`, activates it and returns it (null when not allowed).
    PaneState* split(PaneState* pane, PaneEdge edge, const FilePath& folder);
    // Removes a pane (never the last); an emptied column goes away; the most recent other pane becomes active.
    void close(PaneState* pane);

    static constexpr int kMaxColumns = 3;
    static constexpr int kMaxRows = 2;

Q_SIGNALS:
    void activePaneChanged();
    void panesChanged();

private:
    void loadOtherPanes();
    PaneState* makePane(const FilePath& folder, PaneState::Start start = PaneState::Start::loading);

    QUuid m_id = QUuid::createUuid();
    ViewPreferences* m_preferences;
    QList<QList<PaneState*>> m_columns;
    QUuid m_activePaneID;
    QList<QUuid> m_recent; // most recently active first
    double m_columnSplit = 0.5;
};

} // namespace orwick
