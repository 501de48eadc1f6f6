// Fuzzes the front-matter reader and writer. Any note text must read without crashing; writing
// a property into a readable note must give a note that still reads, with the property holding
// exactly what its own line reads as and every other property unchanged; removing a property
// must leave the rest. A broken promise aborts, so libFuzzer keeps the input.

#include "FuzzCheck.h"
#include "notes/FrontMatter.h"
#include "notes/PropertyValue.h"

#include <fuzzer/FuzzedDataProvider.h>

using namespace orwick;
using fuzz::check;

namespace {

PropertyMap toMap(const QList<FrontMatter::Property>& properties)
{
    PropertyMap map;
    for (const FrontMatter::Property& property : properties)
        if (!map.contains(property.key))
            map.insert(property.key, PropertyValue::fromYaml(property));
    return map;
}

// The note's properties; nothing when it opens a front matter that can't be read.
std::optional<PropertyMap> propertiesOf(const QString& text)
{
    QStringView firstLine = QStringView(text).first(text.indexOf(u'\n') < 0 ? text.size() : text.indexOf(u'\n'));
    if (firstLine.endsWith(u'\r'))
        firstLine.chop(1);
    if (propertytext::trimmed(firstLine) != u"---")
        return PropertyMap();
    const auto properties = FrontMatter::read(text);
    return properties ? std::optional(toMap(*properties)) : std::nullopt;
}

QString text(FuzzedDataProvider& data, size_t length)
{
    const std::string bytes = data.ConsumeRandomLengthString(length);
    return QString::fromUtf8(bytes.data(), qsizetype(bytes.size()));
}

PropertyValue value(FuzzedDataProvider& data)
{
    switch (data.ConsumeIntegralInRange(0, 3)) {
    case 0: return PropertyValue::ofText(text(data, 40));
    case 1: return PropertyValue::ofNumber(data.ConsumeBool() ? double(data.ConsumeIntegral<int32_t>()) : data.ConsumeFloatingPoint<double>());
    case 2: return PropertyValue::ofBool(data.ConsumeBool());
    default: {
        QStringList items;
        for (int n = data.ConsumeIntegralInRange(0, 4); n > 0; --n)
            items.append(text(data, 12));
        return PropertyValue::ofList(items);
    }
    }
}

void exerciseViews(const PropertyMap& map)
{
    QList<PropertyValue> values;
    for (const PropertyValue& v : map) {
        values.append(v);
        (void)v.text();
        (void)v.number();
        (void)v.list();
        (void)v.date();
        for (PropertyType type : {PropertyType::text, PropertyType::number, PropertyType::date, PropertyType::checkbox,
                                  PropertyType::select, PropertyType::list})
            (void)compareSortValues(v.sortKey(type), v.sortKey(PropertyType::text));
        check(PropertyValue::fromJson(v.toJson()) == v || (v.isNumber() && !std::isfinite(v.numberPayload())), "JSON round trip");
    }
    (void)guessPropertyType(values);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    FuzzedDataProvider data(bytes, size);
    const QString key = text(data, 16);
    const PropertyValue newValue = value(data);
    const int action = data.ConsumeIntegralInRange(0, 5); // 0 removes, 1 renames, else sets
    const QString newKey = action == 1 ? text(data, 16) : QString();
    const std::string rest = data.ConsumeRemainingBytesAsString();
    const QString note = QString::fromUtf8(rest.data(), qsizetype(rest.size()));

    const auto before = propertiesOf(note);
    if (before)
        exerciseViews(*before);
    if (!before || !FrontMatter::isWritableKey(key))
        return 0;

    if (action == 1) {
        const auto all = FrontMatter::read(note);
        auto count = [&](const QString& k) {
            return all ? std::count_if(all->begin(), all->end(), [&](const auto& p) { return p.key == k; }) : 0;
        };
        if (!FrontMatter::isWritableKey(newKey) || count(key) != 1 || count(newKey) != 0)
            return 0;
        const auto after = propertiesOf(FrontMatter::renaming(key, newKey, note));
        check(after.has_value(), "a note still reads after a rename");
        PropertyMap expected = *before;
        expected.insert(newKey, expected.take(key));
        check(*after == expected, "a rename moves the value to the new key and changes nothing else");
        return 0;
    }

    if (action == 0) {
        const auto after = propertiesOf(FrontMatter::setting(key, std::nullopt, note));
        check(after.has_value(), "a note still reads after a removal");
        const auto all = FrontMatter::read(note);
        const qsizetype occurrences = all ? std::count_if(all->begin(), all->end(), [&](const auto& p) { return p.key == key; }) : 0;
        if (occurrences <= 1) {
            PropertyMap expected = *before;
            expected.remove(key);
            check(*after == expected, "a removal removes only its key");
        }
        return 0;
    }

    const QString yaml = FrontMatter::yaml(newValue);
    if (yaml.contains(u'\n'))
        return 0; // a value with a line break: the writer refuses it
    const auto line = FrontMatter::parse(key + QStringLiteral(": ") + yaml);
    check(line && line->size() == 1, "a written line reads as one property");
    const PropertyValue readBack = PropertyValue::fromYaml(line->first());
    const QString written = FrontMatter::setting(key, yaml, note);
    const auto after = propertiesOf(written);
    check(after.has_value(), "a note still reads after a write");
    PropertyMap expected = *before;
    expected.insert(key, readBack);
    check(*after == expected, "a write changes only its key, to what its line reads as");
    // A value written bare or quoted without escapes comes back as it was.
    if (!yaml.contains(u'\\') && newValue.isText() && readBack.isText()) {
        if (readBack != newValue && std::getenv("FUZZ_DEBUG"))
            std::fprintf(stderr, "wrote [%s] as [%s], read [%s]\n", newValue.text().toUtf8().toHex().constData(), yaml.toUtf8().toHex().constData(), readBack.text().toUtf8().toHex().constData());
        check(readBack == newValue, "a plain text comes back unchanged");
    }
    // Setting the same value again changes nothing.
    check(FrontMatter::setting(key, yaml, written) == written, "writing twice is writing once");
    return 0;
}
