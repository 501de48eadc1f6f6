#pragma once
// DateGroup: the heading a date falls under when a list is grouped by date — "Today",
// "Upcoming", "Yesterday", "Earlier this week", "Last week", "Earlier this month", "Last month",
// "Earlier this year", else the year. Pure; safe on any thread.

#include <QDateTime>

namespace orwick::DateGroup {

// Days, weeks and months are those of `now`'s time zone; weeks start on `firstDayOfWeek`.
QString title(const QDateTime& date, const QDateTime& now, Qt::DayOfWeek firstDayOfWeek = Qt::Monday);

} // namespace orwick::DateGroup
