#pragma once
// PropertyFilter: one row of a folder's filter list ("status is done", "due is before
// 2024-06-01"). A folder's items stay visible when every row matches (see
// FileProperties::filtered). Plain value, JSON under its field names; safe on any thread.

#include "notes/PropertyValue.h"

#include <QJsonObject>
#include <QUuid>

namespace orwick {

struct PropertyFilter {
    enum class Condition { equals, differs, contains, lacks, before, after, greater, less, empty, filled, checked, unchecked };

    QUuid id = QUuid::createUuid();
    QString key;
    Condition condition = Condition::equals;
    QString value; // the operand as typed or picked; dates as "yyyy-MM-dd"

    // Every condition in the order the filter row offers them.
    static const QList<Condition>& allCases();
    // The conditions a filter row offers for a property of `type`, the likeliest first: a
    // checkbox is checked or not, a number compares, a date comes before or after, text-like
    // types match or contain; every type can be empty or not.
    static QList<Condition> conditions(PropertyType type);
    // The words of the filter row: "is", "is not", "contains", "doesn't contain"…
    static QString title(Condition condition);
    // Whether the row shows an operand field.
    static bool needsValue(Condition condition);
    static QString name(Condition condition); // the stored case name
    static std::optional<Condition> conditionFromName(const QString& name);

    // The chip text: key, condition and (when it takes one) the operand; a date operand of a
    // date property is shown as a formatted date.
    QString summary(PropertyType type) const;

    // Whether a file whose value for `key` is `value` (absent when it has none) passes. A row
    // whose operand is still blank passes everything.
    bool matches(const std::optional<PropertyValue>& value, PropertyType type) const;

    QJsonObject toJson() const;
    // Nothing when a field is missing or of the wrong kind.
    static std::optional<PropertyFilter> fromJson(const QJsonObject& object);

    bool operator==(const PropertyFilter&) const = default;
};

} // namespace orwick
