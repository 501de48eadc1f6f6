#include "base/NaturalCompare.h"

#include <QStringList>
#include <gtest/gtest.h>

using orwick::naturalCompare;

TEST(NaturalCompare, DigitRunsCompareByValue)
{
    EXPECT_LT(naturalCompare("file2", "file10"), 0);
    EXPECT_LT(naturalCompare("a9b", "a10a"), 0);
    EXPECT_LT(naturalCompare("v1.9", "v1.10"), 0);
    EXPECT_LT(naturalCompare("99999999999999999999", "100000000000000000000"), 0);
    // Equal values: fewer leading zeros first, and never equal to each other.
    EXPECT_LT(naturalCompare("1", "01"), 0);
    EXPECT_GT(naturalCompare("x01", "x1"), 0);
}

TEST(NaturalCompare, IgnoresCaseAndAccents)
{
    EXPECT_EQ(naturalCompare("README", "readme"), 0);
    EXPECT_EQ(naturalCompare("Été", "ete"), 0);
    EXPECT_LT(naturalCompare("Émile", "Fred"), 0);
    EXPECT_LT(naturalCompare("apple", "Banana"), 0);
    EXPECT_LT(naturalCompare("ab", "abc"), 0);
    EXPECT_EQ(naturalCompare("", ""), 0);
}

TEST(NaturalCompare, SortKeysOrderLikeTheComparison)
{
    const QStringList names{"", "a", "A0", "a00", "a000b", "a1", "a01", "a001", "a1b", "a2", "a10", "a9z", "a-1",
                            "a 1", "a.1", "a:1", "ab", "file2", "file10", "file010", "x99999999999999999999",
                            "x100000000000000000000", "é1", "e1", "zz", "~", "0", "00", "9"};
    auto keyOf = [](const QString& name) {
        std::u16string key;
        orwick::appendNaturalSortKey(orwick::naturalKey(name).folded, key);
        return key;
    };
    for (const QString& a : names)
        for (const QString& b : names) {
            SCOPED_TRACE((a + " vs " + b).toStdString());
            const int expected = naturalCompare(a, b);
            const int got = keyOf(a).compare(keyOf(b));
            EXPECT_EQ(expected < 0, got < 0);
            EXPECT_EQ(expected == 0, got == 0);
        }
}
