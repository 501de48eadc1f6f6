#pragma once
// Day groups for "group by date": which heading a modification date falls under, newest group
// first. The boundaries (midnights in local time) are worked out once per arrangement, so
// sorting 100,000 items into groups is a few comparisons each.

#include "files/FileItem.h"

#include <QString>
#include <vector>

namespace orwick {

class DateGroups {
public:
    // `now`: the moment "today" is taken from, in ms since the epoch.
    explicit DateGroups(Timestamp now);

    // The group of a date; smaller numbers are newer groups. Dates after today count as today.
    int groupOf(Timestamp modified);
    // "Today", "Yesterday", "Earlier this week", "Last week", "Earlier this month",
    // "Last month", "Earlier this year", then the year ("2023"); "No date" for unknown dates.
    QString title(int group) const;

private:
    enum Fixed { today, yesterday, earlierThisWeek, lastWeek, earlierThisMonth, lastMonth, earlierThisYear, firstYear };
    Timestamp m_starts[firstYear]; // start of each fixed group
    int m_year;                     // this year
    std::vector<Timestamp> m_yearStarts; // start of this year, last year, … as far as needed
};

} // namespace orwick
