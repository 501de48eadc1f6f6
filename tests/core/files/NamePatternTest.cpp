#include "files/NamePattern.h"

#include <gtest/gtest.h>

using namespace orwick;

namespace {
bool takes(const char* pattern, const char* name) { return NamePattern(QString::fromUtf8(pattern)).matches(QString::fromUtf8(name)); }
} // namespace

TEST(NamePattern, StarAndQuestionMarkTakeRunsAndSingleCharacters)
{
    EXPECT_TRUE(takes("*.txt", "notes.txt"));
    EXPECT_TRUE(takes("*.txt", ".txt"));
    EXPECT_FALSE(takes("*.txt", "notes.txt.bak"));
    EXPECT_TRUE(takes("IMG_????.jpg", "IMG_0042.jpg"));
    EXPECT_FALSE(takes("IMG_????.jpg", "IMG_42.jpg"));
    EXPECT_TRUE(takes("a*b*c", "aXXbYYbZc"));
    EXPECT_FALSE(takes("a*b*c", "aXXbYY"));
    EXPECT_TRUE(takes("*", "anything at all"));
}

TEST(NamePattern, SetsRangesAndNegation)
{
    EXPECT_TRUE(takes("[ab]*", "alpha"));
    EXPECT_TRUE(takes("[ab]*", "beta"));
    EXPECT_FALSE(takes("[ab]*", "gamma"));
    EXPECT_TRUE(takes("file[0-9].log", "file7.log"));
    EXPECT_FALSE(takes("file[0-9].log", "fileX.log"));
    EXPECT_TRUE(takes("[!.]*", "visible"));
    EXPECT_FALSE(takes("[!.]*", ".hidden"));
    EXPECT_TRUE(takes("[^.]*", "visible"));
}

TEST(NamePattern, PatternCharactersCanBeTakenLiterally)
{
    EXPECT_TRUE(takes("\\*star\\*", "*star*"));
    EXPECT_FALSE(takes("\\*star\\*", "xstarx"));
    EXPECT_TRUE(takes("what\\?", "what?"));
    EXPECT_FALSE(takes("what\\?", "whatX"));
    // An unclosed "[" is a plain character.
    EXPECT_TRUE(takes("[draft*", "[draft] plan.md"));
    EXPECT_FALSE(takes("[draft*", "draft plan.md"));
}

TEST(NamePattern, CaseAndAccentsFoldAsSearchFoldsNames)
{
    EXPECT_TRUE(takes("*.JPG", "photo.jpg"));
    EXPECT_TRUE(takes("*.jpg", "PHOTO.JPG"));
    EXPECT_TRUE(takes("resume*", "R\xc3\xa9sum\xc3\xa9 final.pdf"));
}

TEST(NamePattern, SeveralPatternsAndExclusions)
{
    EXPECT_TRUE(takes("*.jpg; *.png", "a.png"));
    EXPECT_TRUE(takes("*.jpg; *.png", "a.jpg"));
    EXPECT_FALSE(takes("*.jpg; *.png", "a.gif"));
    EXPECT_TRUE(takes("*.txt | draft*", "final.txt"));
    EXPECT_FALSE(takes("*.txt | draft*", "draft 2.txt"));
    EXPECT_FALSE(takes("*.txt | draft*; *old*", "notes old.txt"));
}

TEST(NamePattern, TextWithoutWildcardsTakesNamesThatContainIt)
{
    EXPECT_TRUE(takes("report", "2024 Report.pdf"));
    EXPECT_FALSE(takes("report", "summary.pdf"));
}

TEST(NamePattern, BlankOrExclusionOnlyTakesNothing)
{
    EXPECT_TRUE(NamePattern(u"").isEmpty());
    EXPECT_TRUE(NamePattern(u" ; ").isEmpty());
    EXPECT_TRUE(NamePattern(u"| *.txt").isEmpty());
    EXPECT_FALSE(NamePattern(u"| *.txt").matches(u"a.md"));
    EXPECT_FALSE(NamePattern(u"*.md").isEmpty());
}

TEST(NamePattern, LongNamesAndManyStarsStayLinearEnough)
{
    // The one-star backtracking walk keeps a pathological pattern cheap.
    const QString name = QString(5000, u'a') + u'b';
    EXPECT_TRUE(NamePattern(u"*a*a*a*a*a*a*a*b").matches(name));
    EXPECT_FALSE(NamePattern(u"*a*a*a*a*a*a*a*c").matches(name));
}
