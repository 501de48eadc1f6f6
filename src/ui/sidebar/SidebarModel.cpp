#include "ui/sidebar/SidebarModel.h"

#include "commands/Frecency.h"
#include "places/FinderTags.h"
#include "places/Locations.h"
#include "places/SidebarStore.h"
#include "platform/MountTable.h"
#include "ui/views/CategoryIcons.h"
#include "ui/window/CommandMenus.h"

#include <unistd.h>

namespace orwick {

SidebarModel::SidebarModel(SidebarStore* store, Locations* locations, Frecency* frecency, QObject* parent)
    : QAbstractListModel(parent), m_store(store), m_locations(locations), m_frecency(frecency)
{
    for (auto signal : {&SidebarStore::groupsChanged, &SidebarStore::searchesChanged, &SidebarStore::favoritesChanged,
                        &SidebarStore::sectionsChanged})
        connect(store, signal, this, &SidebarModel::rebuild, Qt::QueuedConnection); // never inside an edit's commit
    if (locations)
        connect(locations, &Locations::changed, this, &SidebarModel::rebuild);
    if (frecency)
        connect(frecency, &Frecency::saved, this, &SidebarModel::rebuild);
    connect(&FinderTags::shared(), &FinderTags::changed, this, &SidebarModel::rebuild); // a rebuild that changes nothing is cheap
    rebuild();
}

namespace {

QIcon lookUpIcon(const QString& symbol)
{
    static const QHash<QString, QString> names{
        {"house", "user-home"}, {"menubar.dock.rectangle", "user-desktop"}, {"doc", "folder-documents"},
        {"arrow.down.circle", "folder-download"}, {"photo", "folder-pictures"}, {"music.note", "folder-music"},
        {"film", "folder-videos"}, {"folder", "folder"}, {"desktopcomputer", "computer"}, {"internaldrive", "drive-harddisk"},
        {"externaldrive", "drive-removable-media"}, {"network", "folder-remote"}, {"trash", "user-trash"},
        {"magnifyingglass", "folder-saved-search"}, {"clock", "folder-recent"}, {"tag", "tag"}};
    if (const QString name = names.value(symbol); !name.isEmpty()) {
        const QIcon found = QIcon::fromTheme(name);
        if (!found.isNull())
            return found;
    }
    const QIcon command = commandIcon(symbol);
    if (!command.isNull())
        return command;
    // No icon theme (a bare X server, some window managers): Orwick's own folder and page shapes.
    return categoryIcon(symbol == QLatin1StringView("magnifyingglass") || symbol == QLatin1StringView("trash") ? FileCategory::other : FileCategory::folder);
}

} // namespace

QIcon SidebarModel::icon(const QString& symbol)
{
    // Each row's paint asks again: the desktop's icon theme is searched once per symbol (a name
    // the theme lacks would otherwise be searched for on every paint), and again after the
    // desktop switches icon themes.
    // Never freed: icons must not outlive the application's pixmaps.
    static auto* const cachedTheme = new QString;
    static auto* const cache = new QHash<QString, QIcon>;
    if (const QString theme = QIcon::themeName(); theme != *cachedTheme) {
        cache->clear();
        *cachedTheme = theme;
    }
    if (const auto known = cache->constFind(symbol); known != cache->cend())
        return *known;
    return *cache->insert(symbol, lookUpIcon(symbol));
}

QString SidebarModel::sectionTitle(const QString& sectionId)
{
    static const QHash<QString, QString> titles{{section::favorites, "Favorites"}, {section::searches, "Saved Searches"},
                                                {section::recent, "Recent"},       {section::locations, "Locations"},
                                                {section::cloud, "Cloud"},         {section::tags, "Tags"}};
    return titles.value(sectionId);
}

int SidebarModel::titleRow(const QString& sectionId) const
{
    for (int i = 0; i < m_rows.size(); ++i)
        if (m_rows.at(i).kind == SidebarRow::Kind::title && m_rows.at(i).sectionId == sectionId)
            return i;
    return -1;
}

void SidebarModel::addTitle(QList<SidebarRow>& rows, const QString& sectionId, const QString& name) const
{
    SidebarRow title;
    title.sectionId = sectionId;
    title.name = name;
    title.itemId = sectionId;
    title.isCollapsed = m_store->isCollapsed(sectionId);
    rows.append(title);
}

void SidebarModel::addSection(QList<SidebarRow>& rows, const QString& id) const
{
    using Kind = SidebarRow::Kind;
    if (!m_store->isShown(id) || id == section::cloud) // no cloud provider on Linux
        return;
    auto row = [&id](Kind kind, const QString& name, const QString& symbol) {
        SidebarRow r;
        r.kind = kind;
        r.sectionId = id;
        r.name = name;
        r.symbol = symbol;
        return r;
    };
    if (id == section::groups) {
        const QList<MountEntry> mounts = readMountTable();
        for (const SidebarGroup& group : m_store->groups()) {
            addTitle(rows, group.id, group.name);
            if (m_store->isCollapsed(group.id))
                continue;
            for (const SidebarItem& item : group.items) {
                SidebarRow r = row(Kind::groupItem, item.name.value_or(item.path.fileName()), QStringLiteral("folder"));
                r.sectionId = group.id;
                r.path = item.path;
                r.itemId = item.id;
                // A folder on a server is not asked: one that stopped answering would hold the window.
                r.isMissing = !isOnNetworkMount(item.path, mounts) && ::access(item.path.c_str(), F_OK) != 0;
                rows.append(r);
            }
        }
        return;
    }
    if (id == section::searches && m_store->searches().isEmpty())
        return;
    addTitle(rows, id, sectionTitle(id));
    if (m_store->isCollapsed(id))
        return;
    if (id == section::favorites) {
        for (const Place& place : m_store->allFavorites()) {
            SidebarRow r = row(Kind::favorite, place.name, place.symbol);
            r.path = place.url;
            r.isMissing = place.isMissing;
            rows.append(r);
        }
    } else if (id == section::searches) {
        for (const SavedSearch& search : m_store->searches()) {
            SidebarRow r = row(Kind::search, search.name, QStringLiteral("magnifyingglass"));
            r.itemId = search.id;
            rows.append(r);
        }
    } else if (id == section::recent && m_frecency) {
        const auto ranked = m_frecency->ranked();
        for (size_t i = 0; i < ranked.size() && i < size_t(kRecentCount); ++i) {
            SidebarRow r = row(Kind::recent, ranked[i].path.fileName().isEmpty() ? ranked[i].path.text() : ranked[i].path.fileName(), QStringLiteral("clock"));
            r.path = ranked[i].path;
            r.trailing = ranked[i].path.parent().abbreviated();
            rows.append(r);
        }
    } else if (id == section::locations) {
        rows.append(row(Kind::thisComputer, QStringLiteral("This Computer"), QStringLiteral("desktopcomputer")));
        if (m_locations)
            for (const Place& drive : m_locations->drives()) {
                SidebarRow r = row(Kind::drive, drive.name, drive.symbol);
                r.path = drive.url;
                r.trailing = drive.trailing;
                r.detail = drive.url.abbreviated() + QStringLiteral(" · ") + drive.detail;
                r.fill = drive.fillRatio;
                r.isEjectable = drive.isEjectable;
                rows.append(r);
            }
        SidebarRow trash = row(Kind::trash, QStringLiteral("Trash"), QStringLiteral("trash"));
        if (m_locations && m_locations->trashCount() > 0)
            trash.trailing = QString::number(m_locations->trashCount());
        rows.append(trash);
    } else if (id == section::tags) {
        QList<FinderTag> tags = FinderTag::colors();
        for (const FinderTag& tag : FinderTags::shared().inUse())
            if (!tag.isColor())
                tags.append(tag);
        for (const FinderTag& tag : tags) {
            SidebarRow r = row(Kind::tag, tag.name, QStringLiteral("tag"));
            r.tagName = tag.name;
            rows.append(r);
        }
    }
}

void SidebarModel::rebuild()
{
    if (m_held) {
        m_rebuildWaiting = true;
        return;
    }
    m_rebuildWaiting = false;
    QList<SidebarRow> rows;
    for (const QString& id : m_store->layout().sectionOrder)
        addSection(rows, id);
    if (rows == m_rows)
        return;
    // The same places with new names or figures (a drive's free space, the Trash's count) are
    // updated where they stand; a drive's bar keeps each row's height.
    const bool sameShape = rows.size() == m_rows.size() && std::equal(rows.cbegin(), rows.cend(), m_rows.cbegin(), [](const SidebarRow& a, const SidebarRow& b) {
        return a.isSamePlace(b) && (a.fill >= 0) == (b.fill >= 0);
    });
    if (sameShape) {
        for (qsizetype i = 0; i < rows.size(); ++i)
            if (rows.at(i) != m_rows.at(i)) {
                m_rows[i] = rows.at(i);
                Q_EMIT dataChanged(index(int(i)), index(int(i)));
            }
        return;
    }
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

void SidebarModel::holdRebuilds(bool held)
{
    m_held = held;
    if (!held && m_rebuildWaiting)
        QMetaObject::invokeMethod(this, &SidebarModel::rebuild, Qt::QueuedConnection); // after the editor has gone
}

int SidebarModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : int(m_rows.size()); }

QVariant SidebarModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_rows.size())
        return {};
    const SidebarRow& row = m_rows.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return row.name;
    case Qt::AccessibleTextRole:
        return row.kind == SidebarRow::Kind::title ? row.name + (row.isCollapsed ? QStringLiteral(", folded") : QString()) : row.name;
    case Qt::ToolTipRole:
        if (row.isMissing)
            return row.path.abbreviated() + QStringLiteral(" can't be found");
        if (!row.detail.isEmpty())
            return row.detail;
        return row.path.isEmpty() ? QVariant() : QVariant(row.path.abbreviated());
    case Qt::DecorationRole:
        return row.kind == SidebarRow::Kind::title ? QVariant() : QVariant(icon(row.symbol));
    default:
        return {};
    }
}

Qt::ItemFlags SidebarModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::ItemIsDropEnabled;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDropEnabled;
    const SidebarRow& row = m_rows.at(index.row());
    const bool groupTitle = row.kind == SidebarRow::Kind::title && m_store->group(row.sectionId);
    if (groupTitle || row.kind == SidebarRow::Kind::favorite || row.kind == SidebarRow::Kind::groupItem || row.kind == SidebarRow::Kind::search)
        flags |= Qt::ItemIsEditable;
    return flags;
}

bool SidebarModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::EditRole || !(flags(index) & Qt::ItemIsEditable))
        return false;
    const SidebarRow row = m_rows.at(index.row());
    const QString name = value.toString();
    switch (row.kind) {
    case SidebarRow::Kind::title: m_store->renameGroup(row.sectionId, name); break;
    case SidebarRow::Kind::favorite: m_store->renameFavorite(row.path, name); break;
    case SidebarRow::Kind::groupItem: m_store->renameItem(row.sectionId, row.itemId, name); break;
    case SidebarRow::Kind::search: m_store->renameSearch(row.itemId, name); break;
    default: return false;
    }
    return true;
}

} // namespace orwick
