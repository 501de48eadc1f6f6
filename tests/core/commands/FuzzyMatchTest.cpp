#include "commands/FuzzyMatch.h"

#include <QString>
#include <QStringList>
#include <gtest/gtest.h>

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
}

TEST(FuzzyMatch, ScoresEachMatchAsDescribed)
{
    using namespace fuzzy;
    // "a/bc" with "bc": b starts a word, the last component and the component itself; c follows it.
    const int b = kMatch + kWordStartBonus + kLastComponentBonus + kComponentStartBonus;
    const int c = kConsecutive + kLastComponentBonus;
    EXPECT_EQ(score("bc", "a/bc"), (b + c) * kScale - 4);
    // "xbyc": b and c are plain, scattered matches in the only component.
    EXPECT_EQ(score("bc", "xbyc"), (2 * (kMatch + kLastComponentBonus)) * kScale - 4);
}

TEST(FuzzyMatch, PrefersTheStartOfAWord)
{
    EXPECT_TRUE(prefers("b", "foo_bar", "foobar_"));
    EXPECT_TRUE(prefers("b", "foo-bar", "fooxbar"));
    EXPECT_TRUE(prefers("b", "foo.bar", "fooxbar"));
    EXPECT_TRUE(prefers("b", "foo bar", "fooxbar"));
    // A lower-to-upper change in the candidate's own case starts a word too.
    EXPECT_TRUE(prefers("m", "fuzzyMatch", "fuzzymatch"));
    EXPECT_FALSE(score("m", "FUZZYMATCH") > score("m", "fuzzymatch"));
}

TEST(FuzzyMatch, PrefersConsecutiveMatches)
{
    EXPECT_TRUE(prefers("abc", "xabcx", "xaxbxc"));
}

TEST(FuzzyMatch, PrefersTheLastPathComponent)
{
    EXPECT_TRUE(prefers("read", "docs/readme", "read/docs"));
    // The first query letter right at the component start earns the most; the same letters
    // matched earlier in the parent path, not at the start, score lower.
    EXPECT_TRUE(prefers("main", "src/main.cpp", "domain/x.cpp"));
    EXPECT_TRUE(prefers("m", "a/m", "m/a"));
    // Greedy and leftmost: the match is not moved to a better later place.
    const auto greedy = score("d", "d/d"), single = score("d", "x/d");
    ASSERT_TRUE(greedy && single);
    EXPECT_LT(*greedy, *single);
}

TEST(FuzzyMatch, ShorterOfTwoEquallyGoodCandidatesWins)
{
    EXPECT_TRUE(prefers("abc", "abc", "abcdef"));
    EXPECT_TRUE(prefers("abc", "abc.txt", "abc.text"));
}

TEST(FuzzyMatch, BlanksInTheQueryAreDropped)
{
    EXPECT_EQ(score("my docs", "MyDocuments"), score("mydocs", "MyDocuments"));
    EXPECT_EQ(score(" m\ty ", "my"), score("my", "my"));
}

TEST(FuzzyMatch, EmptyOrBlankQueryMatchesEverythingWithZero)
{
    EXPECT_EQ(score("", "anything"), 0);
    EXPECT_EQ(score("   ", "anything"), 0);
    EXPECT_EQ(score("", ""), 0);
    EXPECT_FALSE(score("a", ""));
}

TEST(FuzzyMatch, QueryLongerThanCandidateNeverMatches)
{
    EXPECT_FALSE(score("abcdefgh", "abcdefg"));
    EXPECT_FALSE(score("aaaa", "aaa"));
}

TEST(FuzzyMatch, WorksBeyondAscii)
{
    EXPECT_TRUE(score("ÉTÉ", "été.txt"));
    // A name that was not valid UTF-8 shows replacement characters; the rest still matches.
    EXPECT_TRUE(score("bad", QString::fromUtf8("\xff\xfe bad.txt")));
    EXPECT_FALSE(score("é", "e"));
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
        }
    }
}
