#include "state/PaneState.h"

#include "async/GuiDelivery.h"
#include "async/TimeLimited.h"
#include "base/Formatting.h"
#include "base/TextMatch.h"
#include "fileops/OutsideMoves.h"
#include "files/DirectoryLoader.h"
#include "files/DirectoryWatcher.h"
#include "files/ListingLoader.h"
#include "platform/AllTrashes.h"
#include "platform/MountTable.h"
#include "platform/XdgPaths.h"
#include "servers/ServerMounts.h"

#include <QDateTime>
#include <algorithm>
#include <cmath>

namespace orwick {

PaneState::PaneState(const FilePath& folder, ViewPreferences* preferences, QObject* parent, Start start)
    : QObject(parent), m_preferences(preferences), m_waiting(start == Start::whenShown), m_viewMode(preferences ? preferences->defaultViewMode() : ViewMode::list),
      m_iconSize(preferences ? preferences->iconSize() : ViewPreferences::kDefaultIconSize),
      m_folderSizes(new FolderSizes(this))
{
    m_clock.start();
    // Measured folder sizes last until the folder is left; a sort by size takes each batch in.
    connect(this, &PaneState::locationChanged, this, [this] {
        if (m_listing || m_folderSizes->folder() != m_url)
            m_folderSizes->clear();
    });
    connect(m_folderSizes, &FolderSizes::changed, this, [this] {
        if (m_sortKey == SortKey::size && !m_folderSizes->isEmpty())
            rearrange();
    });
    m_reloadTimer.setSingleShot(true);
    connect(&m_reloadTimer, &QTimer::timeout, this, [this] { load({}); });
    // A load that runs long says so, with a count that grows while it reads.
    m_loadingNoteDelay.setSingleShot(true);
    m_loadingNoteDelay.setInterval(kLoadingNoteDelayMs);
    m_loadProgressTimer.setInterval(100);
    auto sampleProgress = [this] {
        const qint64 read = m_loadFeedback ? m_loadFeedback->itemsRead.load(std::memory_order_relaxed) : 0;
        const bool changed = read != m_itemsRead || !m_loadingSlowly;
        m_itemsRead = read;
        m_loadingSlowly = true;
        if (changed)
            Q_EMIT loadProgressChanged();
    };
    connect(&m_loadingNoteDelay, &QTimer::timeout, this, [this, sampleProgress] {
        if (!m_isLoading)
            return;
        sampleProgress();
        m_loadProgressTimer.start();
    });
    connect(&m_loadProgressTimer, &QTimer::timeout, this, sampleProgress);
    m_searchDebounce.setSingleShot(true);
    m_searchDebounce.setInterval(kSearchDebounceMs);
    connect(&m_searchDebounce, &QTimer::timeout, this, &PaneState::runSearch);
    // A new default view, or grid for media switched, shows at once in a folder whose view was
    // not chosen; a view chosen for the folder (here or in another pane) waits for the next visit.
    if (preferences)
        connect(preferences, &ViewPreferences::changed, this, [this] {
            if (m_listing || m_isLoading || !m_preferences || m_viewMode == ViewMode::columns
                || m_viewModeReason == ViewPreferences::Reason::saved)
                return;
            const auto [mode, reason] = m_preferences->mode(m_url, ViewPreferences::isMostlyMedia(m_unsortedItems));
            if (reason == ViewPreferences::Reason::saved || (mode == m_viewMode && reason == m_viewModeReason))
                return;
            m_viewModeReason = reason;
            if (mode != m_viewMode) {
                m_viewMode = mode;
                Q_EMIT viewModeChanged();
                rearrange();
            }
        });
    showFolder(folder, {});
}

PaneState::~PaneState() = default;

QString PaneState::emptyText() const
{
    if (m_error)
        return *m_error;
    if (!m_filter.trimmed().isEmpty() && !m_unsortedItems.isEmpty())
        return emptyText::nothingMatches(m_filter);
    return emptyText::forSource(m_listing);
}

QString PaneState::title() const
{
    return m_listing ? m_listing->title() : folderTitle(m_url);
}

QString PaneState::folderTitle(const FilePath& folder)
{
    return folder.isRoot() ? QStringLiteral("/") : visibleName(folder.fileNameBytes());
}

FileItems PaneState::selectedItems() const
{
    FileItems selected;
    if (m_selection.isEmpty())
        return selected;
    for (const FileItem& item : m_items)
        if (m_selection.contains(item.url))
            selected.append(item);
    return selected;
}

const FileItem* PaneState::item(const FilePath& url) const
{
    const int r = row(url);
    return r < 0 ? nullptr : &m_items[r];
}

int PaneState::row(const FilePath& url) const { return m_positions.value(url, -1); }

qint64 PaneState::selectedSize() const
{
    qint64 total = 0;
    for (const FilePath& url : m_selection)
        if (const FileItem* found = item(url))
            total += found->size ? *found->size : m_folderSizes->size(url).value_or(0);
    return total;
}

// --- Navigation

void PaneState::navigate(const FilePath& to, const QList<FilePath>& selecting)
{
    if (to.isEmpty())
        return;
    if (to == m_url && !m_listing) {
        reveal(selecting);
        return;
    }
    m_backStack.append(m_url);
    m_forwardStack.clear();
    showFolder(to, selecting);
}

void PaneState::showFolder(const FilePath& folder, const QList<FilePath>& selecting)
{
    m_url = folder;
    m_listing.reset();
    keepSortForSource();
    resetSearch();
    m_filter.clear();
    m_isFiltering = false;
    m_pendingRename.reset();
    clearShownItems();
    setSelectionTo({}, std::nullopt, std::nullopt);
    m_pendingSelection = QSet<FilePath>(selecting.begin(), selecting.end());
    Q_EMIT locationChanged();
    watchCurrentFolder();
    load(selecting);
}

void PaneState::show(const Listing& listing)
{
    if (listing.kind != Listing::Kind::search)
        resetSearch();
    m_listing = listing;
    keepSortForSource();
    m_filter.clear();
    m_isFiltering = false;
    m_pendingSelection.clear();
    clearShownItems();
    setSelectionTo({}, std::nullopt, std::nullopt);
    Q_EMIT locationChanged();
    watchCurrentFolder();
    load({});
}

void PaneState::closeListing()
{
    if (!m_listing)
        return;
    showFolder(m_url, {});
}

void PaneState::goBack()
{
    if (m_listing) {
        closeListing();
        return;
    }
    if (m_backStack.isEmpty())
        return;
    const FilePath left = m_url;
    const FilePath previous = m_backStack.takeLast();
    m_forwardStack.append(left);
    showFolder(previous, {left});
}

void PaneState::goForward()
{
    if (m_forwardStack.isEmpty())
        return;
    const FilePath left = m_url;
    const FilePath next = m_forwardStack.takeLast();
    m_backStack.append(left);
    if (m_listing)
        m_listing.reset();
    showFolder(next, {left});
}

void PaneState::goUp()
{
    if (m_url.isRoot() && !m_listing)
        return;
    const FilePath left = m_url;
    if (m_listing) {
        closeListing();
        return;
    }
    navigate(left.parent(), {left});
}

void PaneState::reload() { load({}); }

void PaneState::reveal(const QList<FilePath>& urls)
{
    if (urls.isEmpty())
        return;
    const FilePath folder = urls.first().parent();
    if (folder != m_url || m_listing) {
        navigate(folder, urls);
        return;
    }
    m_pendingSelection = QSet<FilePath>(urls.begin(), urls.end());
    restoreSelection();
    Q_EMIT selectionChanged();
}

void PaneState::selectLanded(const FilePath& folder, const QList<FilePath>& landed)
{
    if (m_listing || folder != m_url || landed.isEmpty())
        return;
    m_pendingSelection = QSet<FilePath>(landed.begin(), landed.end());
    if (std::all_of(landed.begin(), landed.end(), [this](const FilePath& url) { return m_positions.contains(url); })) {
        restoreSelection();
        Q_EMIT selectionChanged();
    }
}

void PaneState::openSelection()
{
    FileItems chosen = selectedItems();
    if (chosen.isEmpty() && m_cursor)
        if (const FileItem* current = item(*m_cursor))
            chosen.append(*current);
    if (chosen.isEmpty())
        return;
    FileItems files;
    const FileItem* folder = nullptr;
    for (const FileItem& entry : chosen) {
        if (entry.brokenTarget) {
            Q_EMIT messageRequested(brokenLinkMessage(entry));
            return;
        }
        if (entry.isFolder) {
            if (!folder)
                folder = &entry;
        } else {
            files.append(entry);
        }
    }
    if (!files.isEmpty())
        Q_EMIT openRequested(files);
    else if (folder)
        navigate(folder->destination);
}

void PaneState::enterCursorFolder()
{
    if (!m_cursor)
        return;
    const FileItem* current = item(*m_cursor);
    if (current && current->isFolder)
        navigate(current->destination);
}

// --- Loading

void PaneState::shown()
{
    if (!m_waiting)
        return;
    m_waiting = false;
    watchCurrentFolder();
    load(std::exchange(m_selectingWhenShown, {}));
}

void PaneState::clearShownItems()
{
    m_loadTask.cancel();
    m_arrangeTask.cancel();
    m_reloadTimer.stop();
    stopLoadingClock();
    m_error.reset();
    m_showsFirstBatch = false;
    m_prepared.reset();
    m_headings.clear();
    m_positions = {};
    FileItems oldItems = std::exchange(m_items, {});
    FileItems oldLoad = std::exchange(m_unsortedItems, {});
    // Dropping 100,000 items takes a while: a large old list goes away off the GUI thread.
    if (oldItems.size() + oldLoad.size() > kBackgroundArrangeThreshold)
        QThreadPool::globalInstance()->start([oldItems = std::move(oldItems), oldLoad = std::move(oldLoad)]() mutable {
            oldItems.clear();
            oldLoad.clear();
        });
    // The view shows "loading" rather than "empty" until the new place is read.
    const bool loadingChangedNow = m_isLoading != !m_waiting;
    m_isLoading = !m_waiting;
    Q_EMIT itemsChanged();
    if (loadingChangedNow)
        Q_EMIT loadingChanged();
}

QString PaneState::loadingText() const
{
    if (!m_isLoading || !m_loadingSlowly)
        return {};
    if (m_itemsRead <= 0)
        return QStringLiteral("Loading…");
    return QStringLiteral("Loading… ") + formatCount(m_itemsRead, QStringLiteral("item"));
}

void PaneState::startLoadingClock(std::shared_ptr<LoadFeedback> feedback)
{
    const bool wasShown = m_loadingSlowly;
    m_loadFeedback = std::move(feedback);
    m_itemsRead = 0;
    m_loadingSlowly = false;
    m_loadProgressTimer.stop();
    m_loadingNoteDelay.start();
    if (wasShown)
        Q_EMIT loadProgressChanged();
}

void PaneState::stopLoadingClock()
{
    m_loadingNoteDelay.stop();
    m_loadProgressTimer.stop();
    m_loadFeedback.reset();
    m_itemsRead = 0;
    if (std::exchange(m_loadingSlowly, false))
        Q_EMIT loadProgressChanged();
}

void PaneState::load(const QList<FilePath>& selecting)
{
    if (m_waiting) {
        m_selectingWhenShown = selecting;
        return;
    }
    if (m_listing && m_listing->kind == Listing::Kind::search) {
        loadSearch(); // streamed: the first results show while the walk goes on
        return;
    }
    m_reloadTimer.stop();
    m_changedDuringLoad = false;
    const TaskSlot::Ticket ticket = m_loadTask.start();
    if (!m_isLoading) {
        m_isLoading = true;
        Q_EMIT loadingChanged();
    }
    const FilePath folder = m_url;
    const std::optional<Listing> listing = m_listing;
    const bool showHidden = m_showHidden;
    QElapsedTimer started;
    started.start();
    auto feedback = std::make_shared<LoadFeedback>();
    // A folder shown afresh (not a reload of rows on screen) shows its first batch early.
    if (!listing && m_unsortedItems.isEmpty()) {
        feedback->firstBatch = [guard = QPointer<PaneState>(this), ticket, selecting](FileItems items) {
            deliverToGui(guard, [ticket, selecting, items = std::move(items)](PaneState& pane) mutable {
                if (pane.m_loadTask.isCurrent(ticket))
                    pane.applyFirstBatch(std::move(items), selecting);
            });
        };
    }
    startLoadingClock(feedback);
    // A folder is read in name order, so that the arrangement by name has nothing to move.
    auto read = [folder, listing, showHidden, token = ticket.token, feedback] {
        return listing ? ListingLoader::load(*listing, showHidden, token.get(), feedback.get())
                       : DirectoryLoader::load(folder, showHidden, token.get(), feedback.get(), DirectoryLoader::Order::byName);
    };
    auto apply = [this, ticket, selecting, started](ListingResult result) {
        if (!m_loadTask.isCurrent(ticket))
            return; // a newer load, or a move elsewhere, made this one stale
        m_loadTask.finish(ticket);
        applyLoad(std::move(result), selecting, started.elapsed());
    };
    if (listing || !isOnNetworkMount(folder)) {
        runInBackground(this, std::move(read), std::move(apply));
        return;
    }
    // A server can stop answering: its folder is read on a thread of its own, with a time limit.
    runWithTimeLimit(this, kNetworkReadLimitMs, [read, folder] {
        ListingResult result = read();
        if (result.error && (isConnectionLost(folder) || ServerMounts::isDisconnected(folder)))
            result.error = emptyText::serverGone;
        return result;
    }, apply, [apply] {
        ListingResult late;
        late.error = emptyText::notAnswering;
        apply(std::move(late));
    });
}

void PaneState::applyFirstBatch(FileItems items, const QList<FilePath>& selecting)
{
    m_showsFirstBatch = true;
    m_error.reset();
    m_unsortedItems = std::move(items);
    m_prepared.reset();
    for (const FilePath& url : selecting)
        m_pendingSelection.insert(url);
    followFolderViewMode(); // the batch is a fair sample of the folder
    rearrange();            // small: arranged at once
}

void PaneState::applyLoad(ListingResult result, const QList<FilePath>& selecting, qint64 elapsedMs)
{
    m_isLoading = false;
    m_showsFirstBatch = false;
    stopLoadingClock();
    m_lastLoadTime = result.durationMs;
    m_error = result.error;
    m_unsortedItems = result.error ? FileItems{} : std::move(result.items);
    m_prepared.reset();
    for (const FilePath& url : selecting)
        m_pendingSelection.insert(url);
    followFolderViewMode();
    Q_EMIT loadingChanged();
    rearrange();
    if (m_changedDuringLoad)
        m_reloadTimer.start(int(reloadDelayMs()));
}

void PaneState::followFolderViewMode()
{
    // The view follows the folder, except that the columns view stays on while moving.
    if (m_listing || !m_preferences || m_viewMode == ViewMode::columns)
        return;
    const auto [mode, reason] = m_preferences->mode(m_url, ViewPreferences::isMostlyMedia(m_unsortedItems));
    m_viewModeReason = reason;
    if (mode != m_viewMode) {
        m_viewMode = mode;
        Q_EMIT viewModeChanged();
    }
}

void PaneState::watchCurrentFolder()
{
    delete m_watcher;
    m_watcher = nullptr;
    if (m_waiting)
        return;
    FilePath watched = m_url;
    if (m_listing) {
        if (m_listing->kind != Listing::Kind::trash)
            return;
        watched = xdg::homeTrash().child(QByteArrayView("files"));
    }
    if (!m_listing && isOnNetworkMount(watched))
        return; // inotify learns nothing from a server, and adding a watch may wait on it
    m_watcher = new DirectoryWatcher(watched, this);
    connect(m_watcher, &DirectoryWatcher::changed, this, &PaneState::onFolderChanged);
    if (!m_listing) // renames by other programs, offered for link updates
        connect(m_watcher, &DirectoryWatcher::itemMoved, &OutsideMoves::shared(), &OutsideMoves::observe);
    if (m_listing) // the other drives' Trash folders, watched alongside the home's
        for (const FilePath& folder : trash::allTrashFolders())
            if (folder != xdg::homeTrash())
                connect(new DirectoryWatcher(folder.child(QByteArrayView("files")), m_watcher), &DirectoryWatcher::changed, this,
                        &PaneState::onFolderChanged);
}

void PaneState::onFolderChanged()
{
    // Spaced, not postponed: a folder that changes all the time still reloads every delay.
    if (m_isLoading)
        m_changedDuringLoad = true;
    else if (!m_reloadTimer.isActive())
        m_reloadTimer.start(int(reloadDelayMs()));
}

// --- Arrangement

ArrangeInput PaneState::arrangeInput() const
{
    ArrangeInput input;
    input.items = m_unsortedItems;
    input.prepared = m_prepared;
    input.sortKey = m_sortKey;
    input.ascending = m_sortAscending;
    input.filter = m_filter;
    input.groupByDate = m_groupByDate;
    input.ignored = m_ignored;
    input.folder = m_url;
    input.now = QDateTime::currentMSecsSinceEpoch();
    input.folderSizes = m_folderSizes->snapshot();
    if (m_propertySource)
        m_propertySource(input);
    return input;
}

void PaneState::measureFolderSizes()
{
    if (!canMeasureFolderSizes())
        return;
    QList<FilePath> folders;
    for (const FileItem& item : m_items)
        if ((item.isFolder || item.isPackage) && !item.isSymlink())
            folders.append(item.url);
    m_folderSizes->measure(m_url, folders);
}

void PaneState::rearrange()
{
    ArrangeInput input = arrangeInput();
    if (input.items.size() <= kBackgroundArrangeThreshold) {
        m_arrangeTask.cancel();
        if (auto arranged = arrange(input))
            applyArrangement(std::move(*arranged));
        return;
    }
    const TaskSlot::Ticket ticket = m_arrangeTask.start();
    runInBackground(this, [input = std::move(input), token = ticket.token] { return arrange(input, token.get()); },
                    [this, ticket](std::optional<Arrangement> arranged) {
                        if (!m_arrangeTask.isCurrent(ticket) || !arranged)
                            return;
                        m_arrangeTask.finish(ticket);
                        applyArrangement(std::move(*arranged));
                    });
}

void PaneState::applyArrangement(Arrangement arrangement)
{
    const int previousCursorRow = m_cursor ? m_positions.value(*m_cursor) : -1;
    FileItems old = std::exchange(m_items, std::move(arrangement.items));
    m_headings = std::move(arrangement.headings);
    m_positions = std::move(arrangement.positions);
    if (arrangement.prepared && arrangement.prepared->isFor(m_unsortedItems))
        m_prepared = std::move(arrangement.prepared);
    restoreSelection(old, previousCursorRow);
    // Dropping 100,000 items takes a while: a large old list goes away off the GUI thread.
    if (old.size() > kBackgroundArrangeThreshold)
        QThreadPool::globalInstance()->start([old = std::move(old)]() mutable { old.clear(); });
    Q_EMIT itemsChanged();
    Q_EMIT selectionChanged();
}

std::optional<FilePath> PaneState::nearestShown(const FileItems& previous, int row) const
{
    if (row < 0 || row >= previous.size())
        return std::nullopt;
    for (qsizetype r = row + 1; r < previous.size(); ++r)
        if (m_positions.contains(previous[r].url))
            return previous[r].url;
    for (qsizetype r = row - 1; r >= 0; --r)
        if (m_positions.contains(previous[r].url))
            return previous[r].url;
    return std::nullopt;
}

void PaneState::restoreSelection(const FileItems& previous, int previousCursorRow)
{
    QSet<FilePath> wanted;
    for (const FilePath& url : std::as_const(m_pendingSelection))
        if (m_positions.contains(url))
            wanted.insert(url);
    if (!wanted.isEmpty()) {
        m_pendingSelection.clear();
        int first = int(m_items.size());
        for (const FilePath& url : wanted)
            first = std::min(first, m_positions.value(url));
        m_selection = wanted;
        m_cursor = m_items[first].url;
        m_anchor = m_cursor;
    } else {
        const bool hadSelection = !m_selection.isEmpty();
        m_selection.removeIf([this](const FilePath& url) { return !m_positions.contains(url); });
        if (m_cursor && !m_positions.contains(*m_cursor)) {
            // The row under the cursor went away: its neighbour takes the cursor, and the
            // selection when nothing else of it is left, as in every file manager.
            m_cursor = nearestShown(previous, previousCursorRow);
            if (m_cursor) {
                m_anchor = m_cursor;
                if (hadSelection && m_selection.isEmpty())
                    m_selection = {*m_cursor};
            }
        }
        if (m_anchor && !m_positions.contains(*m_anchor))
            m_anchor = m_cursor;
    }
    if (m_pendingRename && m_positions.contains(*m_pendingRename)) {
        const FilePath url = *m_pendingRename;
        m_pendingRename.reset();
        Q_EMIT renameRequested(url);
    }
}

// --- Selection

void PaneState::setSelectionTo(QSet<FilePath> selection, std::optional<FilePath> cursor, std::optional<FilePath> anchor)
{
    m_selection = std::move(selection);
    m_cursor = std::move(cursor);
    m_anchor = std::move(anchor);
    Q_EMIT selectionChanged();
}

void PaneState::selectAll()
{
    QSet<FilePath> all;
    all.reserve(m_items.size());
    for (const FileItem& entry : m_items)
        all.insert(entry.url);
    setSelectionTo(std::move(all), m_cursor ? m_cursor : (m_items.isEmpty() ? std::nullopt : std::optional(m_items.first().url)), m_anchor);
}

void PaneState::invertSelection()
{
    QSet<FilePath> inverted;
    for (const FileItem& entry : m_items)
        if (!m_selection.contains(entry.url))
            inverted.insert(entry.url);
    setSelectionTo(std::move(inverted), m_cursor, m_anchor);
}

void PaneState::clearSelection() { setSelectionTo({}, m_cursor, m_anchor); }

int PaneState::markMatching(const NamePattern& pattern, Mark mark)
{
    QSet<FilePath> selection = m_selection;
    std::optional<FilePath> first;
    int taken = 0;
    for (const FileItem& entry : m_items) {
        if (!pattern.matches(entry.name))
            continue;
        ++taken;
        if (!first)
            first = entry.url;
        if (mark == Mark::select)
            selection.insert(entry.url);
        else
            selection.remove(entry.url);
    }
    // Selecting brings the cursor to the first item taken when it stood on none of the selection.
    std::optional<FilePath> cursor = m_cursor;
    if (mark == Mark::select && first && !(cursor && selection.contains(*cursor)))
        cursor = first;
    setSelectionTo(std::move(selection), cursor, m_anchor);
    return taken;
}

void PaneState::click(const FilePath& url, Qt::KeyboardModifiers modifiers)
{
    const int clicked = row(url);
    if (clicked < 0)
        return;
    m_pendingSelection.clear(); // the user's choice wins over one waiting for the load
    if (modifiers & Qt::ShiftModifier) {
        const int from = m_anchor && row(*m_anchor) >= 0 ? row(*m_anchor) : clicked;
        QSet<FilePath> range;
        for (int r = std::min(from, clicked); r <= std::max(from, clicked); ++r)
            range.insert(m_items[r].url);
        if (modifiers & Qt::ControlModifier)
            range.unite(m_selection);
        setSelectionTo(std::move(range), url, m_items[from].url);
    } else if (modifiers & Qt::ControlModifier) {
        QSet<FilePath> toggled = m_selection;
        if (!toggled.remove(url))
            toggled.insert(url);
        setSelectionTo(std::move(toggled), url, url);
    } else {
        setSelectionTo({url}, url, url);
    }
}

void PaneState::moveCursor(int by, bool extend)
{
    if (m_items.isEmpty())
        return;
    const int current = m_cursor ? row(*m_cursor) : -1;
    m_pendingSelection.clear(); // the user's choice wins over one waiting for the load
    int target = current < 0 ? (by >= 0 ? 0 : int(m_items.size()) - 1) : current + by;
    target = std::clamp(target, 0, int(m_items.size()) - 1);
    const FilePath url = m_items[target].url;
    if (!extend) {
        setSelectionTo({url}, url, url);
        return;
    }
    const FilePath anchor = (m_anchor && row(*m_anchor) >= 0) ? *m_anchor : (current >= 0 ? m_items[current].url : url);
    const int from = row(anchor);
    QSet<FilePath> range;
    for (int r = std::min(from, target); r <= std::max(from, target); ++r)
        range.insert(m_items[r].url);
    setSelectionTo(std::move(range), url, anchor);
}

void PaneState::moveCursorToEnd(bool last, bool extend)
{
    // Without a caret a step of 0 lands on the first item and -1 on the last.
    if (!m_cursor || row(*m_cursor) < 0)
        moveCursor(last ? -1 : 0, extend);
    else
        moveCursor(last ? int(m_items.size()) : -int(m_items.size()), extend);
}

void PaneState::moveCursorIntoRows()
{
    if (!m_cursor || row(*m_cursor) < 0)
        moveCursor(1, false);
}

void PaneState::typeAhead(const QString& text) { typeAhead(text, m_clock.elapsed()); }

void PaneState::typeAhead(const QString& text, qint64 nowMs)
{
    if (m_typeAheadTime >= 0 && nowMs - m_typeAheadTime <= kTypeAheadWindowMs)
        m_typeAhead += text;
    else
        m_typeAhead = text;
    m_typeAheadTime = nowMs;
    // Folded as the filter and the palette fold: "resu" finds "Résumé".
    const QString prefix = foldForSearch(m_typeAhead);
    for (const FileItem& entry : m_items) {
        if (foldForSearch(entry.name).startsWith(prefix)) {
            setSelectionTo({entry.url}, entry.url, entry.url);
            return;
        }
    }
}

// --- Arrangement and view options

void PaneState::sort(SortKey key)
{
    if (isTrashSortKey(key) && !showsTrash())
        return;
    m_sortChosen = true;
    m_groupByDate = false;
    if (key == m_sortKey) {
        m_sortAscending = !m_sortAscending;
    } else {
        m_sortKey = key;
        m_sortAscending = key == SortKey::name || key == SortKey::kind || key == SortKey::originalLocation;
    }
    Q_EMIT arrangementOptionsChanged();
    rearrange();
}

void PaneState::keepSortForSource()
{
    if (!isTrashSortKey(m_sortKey) || showsTrash())
        return;
    m_sortKey = SortKey::name;
    m_sortAscending = true;
    Q_EMIT arrangementOptionsChanged();
}

void PaneState::setGroupByDate(bool on)
{
    m_groupByDate = on;
    Q_EMIT arrangementOptionsChanged();
    rearrange();
}

void PaneState::setFilter(const QString& text)
{
    if (text == m_filter)
        return;
    m_filter = text;
    Q_EMIT arrangementOptionsChanged();
    rearrange();
}

void PaneState::setFiltering(bool on)
{
    m_isFiltering = on;
    if (!on && !m_filter.isEmpty()) {
        m_filter.clear();
        rearrange();
    }
    Q_EMIT arrangementOptionsChanged();
}

void PaneState::setShowHidden(bool on)
{
    if (on == m_showHidden)
        return;
    m_showHidden = on;
    Q_EMIT arrangementOptionsChanged();
    load({});
}

void PaneState::chooseViewMode(ViewMode mode)
{
    m_viewMode = mode;
    m_viewModeReason = ViewPreferences::Reason::saved;
    if (m_preferences && !m_listing)
        m_preferences->remember(mode, m_url);
    Q_EMIT viewModeChanged();
    rearrange();
}

void PaneState::focusFilter()
{
    if (m_isSearching) {
        Q_EMIT searchFocusRequested();
        return;
    }
    if (!m_isFiltering) {
        m_isFiltering = true;
        Q_EMIT arrangementOptionsChanged();
    }
    Q_EMIT filterFocusRequested();
}

void PaneState::zoomIcons(int steps)
{
    const double size = std::clamp(m_iconSize * std::pow(1.25, steps), ViewPreferences::kMinIconSize, ViewPreferences::kMaxIconSize);
    if (size == m_iconSize)
        return;
    m_iconSize = size;
    if (m_preferences)
        m_preferences->setIconSize(size); // the next pane and the next start begin at this size
    Q_EMIT iconSizeChanged();
}

void PaneState::setRenaming(const std::optional<FilePath>& url)
{
    if (url == m_renaming)
        return;
    m_renaming = url;
    Q_EMIT renamingChanged();
}

void PaneState::setPropertySource(PropertySource source)
{
    m_propertySource = std::move(source);
    rearrange();
}

void PaneState::setIgnoredPaths(std::shared_ptr<const QSet<FilePath>> ignored)
{
    m_ignored = std::move(ignored);
    rearrange();
}

} // namespace orwick

#include "moc_PaneState.cpp"
