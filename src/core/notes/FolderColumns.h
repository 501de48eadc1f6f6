#pragma once
// FolderColumns: what a folder shown as a database keeps — shown property columns and their
// widths, explicit types, option lists and colours, filters, layout and the built-in column
// flags. Stored per folder in columns.json under these field names. PropertyColumn: what a view
// shows for one key. Plain values; safe on any thread.

#include "notes/PropertyFilter.h"
#include "notes/PropertyValue.h"

#include <QHash>
#include <QJsonObject>
#include <QMap>

namespace orwick {

struct PropertyColumn {
    QString key;
    PropertyType type = PropertyType::text;
    QStringList options;
    QMap<QString, int> colors; // option → colour index
    bool operator==(const PropertyColumn&) const = default;
};

struct FolderColumns {
    QStringList shown;                          // shown property keys, in display order
    QMap<QString, PropertyType> types;          // explicit type per key
    QMap<QString, QStringList> options;         // option order of select and list keys
    bool hidesModified = false;
    bool hidesSize = false;
    bool showsKind = false;
    QMap<QString, double> widths;               // column widths
    std::optional<QString> layout;              // "table", "board", "calendar", "gallery"
    std::optional<QString> groupBy;             // the key board lanes group by
    QList<PropertyFilter> filters;
    QMap<QString, QMap<QString, int>> optionColors; // key → option → colour index
    std::optional<QString> calendarBy;          // the date key the calendar places items by

    QJsonObject toJson() const;
    // Nothing when a required field (shown, types, options and the three flags) is missing or
    // of the wrong kind. Unknown type names and malformed filters are skipped.
    static std::optional<FolderColumns> fromJson(const QJsonObject& object);

    // Every mention of a key moved to `to` (shown, types, options, widths, colours, filters,
    // lanes, calendar).
    void renameKey(const QString& from, const QString& to);
    // Every mention of a key dropped (its column, type, options, width, colours, filters, and
    // the lane or calendar property when it was that key).
    void removeKey(const QString& key);
    // An option renamed (or dropped when `to` is absent) in the key's options and colours.
    void renameOption(const QString& key, const QString& from, const std::optional<QString>& to);
    // The key typed select, its options those it listed already followed by `values` it didn't.
    void makeSelect(const QString& key, const QStringList& values);

    bool operator==(const FolderColumns&) const = default;
};

} // namespace orwick
