#include "files/DateGroups.h"

#include <QDateTime>
#include <QLocale>
#include <algorithm>
#include <climits>

namespace orwick {
namespace {

constexpr int kNoDate = INT_MAX;

Timestamp midnight(QDate date) { return QDateTime(date, QTime(0, 0)).toMSecsSinceEpoch(); }

} // namespace

DateGroups::DateGroups(Timestamp now)
{
    const QDate today = QDateTime::fromMSecsSinceEpoch(now).date();
    const int firstDay = int(QLocale::system().firstDayOfWeek());
    const QDate weekStart = today.addDays(-((today.dayOfWeek() - firstDay + 7) % 7));
    const QDate monthStart(today.year(), today.month(), 1);
    m_year = today.year();
    m_starts[Fixed::today] = midnight(today);
    m_starts[yesterday] = midnight(today.addDays(-1));
    m_starts[earlierThisWeek] = midnight(weekStart);
    m_starts[lastWeek] = midnight(weekStart.addDays(-7));
    m_starts[earlierThisMonth] = midnight(monthStart);
    m_starts[lastMonth] = midnight(monthStart.addMonths(-1));
    m_starts[earlierThisYear] = midnight(QDate(m_year, 1, 1));
}

int DateGroups::groupOf(Timestamp modified)
{
    if (modified <= kDistantPast)
        return kNoDate;
    // The first group, newest first, whose start the date reaches.
    for (int group = Fixed::today; group < firstYear; ++group)
        if (modified >= m_starts[group])
            return group;
    // Earlier years: find the year whose start the date reaches, making starts as needed.
    for (size_t k = 0;; ++k) {
        if (k == m_yearStarts.size()) {
            const int year = m_year - 1 - int(k);
            if (year < 1)
                return kNoDate;
            m_yearStarts.push_back(midnight(QDate(year, 1, 1)));
        }
        if (modified >= m_yearStarts[k])
            return firstYear + int(k);
    }
}

QString DateGroups::title(int group) const
{
    switch (group) {
    case Fixed::today: return QStringLiteral("Today");
    case yesterday: return QStringLiteral("Yesterday");
    case earlierThisWeek: return QStringLiteral("Earlier this week");
    case lastWeek: return QStringLiteral("Last week");
    case earlierThisMonth: return QStringLiteral("Earlier this month");
    case lastMonth: return QStringLiteral("Last month");
    case earlierThisYear: return QStringLiteral("Earlier this year");
    case kNoDate: return QStringLiteral("No date");
    default: return QString::number(m_year - 1 - (group - firstYear));
    }
}

} // namespace orwick
