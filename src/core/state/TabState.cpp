#include "state/TabState.h"

#include "terminal/TabTerminals.h"
#include "terminal/TerminalSession.h"

#include <algorithm>
#include <QTimer>
#include <memory>

namespace orwick {

namespace {

// `columns` cut to what a tab holds (kMaxColumns of kMaxRows), empty columns dropped, each path
// through Session::folder; never empty.
QList<QList<FilePath>> fitted(const QList<QList<FilePath>>& columns)
{
    QList<QList<FilePath>> grid;
    for (const QList<FilePath>& column : columns.mid(0, TabState::kMaxColumns)) {
        QList<FilePath> folders;
        for (const FilePath& folder : column.mid(0, TabState::kMaxRows))
            folders.append(Session::folder(folder));
        if (!folders.isEmpty())
            grid.append(folders);
    }
    if (grid.isEmpty())
        grid = {{Session::folder({})}};
    return grid;
}

} // namespace

TabState::TabState(const FilePath& folder, ViewPreferences* preferences, QObject* parent, PaneState::Start start)
    : QObject(parent), m_preferences(preferences)
{
    PaneState* pane = makePane(folder, start);
    m_columns = {{pane}};
    m_activePaneID = pane->id();
    m_recent = {pane->id()};
}

TabState::TabState(const Session::Tab& saved, ViewPreferences* preferences, QObject* parent)
    : QObject(parent), m_preferences(preferences)
{
    // The folders are checked now, so that the tab's title names the folder it will show.
    m_unmade = Unmade{fitted(saved.grid()), saved.activeIndex()};
    if (!saved.terminals.isEmpty())
        TabTerminals::of(this)->restore(saved.terminals, saved.showTerminal);
}

PaneState* TabState::makePane(const FilePath& folder, PaneState::Start start)
{
    auto* pane = new PaneState(folder, m_preferences, this, start);
    connect(pane, &PaneState::locationChanged, this, &TabState::foldersChanged);
    return pane;
}

const FilePath& TabState::Unmade::activeFolder() const
{
    // As makeGrid picks it: counted column by column, the first pane when out of range.
    qsizetype index = active;
    for (const QList<FilePath>& column : columns) {
        if (index < 0)
            break;
        if (index < column.size())
            return column[index];
        index -= column.size();
    }
    return columns.first().first();
}

void TabState::makeSavedPanes() const
{
    if (!m_unmade)
        return;
    // Asking for a restored tab's panes is what makes them.
    auto* self = const_cast<TabState*>(this);
    const Unmade unmade = *std::exchange(self->m_unmade, std::nullopt);
    self->makeGrid(unmade.columns, unmade.active);
}

void TabState::makeGrid(const QList<QList<FilePath>>& columns, int active)
{
    m_columns.clear();
    for (const QList<FilePath>& column : columns) {
        QList<PaneState*> made;
        for (const FilePath& folder : column)
            made.append(makePane(folder, PaneState::Start::whenShown));
        m_columns.append(made);
    }
    const QList<PaneState*> all = madePanes();
    PaneState* activePane = all[active >= 0 && active < all.size() ? active : 0];
    m_activePaneID = activePane->id();
    m_recent = {activePane->id()};
}

void TabState::restoreLayout(const QList<QList<FilePath>>& columns, int active)
{
    const QList<PaneState*> old = madePanes();
    const bool wasUnmade = std::exchange(m_unmade, std::nullopt).has_value();
    makeGrid(fitted(columns), active);
    for (PaneState* pane : old)
        pane->deleteLater();
    if (!old.isEmpty() || wasUnmade) {
        Q_EMIT panesChanged();
        Q_EMIT activePaneChanged();
    }
}

void TabState::loadPanes()
{
    // The pane the keyboard is in reads its folder first; the others follow once its rows are on
    // screen, so that a restored split doesn't keep the active pane waiting on its neighbour, nor
    // the neighbour's reading compete with the active pane's first paint.
    PaneState* first = activePane();
    first->shown();
    if (!first->isLoading()) {
        loadOtherPanes();
        return;
    }
    auto once = std::make_shared<QMetaObject::Connection>();
    *once = connect(first, &PaneState::loadingChanged, this, [this, first, once] {
        if (first->isLoading())
            return;
        disconnect(*once);
        // The window says when the rows were painted (activePaneShown()); without one, or if it
        // never does, a while later.
        QTimer::singleShot(kOthersAfterRowsMs, this, &TabState::loadOtherPanes);
    });
    // A folder that is slow to read (a dead server) holds the others back no longer than this.
    QTimer::singleShot(kOthersAtTheLatestMs, this, [this, once] {
        disconnect(*once);
        loadOtherPanes();
    });
}

void TabState::activePaneShown() { loadOtherPanes(); }

bool TabState::hasPanesWaiting() const
{
    const QList<PaneState*> all = panes();
    return std::any_of(all.begin(), all.end(), [](const PaneState* pane) { return pane->isWaitingToBeShown(); });
}

void TabState::loadOtherPanes()
{
    for (PaneState* pane : panes())
        pane->shown();
}

Session::Tab TabState::saved() const
{
    QList<QList<FilePath>> grid;
    int active = 0;
    if (m_unmade) {
        grid = m_unmade->columns;
        active = m_unmade->active;
    } else {
        for (const auto& column : m_columns) {
            QList<FilePath> folders;
            for (PaneState* pane : column)
                folders.append(pane->url());
            grid.append(folders);
        }
        active = int(panes().indexOf(activePane()));
    }
    qsizetype count = 0;
    for (const auto& column : grid)
        count += column.size();
    Session::Tab tab = Session::Tab::ofGrid(grid, active >= 0 && active < count ? active : 0);
    if (const TabTerminals* terminals = TabTerminals::existing(this)) {
        for (const TerminalSession* session : terminals->sessions())
            tab.terminals.append(session->folder());
        tab.showTerminal = terminals->isShown() && !tab.terminals.isEmpty();
    }
    return tab;
}

const QList<QList<PaneState*>>& TabState::columns() const
{
    makeSavedPanes();
    return m_columns;
}

QList<PaneState*> TabState::panes() const
{
    makeSavedPanes();
    return madePanes();
}

QList<PaneState*> TabState::madePanes() const
{
    QList<PaneState*> all;
    for (const auto& column : m_columns)
        all += column;
    return all;
}

PaneState* TabState::activePane() const
{
    makeSavedPanes();
    for (const auto& column : m_columns)
        for (PaneState* pane : column)
            if (pane->id() == m_activePaneID)
                return pane;
    return m_columns.first().first();
}

QString TabState::title() const
{
    return m_unmade ? PaneState::folderTitle(m_unmade->activeFolder()) : activePane()->title();
}

QString TabState::place() const
{
    if (m_unmade)
        return m_unmade->activeFolder().abbreviated();
    const PaneState* pane = activePane();
    return pane->listing() ? pane->title() : pane->url().abbreviated();
}

void TabState::activate(PaneState* pane)
{
    if (!pane || pane->id() == m_activePaneID || !panes().contains(pane))
        return;
    m_activePaneID = pane->id();
    m_recent.removeAll(pane->id());
    m_recent.prepend(pane->id());
    Q_EMIT activePaneChanged();
}

void TabState::activateNext(int offset)
{
    const QList<PaneState*> all = panes();
    if (all.size() < 2)
        return;
    const qsizetype at = all.indexOf(activePane());
    const qsizetype count = all.size();
    activate(all[((at + offset) % count + count) % count]);
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
    // Panes never activated still count: the first one that is not the active one.
    for (PaneState* pane : all)
        if (pane->id() != m_activePaneID)
            return pane;
    return nullptr;
}

void TabState::toggleSplit()
{
    PaneState* active = activePane();
    if (isSplit()) {
        for (PaneState* pane : panes())
            if (pane != active)
                pane->deleteLater();
        m_columns = {{active}};
        m_recent = {active->id()};
        Q_EMIT panesChanged();
        return;
    }
    split(active, PaneEdge::right, active->url());
}

bool TabState::canSplit(PaneState* pane, PaneEdge edge) const
{
    for (const auto& column : columns()) {
        if (!column.contains(pane))
            continue;
        if (edge == PaneEdge::left || edge == PaneEdge::right)
            return m_columns.size() < kMaxColumns;
        return column.size() < kMaxRows;
    }
    return false;
}

PaneState* TabState::split(PaneState* pane, PaneEdge edge, const FilePath& folder)
{
    if (!canSplit(pane, edge))
        return nullptr;
    PaneState* added = makePane(folder);
    for (qsizetype c = 0; c < m_columns.size(); ++c) {
        const qsizetype r = m_columns[c].indexOf(pane);
        if (r < 0)
            continue;
        switch (edge) {
        case PaneEdge::left: m_columns.insert(c, {added}); break;
        case PaneEdge::right: m_columns.insert(c + 1, {added}); break;
        case PaneEdge::top: m_columns[c].insert(r, added); break;
        case PaneEdge::bottom: m_columns[c].insert(r + 1, added); break;
        }
        break;
    }
    // The new pane is the active one; the pane split from becomes the "other" pane.
    if (!m_recent.contains(pane->id()))
        m_recent.prepend(pane->id());
    Q_EMIT panesChanged();
    activate(added);
    return added;
}

void TabState::close(PaneState* pane)
{
    if (panes().size() < 2 || !panes().contains(pane))
        return;
    for (auto& column : m_columns)
        column.removeAll(pane);
    m_columns.removeIf([](const QList<PaneState*>& column) { return column.isEmpty(); });
    m_recent.removeAll(pane->id());
    const bool wasActive = pane->id() == m_activePaneID;
    pane->deleteLater();
    Q_EMIT panesChanged();
    if (wasActive) {
        PaneState* next = nullptr;
        for (const QUuid& id : m_recent)
            for (PaneState* candidate : panes())
                if (candidate->id() == id && !next)
                    next = candidate;
        m_activePaneID = QUuid();
        activate(next ? next : panes().first());
    }
}

} // namespace orwick

#include "moc_TabState.cpp"
