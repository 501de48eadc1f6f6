#include "ui/terminal/TerminalColors.h"

#include "theme/BuiltInThemes.h"
#include "theme/ThemeStore.h"
#include "ui/theme/Theme.h"

namespace orwick {

TerminalColors TerminalColors::fromTheme()
{
    TerminalColors colors;
    const ThemeStore& store = ThemeStore::shared();
    QList<QColor> sixteen = store.current().terminal(store.appearance());
    if (sixteen.size() < 16) { // a theme without a full palette: the built-in one fills it
        const QStringList fallback = defaultTerminalColors(store.appearance());
        for (qsizetype i = sixteen.size(); i < 16 && i < fallback.size(); ++i)
            sixteen.append(QColor(fallback[i]));
    }
    for (int i = 0; i < 16; ++i)
        colors.m_palette[size_t(i)] = sixteen.value(i, QColor(Qt::gray));
    // The colour cube and the grey ramp, as xterm makes them.
    static constexpr int levels[] = {0, 95, 135, 175, 215, 255};
    for (int i = 16; i < 232; ++i) {
        const int n = i - 16;
        colors.m_palette[size_t(i)] = QColor(levels[n / 36], levels[(n / 6) % 6], levels[n % 6]);
    }
    for (int i = 232; i < 256; ++i) {
        const int level = 8 + (i - 232) * 10;
        colors.m_palette[size_t(i)] = QColor(level, level, level);
    }
    colors.m_foreground = theme::text();
    colors.m_background = theme::background();
    colors.m_selection = theme::selection();
    colors.m_cursor = theme::accent();
    return colors;
}

QColor TerminalColors::resolve(const TerminalColor& color) const
{
    if (color.kind() == TerminalColor::Kind::indexed)
        return m_palette[color.index()];
    return QColor::fromRgb(QRgb(0xff000000u | color.rgbValue()));
}

} // namespace orwick
