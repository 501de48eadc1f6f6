#pragma once
// PropertyValue: one typed property of a file (text, number, checkbox or list), with the views
// every consumer reads it through (text, number, list, date), its sort key under a column type,
// and its JSON form. PropertyType: the column types, and the guess made from a set of values.
// Pure value types, safe on any thread.

#include "files/Arrangement.h"
#include "notes/FrontMatter.h"

#include <QDate>
#include <QJsonValue>
#include <QMap>
#include <QStringList>
#include <optional>
#include <variant>

namespace orwick {

enum class PropertyType { text, number, date, checkbox, select, list };

// The stored names ("text", "number", "date", "checkbox", "select", "list").
QString propertyTypeName(PropertyType type);
std::optional<PropertyType> propertyTypeFromName(const QString& name);

class PropertyValue {
public:
    enum class Kind { text, number, boolean, list };

    PropertyValue() = default; // the empty text
    static PropertyValue ofText(QString text) { return PropertyValue(Storage(std::move(text))); }
    static PropertyValue ofNumber(double number) { return PropertyValue(Storage(number)); }
    static PropertyValue ofBool(bool value) { return PropertyValue(Storage(value)); }
    static PropertyValue ofList(QStringList items) { return PropertyValue(Storage(std::move(items))); }

    // The value a front-matter property stands for: a list stays a list; a scalar "true"/"false"
    // (any case) is a checkbox, a decimal number is a number, anything else is text.
    static PropertyValue fromYaml(const FrontMatter::Property& property);

    Kind kind() const { return Kind(m_value.index()); }
    bool isText() const { return kind() == Kind::text; }
    bool isNumber() const { return kind() == Kind::number; }
    bool isBool() const { return kind() == Kind::boolean; }
    bool isList() const { return kind() == Kind::list; }
    // The payloads, for callers that switch on kind().
    const QString& textPayload() const { return std::get<QString>(m_value); }
    double numberPayload() const { return std::get<double>(m_value); }
    bool boolPayload() const { return std::get<bool>(m_value); }
    const QStringList& listPayload() const { return std::get<QStringList>(m_value); }

    // Views. text: numbers as integers when whole, "true"/"false", lists joined with ", ".
    QString text() const;
    // The number, or a text whose trimmed form is a decimal number.
    std::optional<double> number() const;
    // The list; a scalar as one item; a text split on "," (pieces trimmed, empty ones dropped).
    QStringList list() const;
    // The day the first ten bytes of the text form name ("2024-05-17"), if they name one.
    std::optional<QDate> date() const;

    // As a checkbox: a bool's truth; any other value is checked when its text form is "true",
    // "yes", "x" or "1" (any case).
    bool isChecked() const;

    SortValue sortKey(PropertyType type) const;

    QJsonValue toJson() const;
    // Nothing for JSON that is not a string, number, bool or array of strings.
    static std::optional<PropertyValue> fromJson(const QJsonValue& json);

    bool operator==(const PropertyValue&) const = default;

private:
    using Storage = std::variant<QString, double, bool, QStringList>;
    explicit PropertyValue(Storage value) : m_value(std::move(value)) {}
    Storage m_value;
};

size_t qHash(const PropertyValue& value, size_t seed = 0);

// A file's properties by key.
using PropertyMap = QMap<QString, PropertyValue>;

QJsonObject propertyMapToJson(const PropertyMap& map);
// Entries whose value isn't a property value are left out.
PropertyMap propertyMapFromJson(const QJsonObject& object);

// Guesses a column type from the values a folder's items hold for one key.
PropertyType guessPropertyType(const QList<PropertyValue>& values);

// Sort-value order: numbers by value, every number before every text, texts in natural order.
int compareSortValues(const SortValue& a, const SortValue& b);

// Text helpers shared by the views, the writer and the guess.
namespace propertytext {
// A decimal number: optional sign, digits with an optional fraction, optional exponent.
// ("inf", "nan" and hexadecimal forms are not numbers here.)
std::optional<double> parseDecimal(QStringView text);
// An integer when whole and within the 64-bit range, else the shortest decimal form.
QString formatNumber(double number);
// The day of a "yyyy-MM-dd…" text, by its first ten UTF-8 bytes.
std::optional<QDate> parseDate(const QString& text);
// "yyyy-MM-dd" in the fixed POSIX locale.
QString formatDate(QDate date);
// Spaces and tabs trimmed from both ends (not line breaks or other white space).
QStringView trimmed(QStringView text);
} // namespace propertytext

} // namespace orwick

Q_DECLARE_METATYPE(orwick::PropertyValue)
