#include "terminal/Scrollback.h"

namespace orwick {

void Scrollback::push(const TerminalCell* cells, int count, bool wrapped)
{
    while (!wrapped && count > 0 && cells[count - 1].isPlainBlank())
        --count;
    if (m_capacity <= 0)
        return;
    TerminalLine* slot;
    if (m_count < m_lines.size()) { // a buffer left by a popped line
        slot = &m_lines[(m_start + m_count) % m_lines.size()];
        ++m_count;
    } else if (m_lines.size() < size_t(m_capacity)) { // still filling: the ring has not turned
        m_lines.emplace_back();
        m_wrapped.push_back(0);
        slot = &m_lines.back();
        ++m_count;
    } else {
        slot = &m_lines[m_start]; // the oldest goes; its buffer is reused
        m_start = (m_start + 1) % m_lines.size();
    }
    slot->assign(cells, cells + count);
    m_wrapped[size_t(slot - m_lines.data())] = wrapped;
    ++m_pushed;
}

bool Scrollback::popNewest(TerminalLine& into)
{
    if (m_count == 0)
        return false;
    into = at(size() - 1);
    --m_count;
    --m_pushed;
    return true;
}

void Scrollback::clear()
{
    m_lines.clear();
    m_wrapped.clear();
    m_start = 0;
    m_pushed -= int64_t(m_count);
    m_count = 0;
}

} // namespace orwick
