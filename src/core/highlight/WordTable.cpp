#include "highlight/WordTable.h"

#include "highlight/SyntaxHighlighter.h"

namespace orwick::SyntaxHighlighter {

void WordTable::add(QStringView word, Kind kind)
{
    if (word.isEmpty() || find(word))
        return;
    if (std::size_t(m_count + 1) * 2 > m_slots.size())
        grow();
    const auto* units = reinterpret_cast<const char16_t*>(word.utf16());
    std::size_t slot = hash(units, word.size()) & m_mask;
    while (m_slots[slot].length != 0)
        slot = (slot + 1) & m_mask;
    m_slots[slot] = {std::uint32_t(m_pool.size()), std::uint16_t(word.size()), kind};
    m_pool.append(units, std::size_t(word.size()));
    ++m_count;
    m_maxLength = std::max(m_maxLength, word.size());
}

// Doubles the slots (at most half full, so probes stay short) and places every word again.
void WordTable::grow()
{
    const std::vector<Slot> old = std::move(m_slots);
    m_slots.assign(std::max<std::size_t>(16, old.size() * 2), Slot{});
    m_mask = m_slots.size() - 1;
    for (const Slot& entry : old) {
        if (entry.length == 0)
            continue;
        std::size_t slot = hash(m_pool.data() + entry.offset, entry.length) & m_mask;
        while (m_slots[slot].length != 0)
            slot = (slot + 1) & m_mask;
        m_slots[slot] = entry;
    }
}

} // namespace orwick::SyntaxHighlighter
