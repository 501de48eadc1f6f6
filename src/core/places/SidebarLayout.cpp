#include "places/SidebarLayout.h"

#include "files/StoredPath.h"
#include "servers/RecentServers.h"

#include <QJsonArray>

namespace orwick {

namespace {

QJsonArray pathsToJson(const QList<FilePath>& paths)
{
    QJsonArray array;
    for (const FilePath& path : paths)
        array.append(storedPathText(path));
    return array;
}

QList<FilePath> pathsFromJson(const QJsonValue& value)
{
    QList<FilePath> paths;
    for (const QJsonValue& entry : value.toArray())
        if (const FilePath path = pathFromStoredText(entry.toString()); !path.isEmpty() && !paths.contains(path))
            paths.append(path);
    return paths;
}

QStringList textsFromJson(const QJsonValue& value)
{
    QStringList texts;
    for (const QJsonValue& entry : value.toArray())
        if (entry.isString() && !entry.toString().isEmpty() && !texts.contains(entry.toString()))
            texts.append(entry.toString());
    return texts;
}

bool boolFrom(const QJsonObject& object, const char* key, bool fallback)
{
    const QJsonValue value = object.value(QLatin1StringView(key));
    return value.isBool() ? value.toBool() : fallback;
}

QJsonObject itemToJson(const SidebarItem& item)
{
    QJsonObject object{{QStringLiteral("id"), item.id}, {QStringLiteral("path"), storedPathText(item.path)}};
    if (item.name)
        object.insert(QStringLiteral("name"), *item.name);
    return object;
}

std::optional<SidebarItem> itemFromJson(const QJsonValue& value)
{
    const QJsonObject object = value.toObject();
    SidebarItem item;
    item.id = object.value(QStringLiteral("id")).toString();
    item.path = pathFromStoredText(object.value(QStringLiteral("path")).toString());
    if (item.id.isEmpty() || item.path.isEmpty())
        return std::nullopt;
    if (const QJsonValue name = object.value(QStringLiteral("name")); name.isString() && !name.toString().isEmpty())
        item.name = name.toString();
    return item;
}

std::optional<SidebarGroup> groupFromJson(const QJsonValue& value)
{
    const QJsonObject object = value.toObject();
    SidebarGroup group;
    group.id = object.value(QStringLiteral("id")).toString();
    group.name = object.value(QStringLiteral("name")).toString();
    if (group.id.isEmpty())
        return std::nullopt;
    for (const QJsonValue& entry : object.value(QStringLiteral("items")).toArray())
        if (auto item = itemFromJson(entry))
            group.items.append(*item);
    return group;
}

} // namespace

QStringList SidebarLayout::defaultSectionOrder()
{
    return {section::favorites, section::groups, section::searches, section::recent,
            section::locations, section::cloud,  section::tags};
}

QJsonObject SidebarLayout::toJson() const
{
    QJsonArray groupArray;
    for (const SidebarGroup& group : groups) {
        QJsonArray items;
        for (const SidebarItem& item : group.items)
            items.append(itemToJson(item));
        groupArray.append(QJsonObject{{QStringLiteral("id"), group.id}, {QStringLiteral("name"), group.name}, {QStringLiteral("items"), items}});
    }
    QJsonArray searchArray;
    for (const SavedSearch& search : searches)
        searchArray.append(search.toJson());
    QJsonObject names;
    for (auto it = favoriteNames.begin(); it != favoriteNames.end(); ++it)
        names.insert(storedPathText(it.key()), it.value());
    return QJsonObject{{QStringLiteral("groups"), groupArray},
                       {QStringLiteral("searches"), searchArray},
                       {QStringLiteral("sectionOrder"), QJsonArray::fromStringList(sectionOrder)},
                       {QStringLiteral("customFavorites"), pathsToJson(customFavorites)},
                       {QStringLiteral("favoriteOrder"), pathsToJson(favoriteOrder)},
                       {QStringLiteral("favoriteNames"), names},
                       {QStringLiteral("hiddenFavorites"), pathsToJson(hiddenFavorites)},
                       {QStringLiteral("showFavorites"), showFavorites},
                       {QStringLiteral("showRecent"), showRecent},
                       {QStringLiteral("showLocations"), showLocations},
                       {QStringLiteral("showCloud"), showCloud},
                       {QStringLiteral("showTags"), showTags},
                       {QStringLiteral("collapsed"), QJsonArray::fromStringList(collapsed)},
                       {QStringLiteral("servers"), QJsonObject{{QStringLiteral("recent"), QJsonArray::fromStringList(recentServers)}}}};
}

SidebarLayout SidebarLayout::fromJson(const QJsonObject& object)
{
    SidebarLayout layout;
    for (const QJsonValue& entry : object.value(QStringLiteral("groups")).toArray())
        if (auto group = groupFromJson(entry))
            layout.groups.append(*group);
    for (const QJsonValue& entry : object.value(QStringLiteral("searches")).toArray())
        if (auto search = SavedSearch::fromJson(entry.toObject()))
            layout.searches.append(*search);
    if (const QStringList order = textsFromJson(object.value(QStringLiteral("sectionOrder"))); !order.isEmpty()) {
        layout.sectionOrder = order;
        // Sections this version knows but the file doesn't name go last, so none is lost.
        for (const QString& id : defaultSectionOrder())
            if (!layout.sectionOrder.contains(id))
                layout.sectionOrder.append(id);
    }
    layout.customFavorites = pathsFromJson(object.value(QStringLiteral("customFavorites")));
    layout.favoriteOrder = pathsFromJson(object.value(QStringLiteral("favoriteOrder")));
    const QJsonObject names = object.value(QStringLiteral("favoriteNames")).toObject();
    for (auto it = names.begin(); it != names.end(); ++it)
        if (const FilePath path = pathFromStoredText(it.key()); !path.isEmpty() && it.value().isString() && !it.value().toString().isEmpty())
            layout.favoriteNames.insert(path, it.value().toString());
    layout.hiddenFavorites = pathsFromJson(object.value(QStringLiteral("hiddenFavorites")));
    layout.showFavorites = boolFrom(object, "showFavorites", true);
    layout.showRecent = boolFrom(object, "showRecent", true);
    layout.showLocations = boolFrom(object, "showLocations", true);
    layout.showCloud = boolFrom(object, "showCloud", true);
    layout.showTags = boolFrom(object, "showTags", true);
    layout.collapsed = textsFromJson(object.value(QStringLiteral("collapsed")));
    layout.recentServers = cleanRecentServers(textsFromJson(object.value(QStringLiteral("servers")).toObject().value(QStringLiteral("recent"))));
    return layout;
}

} // namespace orwick
