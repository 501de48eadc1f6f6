#pragma once
// CalendarView: a month grid of six weeks, items placed on the day their `calendarBy` date
// property names (the folder's setting; else its only date property). Items without a readable
// date are counted, never placed on a guessed day. Moving an item to a day works out the new
// value (the date replaced, any time written after it kept); an item made on a day starts with
// that date. A `calendarBy` that is gone or not a date gives no placement but a problem
// sentence and the date keys to choose from. Pure; safe on any thread.

#include "notes/DatabaseColumns.h"

#include <QDate>

namespace orwick {

struct CalendarView {
    QString key;
    QDate month;                       // the first day of the month shown
    Qt::DayOfWeek firstDayOfWeek = Qt::Monday;
    QList<QDate> days;                 // 42 days from the start of the month's first week
    QHash<QDate, QList<int>> placed;   // day → indexes into the items, in the items' order
    int undated = 0;                   // items without a readable date
    QString problem;
    QStringList choices;               // the date keys a calendar could place by

    static CalendarView make(const DatabaseColumns& database, const FileItems& items, QDate month,
                             Qt::DayOfWeek firstDayOfWeek = Qt::Monday);

    // The first day of the month `day` falls in.
    static QDate monthOf(QDate day) { return QDate(day.year(), day.month(), 1); }

    // A date property's value moved to `day`: "yyyy-MM-dd" in place of the date, the rest kept.
    static PropertyValue movedValue(const std::optional<PropertyValue>& current, QDate day);
    PropertyMap newItemValues(QDate day) const;
};

} // namespace orwick
