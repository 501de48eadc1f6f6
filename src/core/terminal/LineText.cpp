#include "terminal/LineText.h"

#include <algorithm>

namespace orwick {

QString lineText(const TerminalLine& line, int from, int to, TrailingBlanks trailing)
{
    const int end = to < 0 ? int(line.size()) : std::min(to, int(line.size()));
    QString text;
    for (int col = std::max(from, 0); col < end; ++col) {
        const TerminalCell& cell = line[size_t(col)];
        if (cell.width == 0)
            continue;
        if (cell.characters[0] == 0)
            text += QLatin1Char(' ');
        for (char32_t c : cell.characters)
            if (c)
                text += QString::fromUcs4(&c, 1);
    }
    while (trailing == TrailingBlanks::drop && text.endsWith(QLatin1Char(' ')))
        text.chop(1);
    return text;
}

} // namespace orwick
