#include "notes/PropertyValue.h"

#include "base/NaturalCompare.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QLocale>
#include <QSet>
#include <QTimeZone>
#include <cmath>

namespace orwick {

namespace propertytext {

QStringView trimmed(QStringView text)
{
    qsizetype begin = 0, end = text.size();
    while (begin < end && (text[begin] == u' ' || text[begin] == u'\t'))
        ++begin;
    while (end > begin && (text[end - 1] == u' ' || text[end - 1] == u'\t'))
        --end;
    return text.sliced(begin, end - begin);
}

std::optional<double> parseDecimal(QStringView text)
{
    const qsizetype n = text.size();
    qsizetype i = 0;
    auto digits = [&] {
        const qsizetype start = i;
        while (i < n && text[i] >= u'0' && text[i] <= u'9')
            ++i;
        return i - start;
    };
    if (i < n && (text[i] == u'+' || text[i] == u'-'))
        ++i;
    qsizetype mantissa = digits();
    if (i < n && text[i] == u'.') {
        ++i;
        mantissa += digits();
    }
    if (mantissa == 0)
        return std::nullopt;
    if (i < n && (text[i] == u'e' || text[i] == u'E')) {
        ++i;
        if (i < n && (text[i] == u'+' || text[i] == u'-'))
            ++i;
        if (digits() == 0)
            return std::nullopt;
    }
    if (i != n)
        return std::nullopt;
    bool ok = false;
    // Out-of-range exponents overflow to infinity or underflow to zero, like strtod.
    const double value = QLocale::c().toDouble(text, &ok);
    if (ok)
        return value;
    const QByteArray latin = text.toLatin1();
    return std::strtod(latin.constData(), nullptr);
}

static bool isWholeInt64(double number)
{
    return std::isfinite(number) && number == std::trunc(number) && number >= -9223372036854775808.0
        && number < 9223372036854775808.0;
}

QString formatNumber(double number)
{
    if (isWholeInt64(number))
        return QString::number(qint64(number));
    return QString::number(number, 'g', QLocale::FloatingPointShortest);
}

std::optional<QDate> parseDate(const QString& text)
{
    const QByteArray head = text.toUtf8().left(10);
    if (head.size() != 10 || head[4] != '-' || head[7] != '-')
        return std::nullopt;
    for (int i : {0, 1, 2, 3, 5, 6, 8, 9})
        if (head[i] < '0' || head[i] > '9')
            return std::nullopt;
    const int year = head.left(4).toInt();
    const int month = head.mid(5, 2).toInt();
    const int day = head.mid(8, 2).toInt();
    if (month < 1 || month > 12 || day < 1 || day > 31)
        return std::nullopt;
    // A day past the month's end runs on into the next month ("2023-02-30" is 2 March).
    const QDate first(year, month, 1);
    if (!first.isValid())
        return std::nullopt;
    return first.addDays(day - 1);
}

QString formatDate(QDate date) { return QLocale::c().toString(date, QStringLiteral("yyyy-MM-dd")); }

} // namespace propertytext

using namespace propertytext;

QString propertyTypeName(PropertyType type)
{
    switch (type) {
    case PropertyType::text: return QStringLiteral("text");
    case PropertyType::number: return QStringLiteral("number");
    case PropertyType::date: return QStringLiteral("date");
    case PropertyType::checkbox: return QStringLiteral("checkbox");
    case PropertyType::select: return QStringLiteral("select");
    case PropertyType::list: return QStringLiteral("list");
    }
    return QStringLiteral("text");
}

std::optional<PropertyType> propertyTypeFromName(const QString& name)
{
    for (PropertyType type : {PropertyType::text, PropertyType::number, PropertyType::date, PropertyType::checkbox,
                              PropertyType::select, PropertyType::list})
        if (propertyTypeName(type) == name)
            return type;
    return std::nullopt;
}

PropertyValue PropertyValue::fromYaml(const FrontMatter::Property& property)
{
    if (property.isList)
        return ofList(property.values);
    const QString first = property.values.isEmpty() ? QString() : property.values.first();
    const QString lower = first.toLower();
    if (lower == u"true")
        return ofBool(true);
    if (lower == u"false")
        return ofBool(false);
    if (const auto number = parseDecimal(first))
        return ofNumber(*number);
    return ofText(first);
}

QString PropertyValue::text() const
{
    switch (kind()) {
    case Kind::text: return textPayload();
    case Kind::number: return formatNumber(numberPayload());
    case Kind::boolean: return boolPayload() ? QStringLiteral("true") : QStringLiteral("false");
    case Kind::list: return listPayload().join(QStringLiteral(", "));
    }
    return {};
}

std::optional<double> PropertyValue::number() const
{
    if (isNumber())
        return numberPayload();
    if (isText())
        return parseDecimal(QStringView(textPayload()).trimmed());
    return std::nullopt;
}

QStringList PropertyValue::list() const
{
    switch (kind()) {
    case Kind::list: return listPayload();
    case Kind::boolean:
    case Kind::number: return {text()};
    case Kind::text: {
        QStringList items;
        for (QStringView piece : QStringView(textPayload()).split(u',')) {
            piece = piece.trimmed();
            if (!piece.isEmpty())
                items.append(piece.toString());
        }
        return items;
    }
    }
    return {};
}

std::optional<QDate> PropertyValue::date() const { return parseDate(text()); }

bool PropertyValue::isChecked() const
{
    if (isBool())
        return boolPayload();
    const QString lower = text().toLower();
    return lower == u"true" || lower == u"yes" || lower == u"x" || lower == u"1";
}

SortValue PropertyValue::sortKey(PropertyType type) const
{
    switch (type) {
    case PropertyType::date:
        if (const auto day = date())
            return double(day->startOfDay(QTimeZone::utc()).toSecsSinceEpoch());
        return text().toLower();
    case PropertyType::number:
        if (const auto value = number())
            return *value;
        return text();
    case PropertyType::checkbox: return isChecked() ? QStringLiteral("true") : QStringLiteral("false");
    case PropertyType::text:
    case PropertyType::select:
    case PropertyType::list: return text().toLower();
    }
    return text().toLower();
}

QJsonValue PropertyValue::toJson() const
{
    switch (kind()) {
    case Kind::text: return textPayload();
    case Kind::number: return numberPayload();
    case Kind::boolean: return boolPayload();
    case Kind::list: return QJsonArray::fromStringList(listPayload());
    }
    return {};
}

std::optional<PropertyValue> PropertyValue::fromJson(const QJsonValue& json)
{
    if (json.isString())
        return ofText(json.toString());
    if (json.isDouble())
        return ofNumber(json.toDouble());
    if (json.isBool())
        return ofBool(json.toBool());
    if (json.isArray()) {
        QStringList items;
        for (const QJsonValue& item : json.toArray()) {
            if (!item.isString())
                return std::nullopt;
            items.append(item.toString());
        }
        return ofList(items);
    }
    return std::nullopt;
}

size_t qHash(const PropertyValue& value, size_t seed)
{
    switch (value.kind()) {
    case PropertyValue::Kind::text: return qHashMulti(seed, 0, value.textPayload());
    case PropertyValue::Kind::number: return qHashMulti(seed, 1, value.numberPayload());
    case PropertyValue::Kind::boolean: return qHashMulti(seed, 2, value.boolPayload());
    case PropertyValue::Kind::list: return qHashMulti(seed, 3, value.listPayload());
    }
    return seed;
}

QJsonObject propertyMapToJson(const PropertyMap& map)
{
    QJsonObject object;
    for (auto it = map.begin(); it != map.end(); ++it)
        object.insert(it.key(), it.value().toJson());
    return object;
}

PropertyMap propertyMapFromJson(const QJsonObject& object)
{
    PropertyMap map;
    for (auto it = object.begin(); it != object.end(); ++it)
        if (auto value = PropertyValue::fromJson(it.value()))
            map.insert(it.key(), *value);
    return map;
}

// The text a value is grouped by when guessing a select: integers only below 10^15.
static QString selectText(const PropertyValue& value)
{
    if (value.isNumber()) {
        const double number = value.numberPayload();
        if (std::isfinite(number) && number == std::trunc(number) && std::fabs(number) < 1e15)
            return QString::number(qint64(number));
        return QString::number(number, 'g', QLocale::FloatingPointShortest);
    }
    return value.text();
}

PropertyType guessPropertyType(const QList<PropertyValue>& values)
{
    if (values.isEmpty())
        return PropertyType::text;
    auto all = [&](auto test) { return std::all_of(values.begin(), values.end(), test); };
    if (std::any_of(values.begin(), values.end(), [](const PropertyValue& v) { return v.isList(); }))
        return PropertyType::list;
    if (all([](const PropertyValue& v) { return v.isBool(); }))
        return PropertyType::checkbox;
    if (all([](const PropertyValue& v) { return v.isNumber() || (v.isText() && v.number()); }))
        return PropertyType::number;
    if (all([](const PropertyValue& v) { return v.date().has_value(); }))
        return PropertyType::date;
    QSet<QString> distinct;
    for (const PropertyValue& value : values)
        distinct.insert(selectText(value));
    if (values.size() >= 3 && distinct.size() < values.size() && distinct.size() <= 12
        && std::all_of(distinct.begin(), distinct.end(), [](const QString& t) { return t.size() < 25; }))
        return PropertyType::select;
    return PropertyType::text;
}

int compareSortValues(const SortValue& a, const SortValue& b)
{
    const double* na = std::get_if<double>(&a);
    const double* nb = std::get_if<double>(&b);
    if (na && nb)
        return *na < *nb ? -1 : (*nb < *na ? 1 : 0);
    if (na != nullptr || nb != nullptr)
        return na ? -1 : 1;
    return naturalCompare(std::get<QString>(a), std::get<QString>(b));
}

} // namespace orwick
