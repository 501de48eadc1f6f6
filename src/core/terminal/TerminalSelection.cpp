#include "terminal/TerminalSelection.h"

#include "terminal/LineText.h"

#include <QStringList>

namespace orwick {

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
