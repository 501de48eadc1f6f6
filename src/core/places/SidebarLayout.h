#pragma once
// SidebarLayout: everything the user arranges in the sidebar, as one plain value — the user's
// groups of folders, saved searches, favourites (added, reordered, renamed, hidden), which
// sections show, their order and which are folded. SidebarStore owns one and keeps it in
// sidebar.json; this file only says what the fields are and how they read and write as JSON.
//
// Reading is forgiving key by key: a key that is missing or of the wrong type gives that field's
// default, and an entry of a list that is not the right shape is left out, so one bad value never
// costs the rest. Paths are written through StoredPath (text when UTF-8, else a file URL).

#include "base/FilePath.h"
#include "search/SavedSearch.h"

#include <QHash>
#include <QJsonObject>
#include <QList>
#include <QStringList>
#include <optional>

namespace orwick {

struct SidebarItem {
    QString id; // a UUID, without braces
    FilePath path;
    std::optional<QString> name; // none: the folder's own name
    bool operator==(const SidebarItem&) const = default;
};

struct SidebarGroup {
    QString id; // a UUID, without braces
    QString name;
    QList<SidebarItem> items;
    bool operator==(const SidebarGroup&) const = default;
};

// Section identifiers, as kept in sectionOrder and collapsed. A group folds under its own id.
namespace section {
inline const QString favorites = QStringLiteral("favorites");
inline const QString groups = QStringLiteral("groups");
inline const QString searches = QStringLiteral("searches");
inline const QString recent = QStringLiteral("recent");
inline const QString locations = QStringLiteral("locations");
inline const QString cloud = QStringLiteral("cloud");
inline const QString tags = QStringLiteral("tags");
} // namespace section

struct SidebarLayout {
    QList<SidebarGroup> groups;
    QList<SavedSearch> searches;
    QStringList sectionOrder = defaultSectionOrder();
    QList<FilePath> customFavorites; // in the order added
    QList<FilePath> favoriteOrder;   // the user's order; favourites not in it follow
    QHash<FilePath, QString> favoriteNames;
    QList<FilePath> hiddenFavorites; // a set, kept in the order hidden
    bool showFavorites = true;
    bool showRecent = true;
    bool showLocations = true;
    bool showCloud = true;
    bool showTags = true;
    QStringList collapsed; // a set of section ids
    QStringList recentServers; // "Connect to Server…" addresses, most recent first (RecentServers.h)

    static QStringList defaultSectionOrder();

    QJsonObject toJson() const;
    static SidebarLayout fromJson(const QJsonObject& object);

    bool operator==(const SidebarLayout&) const = default;
};

} // namespace orwick
