#pragma once
// PaneState: one pane — the folder or listing it shows, its arranged items, selection, cursor,
// sort, filter, view mode and history. Lives on the GUI thread; loads and large arrangements run
// in the background and are applied here, newest only. Selections, cursor and history hold
// paths, never items, so they survive reloads.
//
// Moving to another folder or listing shows it at once: the items, selection and cursor of the
// place left are gone before locationChanged() is emitted, so no key or command can reach them.
// A large folder shows its first batch of rows (arranged among themselves, usable) while the
// rest is read; the full arrangement then replaces it in one step, keeping selection and cursor.
// When the row under the cursor goes away (moved, trashed, filtered out), the cursor and the
// selection go to the next row that stays, or the previous one at the end.
//
// Signals: locationChanged() follows every change of folder or listing (before its load ends);
// itemsChanged() follows every applied arrangement (after a load, sort, filter…) and the emptying
// of the view when the pane moves; selectionChanged() follows any change of selection, cursor or
// anchor; loadProgressChanged() follows each change of loadingText().

#include "async/Background.h"
#include "disktools/FolderSizes.h"
#include "files/Arrangement.h"
#include "files/DirectoryLoader.h"
#include "files/Listing.h"
#include "files/NamePattern.h"
#include "state/ViewPreferences.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUuid>

namespace orwick {

class DirectoryWatcher;

class PaneState : public QObject {
    Q_OBJECT
public:
    // A pane either reads its folder at once, or waits until it is first shown (the panes of a
    // restored tab that isn't the selected one: their folders are read only if the user goes there).
    enum class Start { loading, whenShown };
    PaneState(const FilePath& folder, ViewPreferences* preferences, QObject* parent = nullptr, Start start = Start::loading);
    ~PaneState() override;

    // --- What is shown
    QUuid id() const { return m_id; }
    const FilePath& url() const { return m_url; }
    const std::optional<Listing>& listing() const { return m_listing; }
    bool showsTrash() const { return m_listing && m_listing->kind == Listing::Kind::trash; }
    const FileItems& items() const { return m_items; }
    const FileItems& unsortedItems() const { return m_unsortedItems; }
    const QHash<int, Heading>& headings() const { return m_headings; }
    bool isLoading() const { return m_isLoading; }
    // While a load has run longer than kLoadingNoteDelayMs: "Loading…", with the count of items
    // read so far once there is one ("Loading… 12,345 items"). Empty otherwise.
    QString loadingText() const;
    static constexpr int kLoadingNoteDelayMs = 150;
    // True while a large folder shows its first batch and the rest is still being read.
    bool showsFirstBatch() const { return m_showsFirstBatch; }
    // True while a pane made to wait has not been shown: it holds no items, runs no load and
    // watches nothing.
    bool isWaitingToBeShown() const { return m_waiting; }
    // The pane is on screen: a waiting pane watches and loads its folder now.
    void shown();
    const std::optional<QString>& error() const { return m_error; }
    // The text to show in place of an empty list ("This folder is empty", "Nothing matches “x”"…).
    QString emptyText() const;
    QString title() const; // the folder's name, or the listing's title
    // The title of a pane showing `folder`: its name, or "/" for the root.
    static QString folderTitle(const FilePath& folder);

    // --- Selection
    const QSet<FilePath>& selection() const { return m_selection; }
    const std::optional<FilePath>& cursor() const { return m_cursor; }
    const std::optional<FilePath>& anchor() const { return m_anchor; }
    FileItems selectedItems() const; // in shown order
    const FileItem* item(const FilePath& url) const;
    int row(const FilePath& url) const; // -1 when not shown
    qint64 selectedSize() const; // files, and folders whose size was calculated

    // --- Arrangement and view
    SortKey sortKey() const { return m_sortKey; }
    bool sortAscending() const { return m_sortAscending; }
    bool groupByDate() const { return m_groupByDate; }
    const QString& filter() const { return m_filter; }
    bool isFiltering() const { return m_isFiltering; }
    bool showHidden() const { return m_showHidden; }
    ViewMode viewMode() const { return m_viewMode; }
    ViewPreferences::Reason viewModeReason() const { return m_viewModeReason; }
    int gridColumns() const { return m_gridColumns; }
    bool isTiled() const { return m_viewMode == ViewMode::grid; }
    ViewPreferences* preferences() const { return m_preferences; }

    // --- History
    const QList<FilePath>& backStack() const { return m_backStack; }
    const QList<FilePath>& forwardStack() const { return m_forwardStack; }
    qint64 lastLoadTime() const { return m_lastLoadTime; }

    // --- Navigation
    void navigate(const FilePath& to, const QList<FilePath>& selecting = {});
    void show(const Listing& listing);
    void closeListing();
    void goBack();
    void goForward();
    void goUp();
    void reload();
    // Opens the selection: one folder is entered; files are handed on through openRequested().
    void openSelection();
    void enterCursorFolder();
    // Selects `urls` in their folder (navigating there when needed).
    void reveal(const QList<FilePath>& urls);

    // --- Selection changes
    void selectAll();
    void invertSelection();
    void clearSelection();
    // Select by Pattern (or, with Mark::deselect, Deselect by Pattern): the shown items whose
    // names `pattern` takes join (or leave) the selection; the rest stays as it was. Returns how
    // many shown items the pattern takes.
    enum class Mark { select, deselect };
    int markMatching(const NamePattern& pattern, Mark mark);
    void click(const FilePath& url, Qt::KeyboardModifiers modifiers);
    void moveCursor(int by, bool extend);
    void moveCursorToEnd(bool last, bool extend);
    // Down from a field above the rows (the filter, the search): the cursor goes to the first
    // shown row, unless it is on a shown row already, so one Down reaches what was found.
    void moveCursorIntoRows();
    // Type-select: letters typed within a second of each other select the first name with that prefix.
    void typeAhead(const QString& text);
    void typeAhead(const QString& text, qint64 nowMs);
    static constexpr qint64 kTypeAheadWindowMs = 1000;
    // A folder on a network mount that has not been read within this time shows
    // emptyText::notAnswering instead of waiting.
    static constexpr int kNetworkReadLimitMs = 10000;

    // --- Arrangement and view changes
    // Sorts by `key`, or flips the order when it is the key already. The Trash's own keys
    // (isTrashSortKey) last while the pane shows the Trash: elsewhere the sort is by name.
    void sort(SortKey key);
    void setGroupByDate(bool on);
    void setFilter(const QString& text);
    void setFiltering(bool on);
    void setShowHidden(bool on);
    void chooseViewMode(ViewMode mode);
    void setGridColumns(int columns) { m_gridColumns = std::max(1, columns); }
    // Opens the filter field and asks the view to give it the keyboard. While a search is open its
    // field is the pane's one field: the keyboard goes back to it instead.
    void focusFilter();
    // Grid tile size in pixels; each step is a quarter larger or smaller, within the range.
    double iconSize() const { return m_iconSize; }
    void zoomIcons(int steps);
    // The item whose name is being edited in place.
    const std::optional<FilePath>& renaming() const { return m_renaming; }
    void setRenaming(const std::optional<FilePath>& url);
    void setIgnoredPaths(std::shared_ptr<const QSet<FilePath>> ignored);
    // Lets an outside layer (file properties) adjust each arrangement's input on the GUI thread:
    // drop items its filters reject, or sort by a property (ArrangeInput::propertySort and
    // propertyValue). Anything it captures for the arranging thread must be a snapshot. Setting
    // it, and propertiesChanged(), arrange the shown items again.
    using PropertySource = std::function<void(ArrangeInput&)>;
    void setPropertySource(PropertySource source);
    void propertiesChanged() { rearrange(); }

    // --- Search (PaneSearch.cpp)
    // The search field: its text and choices make currentSearch(); each change runs search().
    bool isSearching() const { return m_isSearching; }
    const QString& searchText() const { return m_searchText; }
    SearchQuery::Scope searchScope() const { return m_searchScope; }
    SearchQuery::Kind searchKind() const { return m_searchKind; }
    SearchQuery::Changed searchChanged() const { return m_searchChanged; }
    // The query the field describes, from the shown folder.
    SearchQuery currentSearch() const;
    // The note above a listing: a search's filter summary.
    const std::optional<QString>& listingNote() const { return m_listingNote; }
    void setSearchText(const QString& text);
    void setSearchScope(SearchQuery::Scope scope);
    void setSearchKind(SearchQuery::Kind kind);
    void setSearchChanged(SearchQuery::Changed changed);
    // Runs currentSearch() kSearchDebounceMs after the last call: typing quickly runs it once.
    // A query with nothing to look for runs nothing and brings the folder back.
    void search();
    static constexpr int kSearchDebounceMs = 250;
    // A search stops after this many results and its note says so.
    static constexpr int kSearchResultLimit = 10000;
    // Opens the search field (scope `below` unless chosen) and asks the view to focus it.
    void focusSearch();
    // Closes the search field; a search listing gives way to the folder.
    void endSearch();
    // Applies a saved search's fields and runs it at once.
    void open(const SavedSearch& saved);

    // "Calculate Folder Sizes": measures every folder row of the shown folder in the background;
    // the sizes stay until the pane leaves the folder, and sorting by size uses them.
    bool canMeasureFolderSizes() const { return !m_listing && !m_url.isEmpty(); }
    void measureFolderSizes();
    FolderSizes* folderSizes() const { return m_folderSizes; }

    // After a create, paste or move: select these once they show up in a load.
    void setPendingSelection(const QSet<FilePath>& urls) { m_pendingSelection = urls; }
    // After a job that put items into `folder`: selects those that landed, at once when every
    // one is shown already, else at the next load. Nothing when the pane shows another folder.
    void selectLanded(const FilePath& folder, const QList<FilePath>& landed);
    void setPendingRename(const FilePath& url) { m_pendingRename = url; }

    // The delay before a reload after a change: 3 × the last load, at least 150 ms.
    qint64 reloadDelayMs() const { return std::max<qint64>(150, 3 * m_lastLoadTime); }
    // Below this many items an arrangement is done at once (no flicker); above, in the background.
    static constexpr int kBackgroundArrangeThreshold = 5000;

Q_SIGNALS:
    void locationChanged();
    void itemsChanged();
    void selectionChanged();
    void loadingChanged();
    void loadProgressChanged();
    void viewModeChanged();
    void arrangementOptionsChanged(); // sort, grouping, filter, hidden files
    void filterFocusRequested();
    void searchFocusRequested();
    void searchOptionsChanged(); // the search field opened or closed, or its text or a choice changed
    void searchStarted();        // a search run began (after the debounce)
    void iconSizeChanged();
    void renamingChanged();
    void openRequested(const orwick::FileItems& files);
    void renameRequested(const orwick::FilePath& url);
    void messageRequested(const QString& message);

private:
    void showFolder(const FilePath& folder, const QList<FilePath>& selecting);
    // Outside the Trash, a sort by one of its keys goes back to by name.
    void keepSortForSource();
    // Empties the view at once when the pane moves: the old items, their arrangement and any
    // result still on its way for them are gone.
    void clearShownItems();
    void load(const QList<FilePath>& selecting);
    void applyFirstBatch(FileItems items, const QList<FilePath>& selecting);
    void applyLoad(ListingResult result, const QList<FilePath>& selecting, qint64 elapsedMs);
    void followFolderViewMode();
    void startLoadingClock(std::shared_ptr<LoadFeedback> feedback);
    void stopLoadingClock();
    void rearrange();
    void applyArrangement(Arrangement arrangement);
    // `previous` is what was shown before (its rows let a vanished cursor find its neighbour).
    void restoreSelection(const FileItems& previous = {}, int previousCursorRow = -1);
    // The first row after `row` of `previous` that is still shown, else the last before it.
    std::optional<FilePath> nearestShown(const FileItems& previous, int row) const;
    void watchCurrentFolder();
    void onFolderChanged();
    void setSelectionTo(QSet<FilePath> selection, std::optional<FilePath> cursor, std::optional<FilePath> anchor);
    ArrangeInput arrangeInput() const;
    void runSearch();
    void loadSearch();
    void resetSearch();

    QUuid m_id = QUuid::createUuid();
    QPointer<ViewPreferences> m_preferences;
    FilePath m_url;
    std::optional<Listing> m_listing;
    FileItems m_unsortedItems;
    FileItems m_items;
    QHash<int, Heading> m_headings;
    ItemPositions m_positions;
    std::shared_ptr<const PreparedItems> m_prepared; // names of this load, folded once
    bool m_isLoading = false;
    bool m_showsFirstBatch = false;
    std::shared_ptr<LoadFeedback> m_loadFeedback; // of the running folder load
    QTimer m_loadingNoteDelay;                    // shows loadingText() once a load runs long
    QTimer m_loadProgressTimer;                   // samples the count while it shows
    bool m_loadingSlowly = false;
    qint64 m_itemsRead = 0;
    bool m_waiting = false;
    QList<FilePath> m_selectingWhenShown;
    std::optional<QString> m_error;

    QSet<FilePath> m_selection;
    std::optional<FilePath> m_cursor;
    std::optional<FilePath> m_anchor;
    QSet<FilePath> m_pendingSelection;
    std::optional<FilePath> m_pendingRename;

    SortKey m_sortKey = SortKey::name;
    bool m_sortAscending = true;
    bool m_sortChosen = false;
    bool m_groupByDate = false;
    QString m_filter;
    bool m_isFiltering = false;
    bool m_showHidden = false;
    std::shared_ptr<const QSet<FilePath>> m_ignored;
    PropertySource m_propertySource;
    ViewMode m_viewMode = ViewMode::list;
    ViewPreferences::Reason m_viewModeReason = ViewPreferences::Reason::defaultMode;
    int m_gridColumns = 1;
    double m_iconSize = ViewPreferences::kDefaultIconSize;
    std::optional<FilePath> m_renaming;

    QList<FilePath> m_backStack;
    QList<FilePath> m_forwardStack;

    QString m_typeAhead;
    qint64 m_typeAheadTime = -1;
    QElapsedTimer m_clock;

    TaskSlot m_loadTask;
    TaskSlot m_arrangeTask;
    qint64 m_lastLoadTime = 0;
    DirectoryWatcher* m_watcher = nullptr;
    FolderSizes* m_folderSizes;
    QTimer m_reloadTimer;
    bool m_changedDuringLoad = false;

    bool m_isSearching = false;
    QString m_searchText;
    SearchQuery::Scope m_searchScope = SearchQuery::Scope::below;
    SearchQuery::Kind m_searchKind = SearchQuery::Kind::any;
    SearchQuery::Changed m_searchChanged = SearchQuery::Changed::any;
    std::optional<QString> m_searchName; // while the shown search is a saved one, unchanged
    std::optional<QString> m_listingNote;
    QTimer m_searchDebounce;
    bool m_isOpeningSavedSearch = false;
};

} // namespace orwick
