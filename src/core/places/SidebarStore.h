#pragma once
// SidebarStore: what the user arranges in the sidebar (a SidebarLayout), kept in sidebar.json in
// Orwick's data folder. One per process (shared()), on the GUI thread; tests make their own over
// a file of their choosing.
//
// Loading: the file is read once at construction. A missing file gives the defaults; a damaged
// one is set aside with one notice (StoreFile) and gives the defaults, and the next change writes
// the file afresh. Values of the wrong type read as their defaults (SidebarLayout). The older
// settings key "pinnedFolders" (a list of paths), when present, becomes the group "Pinned" and is
// removed.
//
// Saving: every change writes the whole layout at once, atomically, through StoreFile; the write
// runs off the GUI thread, one at a time, and a change made meanwhile is written right after.
// The destructor writes what is still unsaved before it returns.
//
// Signals: groupsChanged(), searchesChanged(), favoritesChanged(), sectionsChanged() (shown,
// order or folded) each follow a change of those fields; renamingChanged() follows a change of
// renamingGroup()/renamingSearch(); serversChanged() follows a change of recentServers(); saved()
// follows each write that succeeded.

#include "places/Place.h"
#include "places/SidebarLayout.h"
#include "platform/StoreFile.h"

#include <QObject>
#include <memory>
#include <mutex>

namespace orwick {

class SidebarStore : public QObject {
    Q_OBJECT
public:
    static inline const QString kPinnedGroup = QStringLiteral("Pinned");
    static inline const QString kLegacyPinnedKey = QStringLiteral("pinnedFolders");

    // Loads `file` (sidebar.json in Orwick's data folder when empty).
    explicit SidebarStore(const FilePath& file = {}, QObject* parent = nullptr);
    ~SidebarStore() override;
    // The process's store, made on first use.
    static SidebarStore& shared();

    const SidebarLayout& layout() const { return m_layout; }
    const QList<SidebarGroup>& groups() const { return m_layout.groups; }
    const QList<SavedSearch>& searches() const { return m_layout.searches; }
    const FilePath& file() const { return m_store.path(); }

    // --- Favourites
    // Built-in places plus added folders, minus hidden ones, in the user's order, with the
    // user's names. Added folders that are gone stay, marked isMissing.
    QList<Place> allFavorites() const;
    bool isFavorite(const FilePath& folder) const;
    // Shows `folder` among the favourites (again, when it was hidden); once only.
    void addFavorite(const FilePath& folder, int at = -1);
    // Hides a built-in favourite, forgets an added one.
    void removeFavorite(const FilePath& folder);
    // An empty name gives the folder's own name back.
    void renameFavorite(const FilePath& folder, const QString& name);
    // Moves a favourite `by` places in the shown order (clamped).
    void moveFavorite(const FilePath& folder, int by);

    // --- Groups
    // Adds folders to the group named `groupName` ("Pinned" when empty; made when missing),
    // leaving out those it already holds. Returns the group's id.
    QString add(const QList<FilePath>& folders, const QString& groupName = {});
    // Adds folders to the group with `groupId`; false when there is none.
    bool addToGroup(const QList<FilePath>& folders, const QString& groupId);
    // A new group of `folders`, last; with `rename` its name is then edited in place.
    QString newGroup(const QString& name, const QList<FilePath>& folders, bool rename);
    const SidebarGroup* group(const QString& groupId) const;
    void renameGroup(const QString& groupId, const QString& name);
    void removeGroup(const QString& groupId);
    void moveGroup(const QString& groupId, int by);
    void renameItem(const QString& groupId, const QString& itemId, const QString& name);
    void removeItem(const QString& groupId, const QString& itemId);
    void moveItem(const QString& groupId, const QString& itemId, int by);
    // Whether every one of `folders` is in "Pinned".
    bool arePinned(const QList<FilePath>& folders) const;
    // Removes `folders` from "Pinned" when all are there, else adds them ("Add to or Remove from
    // Sidebar").
    void togglePinned(const QList<FilePath>& folders);

    // --- Saved searches
    // Stores `search` (replacing the one with its id), last when new.
    void save(const SavedSearch& search);
    void renameSearch(const QString& searchId, const QString& name);
    void removeSearch(const QString& searchId);
    void moveSearch(const QString& searchId, int by);

    // --- Servers
    // "Connect to Server…" addresses, most recent first (RecentServers.h).
    const QStringList& recentServers() const { return m_layout.recentServers; }
    void rememberServer(const QString& address);
    void forgetServer(const QString& address);

    // --- Sections
    bool isShown(const QString& sectionId) const;
    void setShown(const QString& sectionId, bool shown);
    bool isCollapsed(const QString& sectionId) const { return m_layout.collapsed.contains(sectionId); }
    void setCollapsed(const QString& sectionId, bool collapsed);
    void setSectionOrder(const QStringList& order);

    // --- Editing in place (not kept)
    const QString& renamingGroup() const { return m_renamingGroup; }
    const QString& renamingSearch() const { return m_renamingSearch; }
    void setRenamingGroup(const QString& groupId);
    void setRenamingSearch(const QString& searchId);

    bool isSaving() const { return m_saving; }

Q_SIGNALS:
    void groupsChanged();
    void searchesChanged();
    void favoritesChanged();
    void sectionsChanged();
    void renamingChanged();
    void serversChanged();
    void saved();

private:
    void migrateLegacyPins();
    void changed(void (SidebarStore::*signal)());
    void startSave();
    SidebarGroup* findGroup(const QString& groupId);
    QList<FilePath> shownFavoriteOrder() const;

    struct WriteOrder {
        std::mutex mutex;
        quint64 written = 0;
    };
    static bool write(const std::shared_ptr<WriteOrder>& order, const StoreFile& store, const QJsonDocument& document, quint64 sequence);

    StoreFile m_store;
    std::shared_ptr<WriteOrder> m_writes = std::make_shared<WriteOrder>();
    quint64 m_lastWrite = 0;
    SidebarLayout m_layout;
    QString m_renamingGroup, m_renamingSearch;
    bool m_saving = false, m_unsaved = false;
};

} // namespace orwick
