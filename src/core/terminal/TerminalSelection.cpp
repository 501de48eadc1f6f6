#include "terminal/TerminalSelection.h"

#include <QStringList>

namespace orwick {

QString lineText(const TerminalLine& line, int from, int to)
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
    while (text.endsWith(QLatin1Char(' ')))
        text.chop(1);
    return text;
}

bool TerminalSelection::contains(int64_t line, int col) const
{
    const TerminalPoint point{line, col};
    return !isEmpty() && first() <= point && point < last();
}

QString TerminalSelection::text(const TerminalScreen& screen) const
{
    if (isEmpty())
        return {};
    const TerminalPoint from = first(), to = last();
    QStringList lines;
    for (int64_t number = std::max(from.line, screen.firstLine()); number <= to.line && number < screen.endLine(); ++number) {
        const TerminalLine line = screen.lineAt(number);
        const int start = number == from.line ? from.col : 0;
        const int end = number == to.line ? to.col : -1;
        lines.append(lineText(line, start, end));
    }
    return lines.join(QLatin1Char('\n'));
}

} // namespace orwick
