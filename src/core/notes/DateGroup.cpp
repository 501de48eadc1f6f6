#include "notes/DateGroup.h"

#include <QTimeZone>

namespace orwick::DateGroup {

static QDate weekStart(QDate day, Qt::DayOfWeek firstDayOfWeek)
{
    return day.addDays(-((day.dayOfWeek() - int(firstDayOfWeek) + 7) % 7));
}

QString title(const QDateTime& date, const QDateTime& now, Qt::DayOfWeek firstDayOfWeek)
{
    const QDate day = date.toTimeZone(now.timeZone()).date();
    const QDate today = now.date();
    if (day == today)
        return QStringLiteral("Today");
    if (date > now)
        return QStringLiteral("Upcoming");
    if (day == today.addDays(-1))
        return QStringLiteral("Yesterday");
    const QDate week = weekStart(today, firstDayOfWeek);
    if (weekStart(day, firstDayOfWeek) == week)
        return QStringLiteral("Earlier this week");
    if (weekStart(day, firstDayOfWeek) == week.addDays(-7))
        return QStringLiteral("Last week");
    auto sameMonth = [](QDate a, QDate b) { return a.year() == b.year() && a.month() == b.month(); };
    if (sameMonth(day, today))
        return QStringLiteral("Earlier this month");
    if (sameMonth(day, today.addMonths(-1)))
        return QStringLiteral("Last month");
    if (day.year() == today.year())
        return QStringLiteral("Earlier this year");
    return QString::number(day.year());
}

} // namespace orwick::DateGroup
