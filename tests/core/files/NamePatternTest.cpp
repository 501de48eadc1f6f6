#include "files/NamePattern.h"

#include <gtest/gtest.h>

using namespace orwick;

namespace {
bool takes(const char* pattern, const char* name) { return NamePattern(QString::fromUtf8(pattern)).matches(QString::fromUtf8(name)); }
} // namespace

TEST(NamePattern, TakesTheNamesItShould)
{
    const struct {
        const char *pattern, *name;
        bool taken;
    } rows[] = {
        // A star takes a run, a question mark one character.
        {"*.txt", "notes.txt", true}, {"*.txt", ".txt", true}, {"*.txt", "notes.txt.bak", false},
        {"IMG_????.jpg", "IMG_0042.jpg", true}, {"IMG_????.jpg", "IMG_42.jpg", false},
        {"a*b*c", "aXXbYYbZc", true}, {"a*b*c", "aXXbYY", false}, {"*", "anything at all", true},
        // Sets, ranges and negation.
        {"[ab]*", "alpha", true}, {"[ab]*", "beta", true}, {"[ab]*", "gamma", false},
        {"file[0-9].log", "file7.log", true}, {"file[0-9].log", "fileX.log", false},
        {"[!.]*", "visible", true}, {"[!.]*", ".hidden", false}, {"[^.]*", "visible", true},
        // Pattern characters taken literally; an unclosed "[" is a plain character.
        {"\\*star\\*", "*star*", true}, {"\\*star\\*", "xstarx", false},
        {"what\\?", "what?", true}, {"what\\?", "whatX", false},
        {"[draft*", "[draft] plan.md", true}, {"[draft*", "draft plan.md", false},
        // Case and accents fold as search folds names.
        {"*.JPG", "photo.jpg", true}, {"*.jpg", "PHOTO.JPG", true}, {"resume*", "R\xc3\xa9sum\xc3\xa9 final.pdf", true},
        // Several patterns and exclusions.
        {"*.jpg; *.png", "a.png", true}, {"*.jpg; *.png", "a.jpg", true}, {"*.jpg; *.png", "a.gif", false},
        {"*.txt | draft*", "final.txt", true}, {"*.txt | draft*", "draft 2.txt", false},
        {"*.txt | draft*; *old*", "notes old.txt", false},
        // Text without wildcards takes names that contain it.
        {"report", "2024 Report.pdf", true}, {"report", "summary.pdf", false},
    };
    for (const auto& row : rows)
        EXPECT_EQ(takes(row.pattern, row.name), row.taken) << row.pattern << " / " << row.name;
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
