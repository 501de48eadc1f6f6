// PaneState's search field: the query it describes, the debounced run, and the search listing
// whose results stream in while the walker goes on.

#include "async/GuiDelivery.h"
#include "state/PaneState.h"

#include "search/QuerySearch.h"

#include <QThreadPool>

namespace orwick {

SearchQuery PaneState::currentSearch() const
{
    SearchQuery query;
    query.text = m_searchText;
    query.scope = m_searchScope;
    query.folder = m_url;
    query.kind = m_searchKind;
    query.changed = m_searchChanged;
    query.name = m_searchName;
    return query;
}

void PaneState::setSearchText(const QString& text)
{
    if (text == m_searchText)
        return;
    m_searchText = text;
    m_searchName.reset(); // a saved search that is changed is a new search
    Q_EMIT searchOptionsChanged();
    search();
}

void PaneState::setSearchScope(SearchQuery::Scope scope)
{
    if (scope == m_searchScope)
        return;
    m_searchScope = scope;
    m_searchName.reset();
    Q_EMIT searchOptionsChanged();
    search();
}

void PaneState::setSearchKind(SearchQuery::Kind kind)
{
    if (kind == m_searchKind)
        return;
    m_searchKind = kind;
    m_searchName.reset();
    Q_EMIT searchOptionsChanged();
    search();
}

void PaneState::setSearchChanged(SearchQuery::Changed changed)
{
    if (changed == m_searchChanged)
        return;
    m_searchChanged = changed;
    m_searchName.reset();
    Q_EMIT searchOptionsChanged();
    search();
}

void PaneState::search()
{
    if (m_isOpeningSavedSearch)
        return;
    m_searchDebounce.start(); // a newer call restarts the wait, so only the last text runs
}

void PaneState::focusSearch()
{
    if (!m_isSearching) {
        m_isSearching = true;
        if (m_isFiltering)
            setFiltering(false); // one field at a time
        Q_EMIT searchOptionsChanged();
    }
    Q_EMIT searchFocusRequested();
}

void PaneState::endSearch()
{
    m_searchDebounce.stop();
    const bool showsSearch = m_listing && m_listing->kind == Listing::Kind::search;
    if (showsSearch) {
        showFolder(m_url, {}); // resets the field too
        return;
    }
    resetSearch();
}

void PaneState::resetSearch()
{
    m_searchDebounce.stop();
    m_listingNote.reset();
    m_searchScope = SearchQuery::Scope::below;
    m_searchName.reset();
    if (m_isSearching || !m_searchText.isEmpty()) {
        m_isSearching = false;
        m_searchText.clear();
        Q_EMIT searchOptionsChanged();
    }
}

void PaneState::open(const SavedSearch& saved)
{
    const SearchQuery query = SearchQuery::fromSaved(saved);
    m_isOpeningSavedSearch = true;
    if (!query.folder.isEmpty() && (query.folder != m_url || m_listing)) {
        m_backStack.append(m_url);
        m_forwardStack.clear();
        m_url = query.folder;
    }
    m_searchText = query.text;
    m_searchScope = query.scope;
    m_searchKind = query.kind;
    m_searchChanged = query.changed;
    m_searchName = saved.name;
    m_isSearching = true;
    m_isOpeningSavedSearch = false;
    Q_EMIT searchOptionsChanged();
    runSearch();
}

void PaneState::runSearch()
{
    m_searchDebounce.stop();
    const SearchQuery query = currentSearch();
    const bool showsSearch = m_listing && m_listing->kind == Listing::Kind::search;
    if (!query.isRunnable()) {
        // Nothing to look for: nothing runs, and the folder comes back.
        if (showsSearch) {
            m_loadTask.cancel();
            m_listing.reset();
            m_listingNote.reset();
            Q_EMIT locationChanged();
            watchCurrentFolder();
            load({});
        }
        return;
    }
    if (!showsSearch) {
        m_filter.clear();
        m_pendingSelection.clear();
        setSelectionTo({}, std::nullopt, std::nullopt);
    }
    m_listing = Listing::search(query);
    m_listingNote = query.filterSummary();
    Q_EMIT locationChanged();
    if (!showsSearch)
        watchCurrentFolder(); // a search listing watches nothing
    Q_EMIT searchStarted();
    loadSearch();
}

void PaneState::loadSearch()
{
    m_reloadTimer.stop();
    stopLoadingClock(); // the status line says "Searching…" instead
    const TaskSlot::Ticket ticket = m_loadTask.start();
    if (!m_isLoading) {
        m_isLoading = true;
        Q_EMIT loadingChanged();
    }
    m_error.reset();
    m_unsortedItems.clear();
    m_prepared.reset();
    rearrange();

    QPointer<PaneState> guard(this);
    const SearchQuery query = m_listing->query;
    QuerySearch::Options options;
    options.showHidden = m_showHidden;
    options.limit = kSearchResultLimit;
    QElapsedTimer started;
    started.start();
    // Batches and the end are posted to the application object and checked there, so a pane
    // deleted meanwhile, or a newer search, drops them unseen.
    QThreadPool::globalInstance()->start([guard, ticket, query, options, started] {
        const qint64 hits = QuerySearch::run(query, options, [guard, ticket](SearchBatch&& batch) {
            deliverToGui(guard, [ticket, items = std::move(batch.items)](PaneState& pane) {
                if (!pane.m_loadTask.isCurrent(ticket))
                    return;
                pane.m_unsortedItems.append(items);
                pane.m_prepared.reset();
                pane.rearrange();
            });
        }, *ticket.token);
        deliverToGui(guard, [ticket, started, hits](PaneState& pane) {
            if (!pane.m_loadTask.isCurrent(ticket))
                return;
            pane.m_loadTask.finish(ticket);
            if (hits >= kSearchResultLimit && pane.m_listingNote) {
                *pane.m_listingNote += QStringLiteral(" · The first %L1 results").arg(kSearchResultLimit);
                Q_EMIT pane.locationChanged(); // the note is redrawn
            }
            pane.m_isLoading = false;
            pane.m_lastLoadTime = started.elapsed();
            Q_EMIT pane.loadingChanged();
            pane.rearrange();
        });
    });
}

} // namespace orwick
