#include "notes/DatabaseColumns.h"

#include "notes/FileProperties.h"
#include "notes/NoteFile.h"

#include <algorithm>

namespace orwick {

DatabaseColumns DatabaseColumns::of(const FileProperties& store, const FilePath& folder, const FileItems& items)
{
    DatabaseColumns result;
    result.folder = folder;
    result.settings = store.columns(folder);
    QStringList keys = store.keys(items);
    for (const QString& key : result.settings.types.keys())
        if (!keys.contains(key))
            keys.append(key);
    keys.sort(Qt::CaseInsensitive);
    for (const QString& key : keys)
        result.columns.append({key, store.type(key, folder, items), store.options(key, folder, items),
                               result.settings.optionColors.value(key)});
    for (const FileItem& item : items)
        if (const auto found = store.values().constFind(item.url); found != store.values().constEnd())
            result.values.insert(item.url, *found);
    return result;
}

const PropertyColumn* DatabaseColumns::column(const QString& key) const
{
    for (const PropertyColumn& column : columns)
        if (column.key == key)
            return &column;
    return nullptr;
}

std::optional<PropertyValue> DatabaseColumns::value(const FilePath& item, const QString& key) const
{
    const auto found = values.constFind(item);
    if (found == values.constEnd())
        return std::nullopt;
    const auto value = found->constFind(key);
    if (value == found->constEnd())
        return std::nullopt;
    return *value;
}

QStringList DatabaseColumns::keysOf(std::initializer_list<PropertyType> types) const
{
    QStringList keys;
    for (const PropertyColumn& column : columns)
        if (std::find(types.begin(), types.end(), column.type) != types.end())
            keys.append(column.key);
    return keys;
}

QString itemTitle(const FileItem& item, const PropertyMap& values)
{
    if (const auto title = values.constFind(QStringLiteral("title")); title != values.constEnd()) {
        const QString text = title->text().trimmed();
        if (!text.isEmpty())
            return text;
    }
    if (item.isFolder || !notefile::isNote(item.url))
        return item.name;
    const qsizetype dot = item.name.lastIndexOf(u'.');
    return dot > 0 ? item.name.left(dot) : item.name;
}

} // namespace orwick
