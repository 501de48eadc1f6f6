#pragma once
// ResolvedTheme: a theme with its `extends` chain applied, every colour key filled for both
// appearances, the sizes filled with their defaults and the terminal palettes complete. What
// the interface draws with; made by resolveTheme() (ThemeResolver.h).

#include "theme/ThemeColors.h"

#include <QList>
#include <QString>
#include <optional>

namespace orwick {

struct ResolvedTheme {
    QString name;
    std::optional<Appearance> appearance; // meant for one appearance only
    ThemeColors light;
    ThemeColors dark;
    double rowHeight = 0;
    double radius = 0;
    double fontSize = 0;
    QList<QColor> terminalLight; // 16 colours: the 8 normal, then the 8 bright ones
    QList<QColor> terminalDark;

    const ThemeColors& colors(Appearance a) const { return a == Appearance::dark ? dark : light; }
    const QList<QColor>& terminal(Appearance a) const { return a == Appearance::dark ? terminalDark : terminalLight; }

    bool operator==(const ResolvedTheme&) const = default;
};

} // namespace orwick
