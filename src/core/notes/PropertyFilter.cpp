#include "notes/PropertyFilter.h"

#include <QLocale>

namespace orwick {

namespace {

struct ConditionInfo {
    PropertyFilter::Condition condition;
    const char* name;
    const char* title;
    bool needsValue;
};

using C = PropertyFilter::Condition;
constexpr ConditionInfo kConditions[] = {
    {C::equals, "equals", "is", true},
    {C::differs, "differs", "is not", true},
    {C::contains, "contains", "contains", true},
    {C::lacks, "lacks", "doesn't contain", true},
    {C::before, "before", "is before", true},
    {C::after, "after", "is after", true},
    {C::greater, "greater", ">", true},
    {C::less, "less", "<", true},
    {C::empty, "empty", "is empty", false},
    {C::filled, "filled", "is not empty", false},
    {C::checked, "checked", "is checked", false},
    {C::unchecked, "unchecked", "is not checked", false},
};

const ConditionInfo& info(C condition) { return kConditions[int(condition)]; }

} // namespace

const QList<PropertyFilter::Condition>& PropertyFilter::allCases()
{
    static const QList<Condition> cases = [] {
        QList<Condition> list;
        for (const ConditionInfo& entry : kConditions)
            list.append(entry.condition);
        return list;
    }();
    return cases;
}

QList<PropertyFilter::Condition> PropertyFilter::conditions(PropertyType type)
{
    switch (type) {
    case PropertyType::checkbox: return {C::checked, C::unchecked, C::empty, C::filled};
    case PropertyType::number: return {C::equals, C::differs, C::greater, C::less, C::empty, C::filled};
    case PropertyType::date: return {C::equals, C::before, C::after, C::empty, C::filled};
    case PropertyType::text:
    case PropertyType::select:
    case PropertyType::list: break;
    }
    return {C::equals, C::differs, C::contains, C::lacks, C::empty, C::filled};
}

QString PropertyFilter::title(Condition condition) { return QString::fromUtf8(info(condition).title); }
bool PropertyFilter::needsValue(Condition condition) { return info(condition).needsValue; }
QString PropertyFilter::name(Condition condition) { return QString::fromUtf8(info(condition).name); }

std::optional<PropertyFilter::Condition> PropertyFilter::conditionFromName(const QString& name)
{
    for (const ConditionInfo& entry : kConditions)
        if (name == QLatin1StringView(entry.name))
            return entry.condition;
    return std::nullopt;
}

QString PropertyFilter::summary(PropertyType type) const
{
    QString text = key + u' ' + title(condition);
    if (!needsValue(condition))
        return text;
    QString operand = value.trimmed();
    if (type == PropertyType::date)
        if (const auto day = propertytext::parseDate(operand))
            operand = QLocale().toString(*day, QLocale::ShortFormat);
    return text + u' ' + operand;
}

bool PropertyFilter::matches(const std::optional<PropertyValue>& propertyValue, PropertyType type) const
{
    QStringList candidates;
    if (propertyValue && !propertyValue->text().isEmpty())
        candidates = type == PropertyType::list ? propertyValue->list() : QStringList{propertyValue->text()};
    const QString operand = value.trimmed();

    switch (condition) {
    case C::empty: return candidates.isEmpty();
    case C::filled: return !candidates.isEmpty();
    case C::checked: return propertyValue && propertyValue->isChecked();
    case C::unchecked: return !(propertyValue && propertyValue->isChecked());
    default: break;
    }
    if (operand.isEmpty())
        return true;

    const QString textForm = propertyValue ? propertyValue->text() : QString();
    auto anyCandidate = [&](auto test) { return std::any_of(candidates.begin(), candidates.end(), test); };
    auto equal = [&] {
        if (type == PropertyType::list)
            return anyCandidate([&](const QString& item) { return item.compare(operand, Qt::CaseInsensitive) == 0; });
        return textForm.compare(operand, Qt::CaseInsensitive) == 0;
    };
    auto contain = [&] {
        if (type == PropertyType::list)
            return anyCandidate([&](const QString& item) { return item.contains(operand, Qt::CaseInsensitive); });
        return textForm.contains(operand, Qt::CaseInsensitive);
    };
    // Dates compare as whole days; a value or operand without a date matches neither way.
    const PropertyValue none;
    const PropertyValue& present = propertyValue ? *propertyValue : none;
    auto compareDays = [&](auto test) {
        const auto day = present.date();
        const auto operandDay = propertytext::parseDate(operand);
        return propertyValue && day && operandDay && test(*day, *operandDay);
    };
    auto compareNumbers = [&](auto test) {
        const auto number = present.number();
        const auto operandNumber = propertytext::parseDecimal(operand);
        return propertyValue && number && operandNumber && test(*number, *operandNumber);
    };

    switch (condition) {
    case C::equals: return equal();
    case C::differs: return !equal();
    case C::contains: return contain();
    case C::lacks: return !contain();
    case C::before: return compareDays(std::less<QDate>());
    case C::after: return compareDays(std::greater<QDate>());
    case C::greater: return compareNumbers(std::greater<double>());
    case C::less: return compareNumbers(std::less<double>());
    default: return true;
    }
}

QJsonObject PropertyFilter::toJson() const
{
    return QJsonObject{{QStringLiteral("id"), id.toString(QUuid::WithoutBraces).toUpper()},
                       {QStringLiteral("key"), key},
                       {QStringLiteral("condition"), name(condition)},
                       {QStringLiteral("value"), value}};
}

std::optional<PropertyFilter> PropertyFilter::fromJson(const QJsonObject& object)
{
    const QUuid id = QUuid::fromString(object.value(QStringLiteral("id")).toString());
    const QJsonValue key = object.value(QStringLiteral("key"));
    const QJsonValue value = object.value(QStringLiteral("value"));
    const auto condition = conditionFromName(object.value(QStringLiteral("condition")).toString());
    if (id.isNull() || !key.isString() || !value.isString() || !condition)
        return std::nullopt;
    return PropertyFilter{id, key.toString(), *condition, value.toString()};
}

} // namespace orwick
