#include "terminal/Scrollback.h"

#include <gtest/gtest.h>

namespace orwick {
namespace {

TerminalLine lineOf(char32_t c, int blanks = 0)
{
    TerminalLine line(1);
    line[0].characters[0] = c;
    line.resize(size_t(1 + blanks));
    return line;
}

TEST(ScrollbackTest, AFullScrollbackDropsTheOldestAndKeepsNumbers)
{
    Scrollback scrollback(3);
    for (char32_t c : {U'a', U'b', U'c', U'd', U'e'}) {
        const TerminalLine line = lineOf(c);
        scrollback.push(line.data(), int(line.size()));
    }
    ASSERT_EQ(scrollback.size(), 3);
    EXPECT_EQ(scrollback.firstNumber(), 2);
    EXPECT_EQ(scrollback.endNumber(), 5);
    EXPECT_EQ(scrollback.at(0)[0].characters[0], U'c');
    EXPECT_EQ(scrollback.newest()[0].characters[0], U'e');
}

TEST(ScrollbackTest, TrailingBlanksAreNotKeptAndPoppedLinesComeBack)
{
    Scrollback scrollback(3);
    const TerminalLine line = lineOf(U'x', 50);
    scrollback.push(line.data(), int(line.size()));
    EXPECT_EQ(scrollback.newest().size(), 1u);
    TerminalLine back;
    ASSERT_TRUE(scrollback.popNewest(back));
    EXPECT_EQ(back[0].characters[0], U'x');
    EXPECT_TRUE(scrollback.isEmpty());
    EXPECT_FALSE(scrollback.popNewest(back));
    for (char32_t c : {U'a', U'b', U'c', U'd'}) {
        const TerminalLine next = lineOf(c);
        scrollback.push(next.data(), 1);
    }
    EXPECT_EQ(scrollback.at(0)[0].characters[0], U'b');
    EXPECT_EQ(scrollback.newest()[0].characters[0], U'd');
}

} // namespace
} // namespace orwick
