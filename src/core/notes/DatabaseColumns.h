#pragma once
// The inputs every database view (board, calendar, gallery) reads about one folder, gathered from
// the property store at once: the folder's settings, every key its items carry as a
// PropertyColumn (type, options in order, colours), and a snapshot of the items' values. Plain
// values: once made, safe on any thread and unchanged by later edits of the store.

#include "files/FileItem.h"
#include "notes/FolderColumns.h"

namespace orwick {

class FileProperties;

struct DatabaseColumns {
    FilePath folder;
    FolderColumns settings;
    QList<PropertyColumn> columns;           // every key the items carry or the settings name, sorted
    QHash<FilePath, PropertyMap> values;     // the items' properties

    // Reads the store for a folder's (filtered) items.
    static DatabaseColumns of(const FileProperties& store, const FilePath& folder, const FileItems& items);

    const PropertyColumn* column(const QString& key) const;
    std::optional<PropertyValue> value(const FilePath& item, const QString& key) const;
    // The keys of one type or more, in the columns' order.
    QStringList keysOf(std::initializer_list<PropertyType> types) const;
};

// What a card or cell calls an item: its "title" property when it has one, else its name
// without a note's extension.
QString itemTitle(const FileItem& item, const PropertyMap& values);

} // namespace orwick
