#include "terminal/TerminalSelection.h"

#include "terminal/LineText.h"


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
    QString text;
    const int64_t begin = std::max(from.line, screen.firstLine());
    for (int64_t number = begin; number <= to.line && number < screen.endLine(); ++number) {
        // A line the terminal wrapped goes on in the next one: no line break between them, and
        // its blanks at the edge are part of the text.
        if (number > begin && !screen.isWrapped(number - 1))
            text += QLatin1Char('\n');
        const bool wrapped = number < to.line && screen.isWrapped(number);
        const int start = number == from.line ? from.col : 0;
        const int end = number == to.line ? to.col : -1;
        text += lineText(screen.lineAt(number), start, end, wrapped ? TrailingBlanks::keep : TrailingBlanks::drop);
    }
    return text;
}

} // namespace orwick
