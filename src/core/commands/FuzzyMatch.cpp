#include "commands/FuzzyMatch.h"

#include <QChar>

namespace orwick {
namespace {

// Simple (one-to-one) lower-casing, so positions in the folded text match the original's.
inline char16_t lowerUnit(char16_t c)
{
    if (c < 128)
        return (c >= u'A' && c <= u'Z') ? char16_t(c + 32) : c;
    if (QChar::isSurrogate(c))
        return c;
    return char16_t(QChar::toLower(char32_t(c)));
}

inline bool isSeparator(char16_t c)
{
    return c == u'/' || c == u' ' || c == u'-' || c == u'_' || c == u'.';
}

inline bool isUpper(char16_t c)
{
    if (c < 128)
        return c >= u'A' && c <= u'Z';
    return !QChar::isSurrogate(c) && QChar::isUpper(char32_t(c));
}

inline bool isLower(char16_t c)
{
    if (c < 128)
        return c >= u'a' && c <= u'z';
    return !QChar::isSurrogate(c) && QChar::isLower(char32_t(c));
}

struct Prepared {
    int componentStart;
    int length;
};

// Folds `text` into `chars` (sized like `text`); finds the last component and the length.
Prepared prepareInto(QStringView text, char16_t* chars)
{
    const char16_t* source = text.utf16();
    const int size = int(text.size());
    int componentStart = 0;
    int lowSurrogates = 0;
    for (int i = 0; i < size; ++i) {
        const char16_t c = source[i];
        chars[i] = lowerUnit(c);
        if (c == u'/')
            componentStart = i + 1;
        lowSurrogates += QChar::isLowSurrogate(c);
    }
    return {componentStart, size - lowSurrogates};
}

// A word starts at the beginning, after a separator, or where lower case turns to upper case.
inline bool isWordStart(const char16_t* original, int i)
{
    return i == 0 || isSeparator(original[i - 1]) || (isUpper(original[i]) && isLower(original[i - 1]));
}

} // namespace

FuzzyQuery::FuzzyQuery(QStringView text)
{
    m_chars.reserve(size_t(text.size()));
    for (QChar c : text) {
        if (c.isSpace())
            continue;
        const char16_t folded = lowerUnit(c.unicode());
        m_ascii = m_ascii && folded < 128;
        m_chars.push_back(folded);
    }
}

FuzzyCandidate FuzzyCandidateBuffer::prepare(QStringView text)
{
    const size_t size = size_t(text.size());
    if (m_chars.size() < size)
        m_chars.resize(size);
    const Prepared p = prepareInto(text, m_chars.data());
    return {m_chars.data(), text.utf16(), int(size), p.componentStart, p.length};
}

void FuzzyCandidateList::reserve(qsizetype count, qsizetype totalUnits)
{
    m_chars.reserve(size_t(totalUnits));
    m_original.reserve(size_t(totalUnits));
    m_offsets.reserve(size_t(count) + 1);
    m_componentStarts.reserve(size_t(count));
    m_lengths.reserve(size_t(count));
}

void FuzzyCandidateList::append(QStringView text)
{
    const size_t at = m_chars.size();
    m_chars.resize(at + size_t(text.size()));
    m_original.insert(m_original.end(), text.utf16(), text.utf16() + text.size());
    const Prepared p = prepareInto(text, m_chars.data() + at);
    m_offsets.push_back(int(m_chars.size()));
    m_componentStarts.push_back(p.componentStart);
    m_lengths.push_back(p.length);
}

FuzzyCandidate FuzzyCandidateList::operator[](qsizetype index) const
{
    const int begin = m_offsets[size_t(index)];
    const int end = m_offsets[size_t(index) + 1];
    return {m_chars.data() + begin, m_original.data() + begin, end - begin, m_componentStarts[size_t(index)],
            m_lengths[size_t(index)]};
}

namespace FuzzyMatch {

std::optional<int> score(const FuzzyQuery& query, const FuzzyCandidate& candidate)
{
    const std::u16string& q = query.chars();
    if (q.empty())
        return 0;
    if (q.size() > size_t(candidate.size))
        return std::nullopt;

    const char16_t* chars = candidate.chars;
    const int size = candidate.size;
    int sum = 0;
    int previous = -1;
    int position = 0;
    for (size_t k = 0; k < q.size(); ++k) {
        const char16_t wanted = q[k];
        while (position < size && chars[position] != wanted)
            ++position;
        if (position == size)
            return std::nullopt;

        int points = (previous >= 0 && position == previous + 1) ? fuzzy::kConsecutive : fuzzy::kMatch;
        if (isWordStart(candidate.original, position))
            points += fuzzy::kWordStartBonus;
        if (position >= candidate.componentStart)
            points += fuzzy::kLastComponentBonus;
        if (k == 0 && position == candidate.componentStart)
            points += fuzzy::kComponentStartBonus;
        sum += points;
        previous = position;
        ++position;
    }
    return sum * fuzzy::kScale - candidate.length;
}

std::optional<int> score(QStringView query, QStringView candidate)
{
    FuzzyCandidateBuffer buffer;
    return score(FuzzyQuery(query), buffer.prepare(candidate));
}

} // namespace FuzzyMatch
} // namespace orwick
