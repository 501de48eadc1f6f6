#include "base/FuzzyMatch.h"

#include "base/TextMatch.h"

#include <QChar>
#include <algorithm>
#include <climits>
#include <string_view>
#include <unordered_map>

namespace orwick {
namespace {

inline bool isSeparator(char16_t c)
{
    return c == u'/' || c == u' ' || c == u'-' || c == u'_' || c == u'.';
}

inline bool isUpper(char32_t c)
{
    if (c < 128)
        return c >= U'A' && c <= U'Z';
    return QChar::isUpper(c);
}

inline bool isLower(char32_t c)
{
    if (c < 128)
        return c >= U'a' && c <= U'z';
    return QChar::isLower(c);
}

// The folded form of one character beyond ASCII, cached per thread: names hold few distinct
// ones. Folding character by character equals folding the text (marks are dropped, so their
// canonical order does not matter).
std::u16string_view foldedCharacter(char32_t c)
{
    thread_local std::unordered_map<char32_t, std::u16string> cache;
    auto found = cache.find(c);
    if (found == cache.end()) {
        const QString folded = foldForSearch(QString::fromUcs4(&c, 1));
        found = cache.emplace(c, std::u16string(reinterpret_cast<const char16_t*>(folded.utf16()), size_t(folded.size())))
                    .first;
    }
    return found->second;
}

struct Prepared {
    int componentStart = 0;
    int length = 0;
};

// Appends the folded text of `text` to `chars`, with its word starts to `wordStarts`. A word
// starts at the beginning, after a separator, or where the text's own case turns from lower to
// upper; a character that folds to several keeps the start on its first.
Prepared prepareInto(QStringView text, std::vector<char16_t>& chars, std::vector<std::uint8_t>& wordStarts)
{
    const size_t base = chars.size();
    const char16_t* source = text.utf16();
    const qsizetype size = text.size();
    Prepared p;
    char16_t previousFolded = 0;
    char32_t previousOriginal = 0;

    // ASCII, the common case: one unit each, written in place.
    chars.resize(base + size_t(size));
    wordStarts.resize(base + size_t(size));
    char16_t* out = chars.data() + base;
    std::uint8_t* starts = wordStarts.data() + base;
    qsizetype i = 0;
    for (; i < size && source[i] < 128; ++i) {
        const char16_t c = source[i];
        const char16_t folded = (c >= u'A' && c <= u'Z') ? char16_t(c + 32) : c;
        out[i] = folded;
        starts[i] = i == 0 || isSeparator(previousFolded) || (isUpper(c) && isLower(previousOriginal));
        if (c == u'/')
            p.componentStart = int(i + 1);
        previousFolded = folded;
        previousOriginal = c;
    }
    p.length = int(i);
    chars.resize(base + size_t(i));
    wordStarts.resize(base + size_t(i));

    for (; i < size; ++i) {
        char32_t c = source[i];
        ++p.length;
        char16_t folded[1];
        std::u16string_view units;
        if (c < 128) {
            folded[0] = (c >= U'A' && c <= U'Z') ? char16_t(c + 32) : char16_t(c);
            units = std::u16string_view(folded, 1);
        } else {
            if (QChar::isHighSurrogate(c) && i + 1 < size && QChar::isLowSurrogate(source[i + 1]))
                c = QChar::surrogateToUcs4(char16_t(c), source[++i]);
            if (QChar::isSurrogate(c)) { // a lone half stands for itself
                folded[0] = char16_t(c);
                units = std::u16string_view(folded, 1);
            } else {
                units = foldedCharacter(c);
            }
        }
        if (units.empty())
            continue; // a combining mark
        const bool start = chars.size() == base || isSeparator(previousFolded)
            || (isUpper(c) && isLower(previousOriginal));
        for (size_t k = 0; k < units.size(); ++k) {
            chars.push_back(units[k]);
            wordStarts.push_back(k == 0 && start);
            if (units[k] == u'/')
                p.componentStart = int(chars.size() - base);
        }
        previousFolded = units.back();
        previousOriginal = c;
    }
    return p;
}

// Per-thread rows of the dynamic programme, grown to the longest candidate seen.
struct Rows {
    std::vector<int> matchPrev, bestPrev, matchCur, bestCur;
    std::vector<int> low, high;
    void fit(size_t size, size_t queryLength)
    {
        if (matchPrev.size() < size) {
            for (auto* row : {&matchPrev, &bestPrev, &matchCur, &bestCur})
                row->resize(size);
        }
        if (low.size() < queryLength) {
            low.resize(queryLength);
            high.resize(queryLength);
        }
    }
};

constexpr int kNone = INT_MIN / 4; // no alignment ends here; adding scores keeps it hopeless

} // namespace

FuzzyQuery::FuzzyQuery(QStringView text)
{
    std::vector<char16_t> chars;
    std::vector<std::uint8_t> starts;
    prepareInto(text, chars, starts);
    m_chars.reserve(chars.size());
    for (char16_t c : chars) {
        if (QChar::isSpace(c))
            continue;
        m_ascii = m_ascii && c < 128;
        m_chars.push_back(c);
    }
}

FuzzyCandidate FuzzyCandidateBuffer::prepare(QStringView text)
{
    m_chars.clear(); // keeps the capacity
    m_wordStarts.clear();
    const Prepared p = prepareInto(text, m_chars, m_wordStarts);
    return {m_chars.data(), m_wordStarts.data(), int(m_chars.size()), p.componentStart, p.length};
}

FuzzyCandidate FuzzyCandidateBuffer::prepareAscii(QByteArrayView text)
{
    const size_t size = size_t(text.size());
    if (m_chars.size() < size) {
        m_chars.resize(size);
        m_wordStarts.resize(size);
    }
    char16_t* out = m_chars.data();
    std::uint8_t* starts = m_wordStarts.data();
    const char* source = text.data();
    int componentStart = 0;
    char previous = 0;
    for (size_t i = 0; i < size; ++i) {
        const char c = source[i];
        const bool upper = c >= 'A' && c <= 'Z';
        out[i] = char16_t(upper ? c + 32 : c);
        starts[i] = i == 0 || isSeparator(char16_t(previous)) || (upper && previous >= 'a' && previous <= 'z');
        if (c == '/')
            componentStart = int(i + 1);
        previous = c;
    }
    return {out, starts, int(size), componentStart, int(size)};
}

void FuzzyCandidateList::reserve(qsizetype count, qsizetype totalUnits)
{
    m_chars.reserve(size_t(totalUnits));
    m_wordStarts.reserve(size_t(totalUnits));
    m_offsets.reserve(size_t(count) + 1);
    m_componentStarts.reserve(size_t(count));
    m_lengths.reserve(size_t(count));
}

void FuzzyCandidateList::append(QStringView text)
{
    const Prepared p = prepareInto(text, m_chars, m_wordStarts);
    m_offsets.push_back(int(m_chars.size()));
    m_componentStarts.push_back(p.componentStart);
    m_lengths.push_back(p.length);
}

FuzzyCandidate FuzzyCandidateList::operator[](qsizetype index) const
{
    const int begin = m_offsets[size_t(index)];
    const int end = m_offsets[size_t(index) + 1];
    return {m_chars.data() + begin, m_wordStarts.data() + begin, end - begin, m_componentStarts[size_t(index)],
            m_lengths[size_t(index)]};
}

namespace FuzzyMatch {

std::optional<int> score(const FuzzyQuery& query, const FuzzyCandidate& candidate)
{
    const std::u16string& q = query.chars();
    const int m = int(q.size());
    if (m == 0)
        return 0;
    const int n = candidate.size;
    if (m > n)
        return std::nullopt;
    const char16_t* chars = candidate.chars;

    thread_local Rows rows;
    rows.fit(size_t(n), size_t(m));
    int* low = rows.low.data();
    int* high = rows.high.data();

    // Leftmost walk: where each query character can first lie (and whether the query matches).
    for (int k = 0, at = 0; k < m; ++k, ++at) {
        while (at < n && chars[at] != q[size_t(k)])
            ++at;
        if (at == n)
            return std::nullopt;
        low[k] = at;
    }
    // Rightmost walk: where each can last lie and still leave room for the rest.
    for (int k = m - 1, at = n - 1; k >= 0; --k, --at) {
        while (chars[at] != q[size_t(k)])
            --at;
        high[k] = at;
    }

    const int componentStart = candidate.componentStart;
    const auto bonus = [&](int k, int j) {
        int points = candidate.wordStarts[j] ? fuzzy::kWordStartBonus : 0;
        if (j >= componentStart)
            points += fuzzy::kLastComponentBonus;
        if (k == 0 && j == componentStart)
            points += fuzzy::kComponentStartBonus;
        return points;
    };

    // One way only (the walks met): score it as it lies.
    bool unique = true;
    for (int k = 0; k < m && unique; ++k)
        unique = low[k] == high[k];
    if (unique) {
        int sum = 0;
        for (int k = 0; k < m; ++k)
            sum += (k > 0 && low[k] == low[k - 1] + 1 ? fuzzy::kConsecutive : fuzzy::kMatch) + bonus(k, low[k]);
        return sum * fuzzy::kScale - candidate.length;
    }

    // match[j]: the best sum with query character k matched exactly at j;
    // best[j]:  the best sum with query character k matched at or before j.
    int* matchPrev = rows.matchPrev.data();
    int* bestPrev = rows.bestPrev.data();
    int* matchCur = rows.matchCur.data();
    int* bestCur = rows.bestCur.data();
    int running = kNone;
    for (int j = low[0]; j <= high[0]; ++j) {
        matchCur[j] = chars[j] == q[0] ? fuzzy::kMatch + bonus(0, j) : kNone;
        running = std::max(running, matchCur[j]);
        bestCur[j] = running;
    }
    for (int k = 1; k < m; ++k) {
        std::swap(matchPrev, matchCur);
        std::swap(bestPrev, bestCur);
        const int prevHigh = high[k - 1];
        const char16_t wanted = q[size_t(k)];
        running = kNone;
        for (int j = low[k]; j <= high[k]; ++j) {
            int here = kNone;
            if (chars[j] == wanted) {
                const int before = j - 1; // never left of low[k - 1]
                const int scattered = bestPrev[std::min(before, prevHigh)] + fuzzy::kMatch;
                const int consecutive = before <= prevHigh ? matchPrev[before] + fuzzy::kConsecutive : kNone;
                here = std::max(scattered, consecutive) + bonus(k, j);
            }
            matchCur[j] = here;
            running = std::max(running, here);
            bestCur[j] = running;
        }
    }
    return bestCur[high[m - 1]] * fuzzy::kScale - candidate.length;
}

std::optional<int> score(QStringView query, QStringView candidate)
{
    FuzzyCandidateBuffer buffer;
    return score(FuzzyQuery(query), buffer.prepare(candidate));
}

} // namespace FuzzyMatch
} // namespace orwick
