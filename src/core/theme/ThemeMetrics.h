#pragma once
// The sizes a theme may set, with their defaults and the ranges they are kept in, so that a
// theme file can't make rows vanish or text unreadable.

#include <QString>

namespace orwick {

struct ThemeMetricRange {
    double fallback; // when no theme in the chain sets it
    double lowest;
    double highest;
};

// "rowHeight" (list row height, pixels), "radius" (corner radius, pixels), "fontSize" (base
// font size, pixels).
inline ThemeMetricRange themeMetricRange(QLatin1StringView field)
{
    if (field == QLatin1StringView("rowHeight"))
        return {26, 16, 64};
    if (field == QLatin1StringView("radius"))
        return {6, 0, 16};
    return {13, 8, 28}; // fontSize
}

} // namespace orwick
