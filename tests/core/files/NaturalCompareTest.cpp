#include "files/NaturalCompare.h"

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
