#include "base/FuzzyMatch.h"

#include <QString>
#include <QStringList>
#include <climits>
#include <functional>
#include <gtest/gtest.h>
#include <random>

using namespace orwick;

namespace {

std::optional<int> score(const QString& query, const QString& candidate) { return FuzzyMatch::score(query, candidate); }

// True when `better` scores strictly higher than `worse` for `query` (both must match).
::testing::AssertionResult prefers(const QString& query, const QString& better, const QString& worse)
{
    const auto b = score(query, better), w = score(query, worse);
    if (!b || !w)
        return ::testing::AssertionFailure() << "no match: " << (b ? worse : better).toStdString();
    if (*b <= *w)
        return ::testing::AssertionFailure() << better.toStdString() << " " << *b << " <= " << worse.toStdString() << " " << *w;
    return ::testing::AssertionSuccess();
}

} // namespace

TEST(FuzzyMatch, MatchesCharactersInOrderIgnoringCase)
{
    EXPECT_TRUE(score("FMC", "src/fuzzymatch.cpp"));
    EXPECT_TRUE(score("abc", "xAxBxC"));
    EXPECT_FALSE(score("cba", "abc"));
    EXPECT_FALSE(score("aa", "a"));
    EXPECT_FALSE(score("z", "abc"));
    // A query longer than the candidate never matches.
    EXPECT_FALSE(score("abcdefgh", "abcdefg"));
    EXPECT_FALSE(score("aaaa", "aaa"));
}

TEST(FuzzyMatch, PrefersWordStartsConsecutiveLettersAndShorterNames)
{
    EXPECT_TRUE(prefers("b", "foo_bar", "foobar_"));
    EXPECT_TRUE(prefers("b", "foo-bar", "fooxbar"));
    EXPECT_TRUE(prefers("b", "foo.bar", "fooxbar"));
    EXPECT_TRUE(prefers("b", "foo bar", "fooxbar"));
    // A lower-to-upper change in the candidate's own case starts a word too.
    EXPECT_TRUE(prefers("m", "fuzzyMatch", "fuzzymatch"));
    EXPECT_FALSE(score("m", "FUZZYMATCH") > score("m", "fuzzymatch"));
    EXPECT_TRUE(prefers("abc", "xabcx", "xaxbxc"));
    // Of two equally good candidates the shorter wins.
    EXPECT_TRUE(prefers("abc", "abc", "abcdef"));
    EXPECT_TRUE(prefers("abc", "abc.txt", "abc.text"));
}

TEST(FuzzyMatch, PrefersTheLastPathComponent)
{
    EXPECT_TRUE(prefers("read", "docs/readme", "read/docs"));
    // The first query letter right at the component start earns the most; the same letters
    // matched earlier in the parent path, not at the start, score lower.
    EXPECT_TRUE(prefers("main", "src/main.cpp", "domain/x.cpp"));
    EXPECT_TRUE(prefers("m", "a/m", "m/a"));
    // The best place counts, not the first: "d" in "d/d" is scored at the component start.
    EXPECT_EQ(score("d", "d/d"), score("d", "x/d"));
}

TEST(FuzzyMatch, ScoresTheBestAlignmentNotTheFirst)
{
    using namespace fuzzy;
    // The leftmost walk takes the "t" of "to"; the best alignment is "Tras" in "Trash".
    const int trash = (kMatch + kWordStartBonus + kLastComponentBonus) + 3 * (kConsecutive + kLastComponentBonus);
    EXPECT_EQ(score("tras", "Move to Trash"), trash * kScale - 13);
    EXPECT_EQ(score("tras", "Move to Trash"), score("tras", "Move xx Trash"));
    EXPECT_TRUE(prefers("tras", "Move to Trash", "Put Back restore trash"));
    // Two consecutive letters later beat a word start followed by a scattered letter.
    EXPECT_EQ(score("ab", "x_a_xab"), score("ab", "x_x_xab"));
}

namespace {

// Every alignment of `query` in `candidate`, tried one by one: the definition the scorer must meet.
std::optional<int> bruteForce(const QString& query, const QString& candidate)
{
    using namespace fuzzy;
    const QString q = query.toLower(), c = candidate.toLower();
    const int componentStart = int(candidate.lastIndexOf(u'/') + 1);
    const auto wordStart = [&](int i) {
        const QChar before = i > 0 ? candidate[i - 1] : QChar();
        return i == 0 || QStringLiteral("/ -_.").contains(before) || (candidate[i].isUpper() && before.isLower());
    };
    std::optional<int> best;
    std::vector<int> at(size_t(q.size()));
    std::function<void(int, int, int)> walk = [&](int k, int from, int sum) {
        if (k == q.size()) {
            best = std::max(best.value_or(INT_MIN), sum);
            return;
        }
        for (int j = from; j < c.size(); ++j) {
            if (c[j] != q[k])
                continue;
            int points = (k > 0 && j == at[size_t(k - 1)] + 1) ? kConsecutive : kMatch;
            points += wordStart(j) ? kWordStartBonus : 0;
            points += j >= componentStart ? kLastComponentBonus : 0;
            points += (k == 0 && j == componentStart) ? kComponentStartBonus : 0;
            at[size_t(k)] = j;
            walk(k + 1, j + 1, sum + points);
        }
    };
    walk(0, 0, 0);
    if (!best)
        return std::nullopt;
    return *best * kScale - int(candidate.size());
}

} // namespace

TEST(FuzzyMatch, EqualsTheBestOfEveryAlignment)
{
    // Small texts over a few letters and separators, so that many alignments compete.
    std::mt19937 random(5);
    const QString alphabet = QStringLiteral("abAB/_ .");
    for (int round = 0; round < 3000; ++round) {
        QString candidate, query;
        for (int i = int(random() % 12); i > 0; --i)
            candidate += alphabet[int(random() % alphabet.size())];
        for (int i = 1 + int(random() % 4); i > 0; --i)
            query += QStringLiteral("abAB")[int(random() % 4)];
        SCOPED_TRACE((query + " in " + candidate).toStdString());
        ASSERT_EQ(score(query, candidate), bruteForce(query, candidate));
    }
}

TEST(FuzzyMatch, FoldsCaseAndAccentsOnBothSides)
{
    const QString resume = QStringLiteral("résumé final.txt");
    EXPECT_TRUE(score("resume", resume));
    EXPECT_TRUE(score("RESUME", resume));
    EXPECT_TRUE(score("résumé", QStringLiteral("resume final.txt")));
    // Decomposed text (a letter and a combining accent) folds the same, and scores the same
    // but for its length.
    const QString decomposed = QStringLiteral("résumé final.txt");
    ASSERT_TRUE(score("resume", decomposed));
    EXPECT_EQ(*score("resume", decomposed) + 2, *score("resume", resume));
    // Compatibility forms: a ligature and full-width letters.
    EXPECT_TRUE(score("office", QStringLiteral("oﬃce.txt")));
    EXPECT_TRUE(score("abc", QStringLiteral("ＡＢＣ")));
    // Word starts are read in the text's own case: "Été" starts a word after "_".
    EXPECT_TRUE(prefers("e", QStringLiteral("x_Été"), QStringLiteral("xxété")));
}

TEST(FuzzyMatch, BlanksInTheQueryAreDroppedAndABlankQueryMatchesEverythingWithZero)
{
    EXPECT_EQ(score("my docs", "MyDocuments"), score("mydocs", "MyDocuments"));
    EXPECT_EQ(score(" m\ty ", "my"), score("my", "my"));
    EXPECT_EQ(score("", "anything"), 0);
    EXPECT_EQ(score("   ", "anything"), 0);
    EXPECT_EQ(score("", ""), 0);
    EXPECT_FALSE(score("a", ""));
}

TEST(FuzzyMatch, WorksBeyondAscii)
{
    EXPECT_TRUE(score("ÉTÉ", "été.txt"));
    // A name that was not valid UTF-8 shows replacement characters; the rest still matches.
    EXPECT_TRUE(score("bad", QString::fromUtf8("\xff\xfe bad.txt")));
    EXPECT_EQ(score("é", "e"), score("e", "e"));
    // A surrogate pair counts as one character for the length penalty.
    EXPECT_EQ(score("a", "a😀"), score("a", "ab"));
}

TEST(FuzzyMatch, PreparedListAndBufferAgreeWithTheOneOffScore)
{
    const QStringList names{"README.md", "src/core/commands/FuzzyMatch.cpp", "a", "", "Été", "foo bar-baz_qux.Quux"};
    FuzzyCandidateList list;
    for (const QString& name : names)
        list.append(name);
    FuzzyCandidateBuffer buffer;
    for (const QString query : {"", "r", "fm", "cmd fuzzy", "qq", "été", "zzzz"}) {
        const FuzzyQuery prepared(query);
        for (int i = 0; i < names.size(); ++i) {
            SCOPED_TRACE((query + " in " + names[i]).toStdString());
            EXPECT_EQ(FuzzyMatch::score(prepared, list[i]), score(query, names[i]));
            EXPECT_EQ(FuzzyMatch::score(prepared, buffer.prepare(names[i])), score(query, names[i]));
            const QByteArray latin = names[i].toLatin1();
            if (QString::fromLatin1(latin) == names[i] && !latin.contains('\xc9') && !latin.contains('\xe9'))
                EXPECT_EQ(FuzzyMatch::score(prepared, buffer.prepareAscii(latin)), score(query, names[i]));
        }
    }
}
