#include "places/SidebarStore.h"

#include "app/Settings.h"
#include "async/Background.h"
#include "platform/MountTable.h"
#include "platform/XdgPaths.h"
#include "servers/RecentServers.h"

#include <QUuid>
#include <sys/stat.h>

namespace orwick {

namespace {

QString newId() { return QUuid::createUuid().toString(QUuid::WithoutBraces); }

bool isFolder(const FilePath& path)
{
    struct stat info{};
    return ::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

template <class List, class Pred>
void moveWithin(List& list, Pred matches, int by)
{
    for (qsizetype i = 0; i < list.size(); ++i) {
        if (!matches(list.at(i)))
            continue;
        const qsizetype to = std::clamp<qsizetype>(i + by, 0, list.size() - 1);
        list.move(i, to);
        return;
    }
}

QJsonDocument documentOf(const SidebarLayout& layout) { return QJsonDocument(layout.toJson()); }

} // namespace

// Writes `document` unless a later one was written already (a write left queued in the pool may
// start after the destructor's).
bool SidebarStore::write(const std::shared_ptr<WriteOrder>& order, const StoreFile& store, const QJsonDocument& document, quint64 sequence)
{
    std::lock_guard lock(order->mutex);
    if (sequence <= order->written)
        return true;
    order->written = sequence;
    return store.update([document](const auto&) { return document; }).has_value();
}

SidebarStore::SidebarStore(const FilePath& file, QObject* parent)
    : QObject(parent),
      m_store(file.isEmpty() ? xdg::orwickDataDir().child(QByteArrayView("sidebar.json")) : file,
              {QStringLiteral("its sidebar"), QStringLiteral("the sidebar starts from its defaults")})
{
    if (const auto document = m_store.read())
        m_layout = SidebarLayout::fromJson(document->object());
    migrateLegacyPins();
}

SidebarStore::~SidebarStore()
{
    if (m_unsaved || m_saving)
        (void)write(m_writes, m_store, documentOf(m_layout), ++m_lastWrite);
}

SidebarStore& SidebarStore::shared()
{
    static auto* store = new SidebarStore({}, QCoreApplication::instance());
    return *store;
}

void SidebarStore::migrateLegacyPins()
{
    const auto settings = openSettings();
    if (!settings->contains(kLegacyPinnedKey))
        return;
    QList<FilePath> folders;
    for (const QString& text : settings->value(kLegacyPinnedKey).toStringList())
        if (const FilePath path = FilePath::fromText(text); !path.isEmpty())
            folders.append(path);
    settings->remove(kLegacyPinnedKey);
    if (!folders.isEmpty())
        add(folders);
}

void SidebarStore::changed(void (SidebarStore::*signal)())
{
    startSave();
    Q_EMIT(this->*signal)();
}

void SidebarStore::startSave()
{
    m_unsaved = true;
    if (m_saving)
        return; // written again when the running write ends
    m_saving = true;
    m_unsaved = false;
    const QJsonDocument document = documentOf(m_layout);
    runInBackground(this, [order = m_writes, store = m_store, document, sequence = ++m_lastWrite] { return write(order, store, document, sequence); },
                    [this](bool ok) {
                        m_saving = false;
                        if (ok)
                            Q_EMIT saved();
                        if (m_unsaved)
                            startSave();
                    });
}

// --- Favourites

QList<FilePath> SidebarStore::shownFavoriteOrder() const
{
    QList<FilePath> order;
    for (const Place& place : allFavorites())
        order.append(place.url);
    return order;
}

QList<Place> SidebarStore::allFavorites() const
{
    QList<Place> shown;
    auto has = [&shown](const FilePath& path) {
        return std::any_of(shown.begin(), shown.end(), [&path](const Place& p) { return p.url == path; });
    };
    for (const Place& place : Place::favorites())
        if (!m_layout.hiddenFavorites.contains(place.url))
            shown.append(place);
    for (const FilePath& path : m_layout.customFavorites)
        if (!has(path)) {
            shown.append(Place::at(path.fileName(), path, QStringLiteral("folder")));
            // A folder on a server is not asked: a server that stopped answering would hold the window.
            shown.last().isMissing = !isOnNetworkMount(path) && !isFolder(path);
        }
    for (Place& place : shown)
        if (const auto name = m_layout.favoriteNames.constFind(place.url); name != m_layout.favoriteNames.cend())
            place.name = *name;
    // The user's order first; the rest keep their default order after it.
    std::stable_sort(shown.begin(), shown.end(), [this](const Place& a, const Place& b) {
        const qsizetype ia = m_layout.favoriteOrder.indexOf(a.url), ib = m_layout.favoriteOrder.indexOf(b.url);
        return (ia < 0 ? LLONG_MAX : ia) < (ib < 0 ? LLONG_MAX : ib);
    });
    return shown;
}

bool SidebarStore::isFavorite(const FilePath& folder) const
{
    const QList<Place> shown = allFavorites();
    return std::any_of(shown.begin(), shown.end(), [&folder](const Place& p) { return p.url == folder; });
}

void SidebarStore::addFavorite(const FilePath& folder, int at)
{
    if (folder.isEmpty())
        return;
    m_layout.hiddenFavorites.removeAll(folder);
    bool builtIn = false;
    for (const Place& place : Place::favorites())
        builtIn = builtIn || place.url == folder;
    if (!builtIn && !m_layout.customFavorites.contains(folder))
        m_layout.customFavorites.append(folder);
    if (at >= 0) {
        QList<FilePath> order = shownFavoriteOrder();
        order.removeAll(folder);
        order.insert(std::min<qsizetype>(at, order.size()), folder);
        m_layout.favoriteOrder = order;
    }
    changed(&SidebarStore::favoritesChanged);
}

void SidebarStore::removeFavorite(const FilePath& folder)
{
    if (m_layout.customFavorites.removeAll(folder) == 0 && !m_layout.hiddenFavorites.contains(folder))
        m_layout.hiddenFavorites.append(folder);
    changed(&SidebarStore::favoritesChanged);
}

void SidebarStore::renameFavorite(const FilePath& folder, const QString& name)
{
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty())
        m_layout.favoriteNames.remove(folder);
    else
        m_layout.favoriteNames.insert(folder, trimmed);
    changed(&SidebarStore::favoritesChanged);
}

void SidebarStore::moveFavorite(const FilePath& folder, int by)
{
    QList<FilePath> order = shownFavoriteOrder();
    moveWithin(order, [&folder](const FilePath& p) { return p == folder; }, by);
    m_layout.favoriteOrder = order;
    changed(&SidebarStore::favoritesChanged);
}

// --- Servers

void SidebarStore::rememberServer(const QString& address)
{
    const QStringList recent = withRecentServer(m_layout.recentServers, address);
    if (recent == m_layout.recentServers)
        return;
    m_layout.recentServers = recent;
    changed(&SidebarStore::serversChanged);
}

void SidebarStore::forgetServer(const QString& address)
{
    const QStringList recent = withoutRecentServer(m_layout.recentServers, address);
    if (recent == m_layout.recentServers)
        return;
    m_layout.recentServers = recent;
    changed(&SidebarStore::serversChanged);
}

// --- Groups

SidebarGroup* SidebarStore::findGroup(const QString& groupId)
{
    for (SidebarGroup& group : m_layout.groups)
        if (group.id == groupId)
            return &group;
    return nullptr;
}

const SidebarGroup* SidebarStore::group(const QString& groupId) const
{
    return const_cast<SidebarStore*>(this)->findGroup(groupId);
}

QString SidebarStore::add(const QList<FilePath>& folders, const QString& groupName)
{
    const QString name = groupName.isEmpty() ? kPinnedGroup : groupName;
    auto named = std::find_if(m_layout.groups.begin(), m_layout.groups.end(), [&name](const SidebarGroup& g) { return g.name == name; });
    if (named == m_layout.groups.end()) {
        m_layout.groups.append({newId(), name, {}});
        named = m_layout.groups.end() - 1;
    }
    const QString id = named->id;
    addToGroup(folders, id);
    return id;
}

bool SidebarStore::addToGroup(const QList<FilePath>& folders, const QString& groupId)
{
    SidebarGroup* target = findGroup(groupId);
    if (!target)
        return false;
    for (const FilePath& folder : folders) {
        const bool held = std::any_of(target->items.begin(), target->items.end(), [&folder](const SidebarItem& i) { return i.path == folder; });
        if (!folder.isEmpty() && !held)
            target->items.append({newId(), folder, std::nullopt});
    }
    changed(&SidebarStore::groupsChanged);
    return true;
}

QString SidebarStore::newGroup(const QString& name, const QList<FilePath>& folders, bool rename)
{
    SidebarGroup group{newId(), name.trimmed().isEmpty() ? QStringLiteral("New Group") : name.trimmed(), {}};
    for (const FilePath& folder : folders)
        if (!folder.isEmpty())
            group.items.append({newId(), folder, std::nullopt});
    m_layout.groups.append(group);
    changed(&SidebarStore::groupsChanged);
    if (rename)
        setRenamingGroup(group.id);
    return group.id;
}

void SidebarStore::renameGroup(const QString& groupId, const QString& name)
{
    SidebarGroup* target = findGroup(groupId);
    if (!target || name.trimmed().isEmpty())
        return;
    target->name = name.trimmed();
    changed(&SidebarStore::groupsChanged);
}

void SidebarStore::removeGroup(const QString& groupId)
{
    if (m_layout.groups.removeIf([&groupId](const SidebarGroup& g) { return g.id == groupId; }) == 0)
        return;
    m_layout.collapsed.removeAll(groupId);
    changed(&SidebarStore::groupsChanged);
}

void SidebarStore::moveGroup(const QString& groupId, int by)
{
    moveWithin(m_layout.groups, [&groupId](const SidebarGroup& g) { return g.id == groupId; }, by);
    changed(&SidebarStore::groupsChanged);
}

void SidebarStore::renameItem(const QString& groupId, const QString& itemId, const QString& name)
{
    if (SidebarGroup* target = findGroup(groupId))
        for (SidebarItem& item : target->items)
            if (item.id == itemId) {
                item.name = name.trimmed().isEmpty() ? std::nullopt : std::optional(name.trimmed());
                changed(&SidebarStore::groupsChanged);
                return;
            }
}

void SidebarStore::removeItem(const QString& groupId, const QString& itemId)
{
    if (SidebarGroup* target = findGroup(groupId); target && target->items.removeIf([&itemId](const SidebarItem& i) { return i.id == itemId; }))
        changed(&SidebarStore::groupsChanged);
}

void SidebarStore::moveItem(const QString& groupId, const QString& itemId, int by)
{
    if (SidebarGroup* target = findGroup(groupId)) {
        moveWithin(target->items, [&itemId](const SidebarItem& i) { return i.id == itemId; }, by);
        changed(&SidebarStore::groupsChanged);
    }
}

bool SidebarStore::arePinned(const QList<FilePath>& folders) const
{
    auto pinned = std::find_if(m_layout.groups.begin(), m_layout.groups.end(), [](const SidebarGroup& g) { return g.name == kPinnedGroup; });
    if (folders.isEmpty() || pinned == m_layout.groups.end())
        return false;
    return std::all_of(folders.begin(), folders.end(), [&pinned](const FilePath& folder) {
        return std::any_of(pinned->items.begin(), pinned->items.end(), [&folder](const SidebarItem& i) { return i.path == folder; });
    });
}

void SidebarStore::togglePinned(const QList<FilePath>& folders)
{
    if (!arePinned(folders)) {
        add(folders);
        return;
    }
    for (SidebarGroup& group : m_layout.groups)
        if (group.name == kPinnedGroup)
            group.items.removeIf([&folders](const SidebarItem& i) { return folders.contains(i.path); });
    changed(&SidebarStore::groupsChanged);
}

// --- Saved searches

void SidebarStore::save(const SavedSearch& search)
{
    SavedSearch kept = search;
    if (kept.id.isEmpty())
        kept.id = newId();
    auto same = std::find_if(m_layout.searches.begin(), m_layout.searches.end(), [&kept](const SavedSearch& s) { return s.id == kept.id; });
    if (same != m_layout.searches.end())
        *same = kept;
    else
        m_layout.searches.append(kept);
    changed(&SidebarStore::searchesChanged);
}

void SidebarStore::renameSearch(const QString& searchId, const QString& name)
{
    for (SavedSearch& search : m_layout.searches)
        if (search.id == searchId && !name.trimmed().isEmpty()) {
            search.name = name.trimmed();
            changed(&SidebarStore::searchesChanged);
        }
}

void SidebarStore::removeSearch(const QString& searchId)
{
    if (m_layout.searches.removeIf([&searchId](const SavedSearch& s) { return s.id == searchId; }))
        changed(&SidebarStore::searchesChanged);
}

void SidebarStore::moveSearch(const QString& searchId, int by)
{
    moveWithin(m_layout.searches, [&searchId](const SavedSearch& s) { return s.id == searchId; }, by);
    changed(&SidebarStore::searchesChanged);
}

// --- Sections

bool SidebarStore::isShown(const QString& sectionId) const
{
    if (sectionId == section::favorites)
        return m_layout.showFavorites;
    if (sectionId == section::recent)
        return m_layout.showRecent;
    if (sectionId == section::locations)
        return m_layout.showLocations;
    if (sectionId == section::cloud)
        return m_layout.showCloud;
    if (sectionId == section::tags)
        return m_layout.showTags;
    return true;
}

void SidebarStore::setShown(const QString& sectionId, bool shown)
{
    bool* flag = sectionId == section::favorites ? &m_layout.showFavorites
        : sectionId == section::recent           ? &m_layout.showRecent
        : sectionId == section::locations        ? &m_layout.showLocations
        : sectionId == section::cloud            ? &m_layout.showCloud
        : sectionId == section::tags             ? &m_layout.showTags
                                                 : nullptr;
    if (!flag || *flag == shown)
        return;
    *flag = shown;
    changed(&SidebarStore::sectionsChanged);
}

void SidebarStore::setCollapsed(const QString& sectionId, bool collapsed)
{
    if (isCollapsed(sectionId) == collapsed)
        return;
    if (collapsed)
        m_layout.collapsed.append(sectionId);
    else
        m_layout.collapsed.removeAll(sectionId);
    changed(&SidebarStore::sectionsChanged);
}

void SidebarStore::setSectionOrder(const QStringList& order)
{
    m_layout.sectionOrder = order;
    for (const QString& id : SidebarLayout::defaultSectionOrder())
        if (!m_layout.sectionOrder.contains(id))
            m_layout.sectionOrder.append(id);
    changed(&SidebarStore::sectionsChanged);
}

void SidebarStore::setRenamingGroup(const QString& groupId)
{
    m_renamingGroup = groupId;
    m_renamingSearch.clear();
    Q_EMIT renamingChanged();
}

void SidebarStore::setRenamingSearch(const QString& searchId)
{
    m_renamingSearch = searchId;
    m_renamingGroup.clear();
    Q_EMIT renamingChanged();
}

} // namespace orwick

#include "moc_SidebarStore.cpp"
