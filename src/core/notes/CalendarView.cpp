#include "notes/CalendarView.h"

namespace orwick {

CalendarView CalendarView::make(const DatabaseColumns& database, const FileItems& items, QDate month,
                                Qt::DayOfWeek firstDayOfWeek)
{
    CalendarView view;
    view.month = monthOf(month.isValid() ? month : QDate::currentDate());
    view.firstDayOfWeek = firstDayOfWeek;
    const QDate first = view.month.addDays(-((view.month.dayOfWeek() - int(firstDayOfWeek) + 7) % 7));
    for (int i = 0; i < 42; ++i)
        view.days.append(first.addDays(i));
    view.choices = database.keysOf({PropertyType::date});

    std::optional<QString> key = database.settings.calendarBy;
    if (!key && view.choices.size() == 1)
        key = view.choices.first();
    if (!key || key->isEmpty()) {
        view.problem = view.choices.isEmpty() ? QStringLiteral("A calendar needs a date property to place items by.")
                                              : QStringLiteral("Choose the date property the calendar places items by.");
        return view;
    }
    view.key = *key;
    const PropertyColumn* column = database.column(*key);
    if (!column) {
        view.problem = QStringLiteral("The calendar places items by “%1”, which no item has any more.").arg(*key);
        return view;
    }
    if (column->type != PropertyType::date) {
        view.problem = QStringLiteral("The calendar places items by “%1”, which is a %2 property, not a date.")
                           .arg(*key, propertyTypeName(column->type));
        return view;
    }
    const QDate last = view.days.last();
    for (int index = 0; index < items.size(); ++index) {
        const auto value = database.value(items.at(index).url, *key);
        const std::optional<QDate> day = value ? value->date() : std::nullopt;
        if (!day) {
            ++view.undated;
            continue;
        }
        if (*day >= first && *day <= last)
            view.placed[*day].append(index);
    }
    return view;
}

PropertyValue CalendarView::movedValue(const std::optional<PropertyValue>& current, QDate day)
{
    const QString date = propertytext::formatDate(day);
    if (!current || !current->isText() || !current->date())
        return PropertyValue::ofText(date);
    // The date is the value's first ten characters ("yyyy-MM-dd"); a time after it stays.
    return PropertyValue::ofText(date + current->textPayload().mid(10));
}

PropertyMap CalendarView::newItemValues(QDate day) const
{
    PropertyMap values;
    if (!key.isEmpty() && problem.isEmpty())
        values.insert(key, PropertyValue::ofText(propertytext::formatDate(day)));
    return values;
}

} // namespace orwick
