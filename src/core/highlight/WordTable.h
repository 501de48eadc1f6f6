#pragma once
// WordTable: the highlighter's word → kind lookup, built once per language and read for every
// word of a scanned text. An open-addressing table over one pool of UTF-16 units: a lookup
// never allocates, and a word longer than the longest listed one is refused before hashing.

#include <QStringView>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orwick::SyntaxHighlighter {

enum class Kind : std::uint8_t;

class WordTable {
public:
    // Adds `word` as `kind`; a word already present keeps its first kind.
    void add(QStringView word, Kind kind);

    std::optional<Kind> find(const char16_t* units, qsizetype length) const
    {
        if (length == 0 || length > m_maxLength || m_slots.empty())
            return std::nullopt;
        for (std::size_t slot = hash(units, length) & m_mask;; slot = (slot + 1) & m_mask) {
            const Slot& entry = m_slots[slot];
            if (entry.length == 0)
                return std::nullopt;
            if (entry.length == length
                && std::char_traits<char16_t>::compare(m_pool.data() + entry.offset, units, std::size_t(length)) == 0)
                return entry.kind;
        }
    }
    std::optional<Kind> find(QStringView word) const
    {
        return find(reinterpret_cast<const char16_t*>(word.utf16()), word.size());
    }

    qsizetype maxLength() const { return m_maxLength; }
    qsizetype size() const { return m_count; }

private:
    struct Slot {
        std::uint32_t offset = 0;
        std::uint16_t length = 0; // 0: empty
        Kind kind{};
    };

    static std::size_t hash(const char16_t* units, qsizetype length)
    {
        std::uint32_t value = 2166136261u;
        for (qsizetype i = 0; i < length; ++i)
            value = (value ^ units[i]) * 16777619u;
        return value ^ (value >> 15);
    }
    void grow();

    std::vector<Slot> m_slots;
    std::u16string m_pool;
    std::size_t m_mask = 0;
    qsizetype m_count = 0;
    qsizetype m_maxLength = 0;
};

} // namespace orwick::SyntaxHighlighter
