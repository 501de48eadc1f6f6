#pragma once
// FuzzyMatch: the one score of a typed query against a candidate text (a file name, a path, a
// command title). The pane filter keeps the names it scores; the palette ranks rows by it;
// `orwick-cli match` prints with it. Absent means no match.
//
// Scoring runs once per candidate on every keystroke, so both sides are prepared first: the
// query once per change (FuzzyQuery), candidates once per load (FuzzyCandidateList) or into a
// reused buffer (FuzzyCandidateBuffer). Scoring a prepared candidate never allocates.
//
// The rule: blanks are dropped from the query and both sides are folded as search folds names
// (foldForSearch: case and accents, so "resume" finds "Résumé"). The query's characters must
// appear in the candidate in order. A matched character earns a base score, more when it
// directly follows the previous match, at the start of a word, in the last path component, and
// most for the first query character at the start of that component. Of all the ways the query
// can be laid over the candidate, the best one counts (so "tras" in "Move to Trash" is scored on
// "Trash", not on the "t" of "to"); when the leftmost walk already is the best, its score is
// the result. The sum is scaled and the candidate's length (in its own characters) subtracted,
// so the shorter of two equally good candidates wins.
//
// Cost: a leftmost and a rightmost walk bound where each query character can lie; a dynamic
// programme over those windows finds the best alignment in time |query| × |window| and memory
// linear in the candidate (per-thread rows, reused).

#include <QByteArrayView>
#include <QStringView>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orwick {

namespace fuzzy {
inline constexpr int kMatch = 1;                 // any matched character
inline constexpr int kConsecutive = 11;          // instead of kMatch: directly after the previous match
inline constexpr int kWordStartBonus = 8;        // after "/", " ", "-", "_", "." or a lower→Upper change
inline constexpr int kLastComponentBonus = 3;    // after the last "/"
inline constexpr int kComponentStartBonus = 15;  // the first query character right at the last component's start
inline constexpr int kScale = 100;               // the sum's weight against the length penalty
} // namespace fuzzy

// A query prepared for scoring: folded, blanks dropped.
class FuzzyQuery {
public:
    FuzzyQuery() = default;
    explicit FuzzyQuery(QStringView text);

    // An empty or all-blank query matches every candidate with score 0.
    bool matchesEverything() const { return m_chars.empty(); }
    const std::u16string& chars() const { return m_chars; }
    // True when every folded character is ASCII (lets byte-level pre-checks be exact for ASCII
    // text; text with other characters may still fold to it).
    bool isAscii() const { return m_ascii; }

private:
    std::u16string m_chars;
    bool m_ascii = true;
};

// A view of one prepared candidate; the storage belongs to a list or buffer.
struct FuzzyCandidate {
    const char16_t* chars = nullptr;         // folded text
    const std::uint8_t* wordStarts = nullptr; // per folded unit: 1 where a word starts (read in the text's own case)
    int size = 0;                            // folded UTF-16 units
    int componentStart = 0;                  // in folded units, just after the last "/"
    int length = 0;                          // the original text's characters (surrogate pairs count once)
};

// Prepares one candidate at a time into storage it reuses (valid until the next prepare).
class FuzzyCandidateBuffer {
public:
    FuzzyCandidate prepare(QStringView text);
    // The same for text known to be ASCII, read from its bytes (a line of `orwick-cli match`, a
    // plain name of the name index): no widening first.
    FuzzyCandidate prepareAscii(QByteArrayView text);

private:
    std::vector<char16_t> m_chars;
    std::vector<std::uint8_t> m_wordStarts;
};

// Many candidates prepared once, kept in flat arrays (a folder's names).
class FuzzyCandidateList {
public:
    void reserve(qsizetype count, qsizetype totalUnits);
    void append(QStringView text);
    qsizetype size() const { return qsizetype(m_componentStarts.size()); }
    FuzzyCandidate operator[](qsizetype index) const;

private:
    std::vector<char16_t> m_chars;
    std::vector<std::uint8_t> m_wordStarts;
    std::vector<int> m_offsets{0};
    std::vector<int> m_componentStarts;
    std::vector<int> m_lengths;
};

namespace FuzzyMatch {
// The score of the best alignment of `query` in `candidate`; absent when the query's characters
// do not all appear in order. Thread-safe.
std::optional<int> score(const FuzzyQuery& query, const FuzzyCandidate& candidate);
// Convenience for a single pair (prepares both; allocates).
std::optional<int> score(QStringView query, QStringView candidate);
} // namespace FuzzyMatch

} // namespace orwick
