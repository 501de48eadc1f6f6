#pragma once
// TerminalColors: the pixels of a terminal's colours — the theme's 16-colour terminal palette
// (its `terminal` list for the appearance shown), the xterm 6×6×6 cube and grey ramp for 16 to
// 255, exact RGB as given, and the theme's text and background for the defaults.

#include "terminal/TerminalCell.h"

#include <QColor>
#include <array>

namespace orwick {

class TerminalColors {
public:
    // Reads the theme in use now.
    static TerminalColors fromTheme();

    QColor foreground(const TerminalColor& color) const { return color.isDefault() ? m_foreground : resolve(color); }
    QColor background(const TerminalColor& color) const { return color.isDefault() ? m_background : resolve(color); }
    QColor defaultForeground() const { return m_foreground; }
    QColor defaultBackground() const { return m_background; }
    QColor selection() const { return m_selection; }
    QColor cursor() const { return m_cursor; }

private:
    QColor resolve(const TerminalColor& color) const;
    std::array<QColor, 256> m_palette;
    QColor m_foreground, m_background, m_selection, m_cursor;
};

} // namespace orwick
