#pragma once
// TabState: one tab — a grid of panes (columns left to right, panes top to bottom in each), the
// active pane that commands act on, and the order in which panes were last active.
//
// A tab rebuilt from a saved one makes its panes when they are first asked for (columns(),
// panes(), activePane()…: the tab is shown, or a command looks into it), so a window restored
// with many tabs makes the panes of the one it shows; until then title(), place() and saved()
// answer from the saved grid.
//
// Signals: panesChanged() follows every change of the grid's shape; activePaneChanged() follows
// every change of the active pane; foldersChanged() follows every change of a pane's folder or
// listing (its locationChanged). Making a restored tab's panes on first use emits none of them.

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
    // A tab rebuilt from a saved one (every path through Session::folder now). Its panes are made
    // on first use, as restoreLayout() makes them, and wait to load until loadPanes().
    TabState(const Session::Tab& saved, ViewPreferences* preferences, QObject* parent = nullptr);

    QUuid id() const { return m_id; }
    const QList<QList<PaneState*>>& columns() const;
    QList<PaneState*> panes() const;
    // The panes made so far, without making a restored tab's: none until they are first used.
    QList<PaneState*> madePanes() const;
    PaneState* activePane() const;
    // The active pane's title (its folder's name, or a listing's title) and where it is (the
    // folder's abbreviated path, or the listing's title), for the tab bar; a restored tab's panes
    // are not made for them.
    QString title() const;
    QString place() const;
    bool isSplit() const { return panes().size() > 1; }
    // The most recently active pane other than the active one; none with a single pane.
    PaneState* otherPane() const;
    double columnSplit() const { return m_columnSplit; }
    void setColumnSplit(double fraction) { m_columnSplit = std::clamp(fraction, 0.1, 0.9); }

    // Replaces the grid by `columns` (left to right, top to bottom; at most kMaxColumns columns of
    // kMaxRows panes are kept), each path through Session::folder, and activates the pane at
    // `active`, counted column by column. The new panes wait to load until loadPanes().
    void restoreLayout(const QList<QList<FilePath>>& columns, int active);
    // The tab is shown: panes still waiting load their folders now, the active one first and the
    // others once its rows are on screen: when activePaneShown() says so, else kOthersAfterRowsMs
    // after its rows came, and kOthersAtTheLatestMs after this call however long it takes.
    void loadPanes();
    // The window has painted the active pane's rows: the panes still waiting load now.
    void activePaneShown();
    // Whether a pane of the tab still waits to be shown (loadPanes() not called, or its others
    // not yet loading).
    bool hasPanesWaiting() const;
    static constexpr int kOthersAfterRowsMs = 100;
    static constexpr int kOthersAtTheLatestMs = 300;
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
    void foldersChanged();

private:
    void loadOtherPanes();
    PaneState* makePane(const FilePath& folder, PaneState::Start start = PaneState::Start::loading);
    // Makes the panes of a restored tab that has none yet.
    void makeSavedPanes() const;
    void makeGrid(const QList<QList<FilePath>>& columns, int active);
    // The saved grid of a restored tab whose panes are not made yet (folders already checked).
    struct Unmade {
        QList<QList<FilePath>> columns;
        int active = 0;
        const FilePath& activeFolder() const;
    };
    std::optional<Unmade> m_unmade;

    QUuid m_id = QUuid::createUuid();
    ViewPreferences* m_preferences;
    QList<QList<PaneState*>> m_columns;
    QUuid m_activePaneID;
    QList<QUuid> m_recent; // most recently active first
    double m_columnSplit = 0.5;
};

} // namespace orwick
