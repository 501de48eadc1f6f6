#include "theme/ThemeDefinition.h"

#include "theme/ThemeMetrics.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace orwick {

namespace {

QString quoted(const QString& text) { return QStringLiteral("“") + text + QStringLiteral("”"); }

QJsonObject mapToJson(const QMap<QString, QString>& map)
{
    QJsonObject json;
    for (auto it = map.cbegin(); it != map.cend(); ++it)
        json.insert(it.key(), it.value());
    return json;
}

Result<QMap<QString, QString>> mapFromJson(const QJsonObject& json, const char* field)
{
    QMap<QString, QString> map;
    const QJsonValue value = json.value(QLatin1StringView(field));
    if (value.isUndefined() || value.isNull())
        return map;
    if (!value.isObject())
        return failure(quoted(QString::fromUtf8(field)) + QStringLiteral(" should be a map of colour names to colours"));
    const QJsonObject object = value.toObject();
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (!it.value().isString())
            return failure(quoted(it.key()) + QStringLiteral(" in ") + quoted(QString::fromUtf8(field))
                           + QStringLiteral(" should be a colour like #FF7A59"));
        map.insert(it.key(), it.value().toString());
    }
    return map;
}

Result<std::optional<double>> numberFromJson(const QJsonObject& json, const char* field)
{
    const QJsonValue value = json.value(QLatin1StringView(field));
    if (value.isUndefined() || value.isNull())
        return std::optional<double>();
    if (!value.isDouble())
        return failure(quoted(QString::fromUtf8(field)) + QStringLiteral(" should be a number"));
    return std::optional<double>(value.toDouble());
}

Result<std::optional<QStringList>> colorListFromJson(const QJsonObject& terminal, const char* field)
{
    const QJsonValue value = terminal.value(QLatin1StringView(field));
    if (value.isUndefined() || value.isNull())
        return std::optional<QStringList>();
    const QString where = quoted(QStringLiteral("terminal.") + QString::fromUtf8(field));
    if (!value.isArray())
        return failure(where + QStringLiteral(" should be a list of colours"));
    QStringList list;
    for (const QJsonValue& entry : value.toArray()) {
        if (!entry.isString())
            return failure(where + QStringLiteral(" should be a list of colours"));
        list.append(entry.toString());
    }
    return std::optional<QStringList>(list);
}

} // namespace

QJsonObject ThemeDefinition::toJson() const
{
    QJsonObject json{{"name", name}};
    if (extends)
        json.insert("extends", *extends);
    if (appearance)
        json.insert("appearance", appearanceName(*appearance));
    const std::pair<const char*, const QMap<QString, QString>*> maps[] = {{"colors", &colors}, {"light", &light}, {"dark", &dark}};
    for (const auto& [field, map] : maps)
        if (!map->isEmpty())
            json.insert(QLatin1StringView(field), mapToJson(*map));
    const std::pair<const char*, std::optional<double>> numbers[] = {{"rowHeight", rowHeight}, {"radius", radius}, {"fontSize", fontSize}};
    for (const auto& [field, number] : numbers)
        if (number)
            json.insert(QLatin1StringView(field), *number);
    if (terminalLight || terminalDark) {
        QJsonObject terminal;
        if (terminalLight)
            terminal.insert("light", QJsonArray::fromStringList(*terminalLight));
        if (terminalDark)
            terminal.insert("dark", QJsonArray::fromStringList(*terminalDark));
        json.insert("terminal", terminal);
    }
    return json;
}

Result<ThemeDefinition> ThemeDefinition::fromJson(const QJsonObject& json)
{
    ThemeDefinition theme;
    const QJsonValue name = json.value("name");
    if (!name.isString() || name.toString().trimmed().isEmpty())
        return failure(QStringLiteral("a theme needs a “name”"));
    theme.name = name.toString().trimmed();
    if (const QJsonValue extends = json.value("extends"); extends.isString())
        theme.extends = extends.toString().trimmed();
    else if (!extends.isUndefined() && !extends.isNull())
        return failure(QStringLiteral("“extends” should be the name of a theme"));
    if (const QJsonValue appearance = json.value("appearance"); !appearance.isUndefined() && !appearance.isNull()) {
        theme.appearance = appearanceFromName(appearance.toString());
        if (!appearance.isString() || !theme.appearance)
            return failure(QStringLiteral("“appearance” should be \"light\" or \"dark\""));
    }
    const std::pair<const char*, QMap<QString, QString>*> maps[] = {{"colors", &theme.colors}, {"light", &theme.light}, {"dark", &theme.dark}};
    for (const auto& [field, map] : maps) {
        auto read = mapFromJson(json, field);
        if (!read)
            return failure(read.error());
        *map = *read;
    }
    const std::pair<const char*, std::optional<double>*> numbers[] = {
        {"rowHeight", &theme.rowHeight}, {"radius", &theme.radius}, {"fontSize", &theme.fontSize}};
    for (const auto& [field, number] : numbers) {
        auto read = numberFromJson(json, field);
        if (!read)
            return failure(read.error());
        *number = *read;
    }
    if (const QJsonValue terminal = json.value("terminal"); !terminal.isUndefined() && !terminal.isNull()) {
        if (!terminal.isObject())
            return failure(QStringLiteral("“terminal” should hold \"light\" and \"dark\" lists of colours"));
        auto light = colorListFromJson(terminal.toObject(), "light");
        auto dark = colorListFromJson(terminal.toObject(), "dark");
        if (!light)
            return failure(light.error());
        if (!dark)
            return failure(dark.error());
        theme.terminalLight = *light;
        theme.terminalDark = *dark;
    }
    return theme;
}

Result<ThemeDefinition> ThemeDefinition::fromBytes(const QByteArray& bytes)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError)
        return failure(QStringLiteral("not valid JSON (%1, at character %2)").arg(error.errorString()).arg(error.offset));
    if (!document.isObject())
        return failure(QStringLiteral("a theme file holds one JSON object: { \"name\": … }"));
    return fromJson(document.object());
}

QStringList checkTheme(const ThemeDefinition& theme)
{
    QStringList problems;
    const std::pair<const char*, const QMap<QString, QString>*> maps[] = {{"colors", &theme.colors}, {"light", &theme.light}, {"dark", &theme.dark}};
    for (const auto& [field, map] : maps)
        for (auto it = map->cbegin(); it != map->cend(); ++it) {
            if (!themekeys::isKnown(it.key()))
                problems.append(quoted(it.key()) + QStringLiteral(" in ") + quoted(QString::fromUtf8(field))
                                + QStringLiteral(" isn't a colour Orwick uses, so it does nothing"));
            else if (!parseThemeColor(it.value()))
                problems.append(quoted(it.key()) + QStringLiteral(" in ") + quoted(QString::fromUtf8(field)) + QStringLiteral(" is ")
                                + quoted(it.value()) + QStringLiteral(", not a colour like #FF7A59, so it is left out"));
        }
    const std::pair<const char*, std::optional<double>> numbers[] = {
        {"rowHeight", theme.rowHeight}, {"radius", theme.radius}, {"fontSize", theme.fontSize}};
    for (const auto& [field, number] : numbers)
        if (number) {
            const ThemeMetricRange range = themeMetricRange(QLatin1StringView(field));
            if (*number < range.lowest || *number > range.highest)
                problems.append(QStringLiteral("%1 is %2; it is kept between %3 and %4")
                                    .arg(quoted(QString::fromUtf8(field)))
                                    .arg(*number)
                                    .arg(range.lowest)
                                    .arg(range.highest));
        }
    const std::pair<const char*, const std::optional<QStringList>*> lists[] = {{"light", &theme.terminalLight}, {"dark", &theme.terminalDark}};
    for (const auto& [field, list] : lists)
        if (*list)
            for (const QString& entry : **list)
                if (!parseThemeColor(entry)) {
                    problems.append(quoted(QStringLiteral("terminal.") + QString::fromUtf8(field)) + QStringLiteral(" holds ")
                                    + quoted(entry) + QStringLiteral(", not a colour like #FF7A59, so the list is left out"));
                    break;
                }
    return problems;
}

} // namespace orwick
