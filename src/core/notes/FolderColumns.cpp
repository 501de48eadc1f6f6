#include "notes/FolderColumns.h"

#include <QJsonArray>

namespace orwick {

namespace {

QJsonArray toArray(const QStringList& list) { return QJsonArray::fromStringList(list); }

std::optional<QStringList> stringList(const QJsonValue& value)
{
    if (!value.isArray())
        return std::nullopt;
    QStringList list;
    for (const QJsonValue& item : value.toArray()) {
        if (!item.isString())
            return std::nullopt;
        list.append(item.toString());
    }
    return list;
}

std::optional<QString> optionalText(const QJsonObject& object, const char* key)
{
    const QJsonValue value = object.value(QLatin1StringView(key));
    return value.isString() ? std::optional(value.toString()) : std::nullopt;
}

} // namespace

QJsonObject FolderColumns::toJson() const
{
    QJsonObject object;
    object.insert(QStringLiteral("shown"), toArray(shown));
    QJsonObject typeObject;
    for (auto it = types.begin(); it != types.end(); ++it)
        typeObject.insert(it.key(), propertyTypeName(it.value()));
    object.insert(QStringLiteral("types"), typeObject);
    QJsonObject optionObject;
    for (auto it = options.begin(); it != options.end(); ++it)
        optionObject.insert(it.key(), toArray(it.value()));
    object.insert(QStringLiteral("options"), optionObject);
    object.insert(QStringLiteral("hidesModified"), hidesModified);
    object.insert(QStringLiteral("hidesSize"), hidesSize);
    object.insert(QStringLiteral("showsKind"), showsKind);
    if (!widths.isEmpty()) {
        QJsonObject widthObject;
        for (auto it = widths.begin(); it != widths.end(); ++it)
            widthObject.insert(it.key(), it.value());
        object.insert(QStringLiteral("widths"), widthObject);
    }
    if (layout)
        object.insert(QStringLiteral("layout"), *layout);
    if (groupBy)
        object.insert(QStringLiteral("groupBy"), *groupBy);
    if (!filters.isEmpty()) {
        QJsonArray filterArray;
        for (const PropertyFilter& filter : filters)
            filterArray.append(filter.toJson());
        object.insert(QStringLiteral("filters"), filterArray);
    }
    if (!optionColors.isEmpty()) {
        QJsonObject colorObject;
        for (auto it = optionColors.begin(); it != optionColors.end(); ++it) {
            QJsonObject perOption;
            for (auto o = it.value().begin(); o != it.value().end(); ++o)
                perOption.insert(o.key(), o.value());
            colorObject.insert(it.key(), perOption);
        }
        object.insert(QStringLiteral("optionColors"), colorObject);
    }
    if (calendarBy)
        object.insert(QStringLiteral("calendarBy"), *calendarBy);
    return object;
}

std::optional<FolderColumns> FolderColumns::fromJson(const QJsonObject& object)
{
    FolderColumns columns;
    const auto shown = stringList(object.value(QStringLiteral("shown")));
    const QJsonValue types = object.value(QStringLiteral("types"));
    const QJsonValue options = object.value(QStringLiteral("options"));
    const QJsonValue hidesModified = object.value(QStringLiteral("hidesModified"));
    const QJsonValue hidesSize = object.value(QStringLiteral("hidesSize"));
    const QJsonValue showsKind = object.value(QStringLiteral("showsKind"));
    if (!shown || !types.isObject() || !options.isObject() || !hidesModified.isBool() || !hidesSize.isBool()
        || !showsKind.isBool())
        return std::nullopt;
    columns.shown = *shown;
    const QJsonObject typeObject = types.toObject();
    for (auto it = typeObject.begin(); it != typeObject.end(); ++it)
        if (const auto type = propertyTypeFromName(it.value().toString()))
            columns.types.insert(it.key(), *type);
    const QJsonObject optionObject = options.toObject();
    for (auto it = optionObject.begin(); it != optionObject.end(); ++it) {
        const auto list = stringList(it.value());
        if (!list)
            return std::nullopt;
        columns.options.insert(it.key(), *list);
    }
    columns.hidesModified = hidesModified.toBool();
    columns.hidesSize = hidesSize.toBool();
    columns.showsKind = showsKind.toBool();
    const QJsonObject widthObject = object.value(QStringLiteral("widths")).toObject();
    for (auto it = widthObject.begin(); it != widthObject.end(); ++it)
        if (it.value().isDouble())
            columns.widths.insert(it.key(), it.value().toDouble());
    columns.layout = optionalText(object, "layout");
    columns.groupBy = optionalText(object, "groupBy");
    columns.calendarBy = optionalText(object, "calendarBy");
    for (const QJsonValue& item : object.value(QStringLiteral("filters")).toArray())
        if (const auto filter = PropertyFilter::fromJson(item.toObject()))
            columns.filters.append(*filter);
    const QJsonObject colorObject = object.value(QStringLiteral("optionColors")).toObject();
    for (auto it = colorObject.begin(); it != colorObject.end(); ++it) {
        QMap<QString, int> perOption;
        const QJsonObject inner = it.value().toObject();
        for (auto o = inner.begin(); o != inner.end(); ++o)
            if (o.value().isDouble())
                perOption.insert(o.key(), o.value().toInt());
        columns.optionColors.insert(it.key(), perOption);
    }
    return columns;
}

template <class Map>
static void moveKey(Map& map, const QString& from, const QString& to)
{
    if (map.contains(from))
        map.insert(to, map.take(from));
}

void FolderColumns::renameKey(const QString& from, const QString& to)
{
    for (QString& key : shown)
        if (key == from)
            key = to;
    shown.removeDuplicates();
    moveKey(types, from, to);
    moveKey(options, from, to);
    moveKey(widths, from, to);
    moveKey(optionColors, from, to);
    for (PropertyFilter& filter : filters)
        if (filter.key == from)
            filter.key = to;
    for (std::optional<QString>* field : {&groupBy, &calendarBy})
        if (*field == from)
            *field = to;
}

void FolderColumns::removeKey(const QString& key)
{
    shown.removeAll(key);
    types.remove(key);
    options.remove(key);
    widths.remove(key);
    optionColors.remove(key);
    filters.removeIf([&](const PropertyFilter& filter) { return filter.key == key; });
    for (std::optional<QString>* field : {&groupBy, &calendarBy})
        if (*field == key)
            field->reset();
}

void FolderColumns::renameOption(const QString& key, const QString& from, const std::optional<QString>& to)
{
    if (options.contains(key)) {
        QStringList& list = options[key];
        const qsizetype at = list.indexOf(from);
        if (at >= 0) {
            if (to && !list.contains(*to))
                list[at] = *to;
            else
                list.removeAt(at);
        }
    }
    if (optionColors.contains(key)) {
        QMap<QString, int>& colors = optionColors[key];
        if (colors.contains(from)) {
            const int color = colors.take(from);
            if (to && !colors.contains(*to))
                colors.insert(*to, color);
        }
    }
}

void FolderColumns::makeSelect(const QString& key, const QStringList& values)
{
    types.insert(key, PropertyType::select);
    QStringList& list = options[key];
    for (const QString& value : values)
        if (!list.contains(value))
            list.append(value);
}

} // namespace orwick
