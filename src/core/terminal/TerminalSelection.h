#pragma once
// TerminalSelection: a stretch of a terminal's text chosen with the mouse, from one cell to
// another in reading order, held by line numbers (TerminalScreen's) so that it stays on the same
// text while more output arrives. text() gives what Copy puts on the clipboard.

#include "terminal/TerminalScreen.h"

#include <QString>

namespace orwick {

struct TerminalPoint {
    int64_t line = 0;
    int col = 0;
    auto operator<=>(const TerminalPoint&) const = default;
};

class TerminalSelection {
public:
    bool isEmpty() const { return m_anchor == m_caret; }
    void start(TerminalPoint point) { m_anchor = m_caret = point; }
    void extend(TerminalPoint point) { m_caret = point; }
    void clear() { m_anchor = m_caret = {}; }
    TerminalPoint first() const { return std::min(m_anchor, m_caret); }
    TerminalPoint last() const { return std::max(m_anchor, m_caret); } // one past the last cell
    bool contains(int64_t line, int col) const;

    // The selected text: each line's trailing blanks dropped, lines joined by "\n", the second
    // half of a wide character not repeated; a line the terminal wrapped runs on into the next
    // without a break, its blanks kept. Lines no longer kept give nothing.
    QString text(const TerminalScreen& screen) const;

private:
    TerminalPoint m_anchor, m_caret;
};

} // namespace orwick
