#include "terminal/CsiGuard.h"
#include "terminal/TerminalScreen.h"

#include <gtest/gtest.h>

namespace orwick {
namespace {

QByteArray filtered(CsiGuard& guard, QByteArrayView bytes)
{
    QByteArray scratch;
    return guard.filter(bytes, scratch).toByteArray();
}

QByteArray manyParameters(int count, char separator = ';')
{
    QByteArray out = "\x1b[";
    for (int i = 0; i < count; ++i)
        out += (i ? QByteArray(1, separator) : QByteArray()) + QByteArray::number(i + 1);
    return out + "m";
}

TEST(CsiGuardTest, ParametersPastTheSixteenthAreDropped)
{
    CsiGuard guard;
    EXPECT_EQ(filtered(guard, "a" + manyParameters(20) + "b"), "a" + manyParameters(16) + "b");
    EXPECT_EQ(filtered(guard, manyParameters(16)), manyParameters(16));
    EXPECT_EQ(filtered(guard, "plain text\n"), "plain text\n");
}

TEST(CsiGuardTest, ASequenceSplitAcrossReadsIsStillCounted)
{
    CsiGuard guard;
    const QByteArray whole = manyParameters(40, ':');
    QByteArray out;
    for (char c : whole)
        out += filtered(guard, QByteArrayView(&c, 1));
    EXPECT_EQ(out, manyParameters(16, ':'));
}

// The emulation itself survives what used to crash it, and what follows still shows.
TEST(CsiGuardTest, TheScreenTakesAFloodOfParameters)
{
    TerminalScreen screen(24, 80, {});
    for (int i = 0; i < 50; ++i)
        screen.feed(manyParameters(300));
    screen.feed("after");
    EXPECT_TRUE(screen.screenText().startsWith(QStringLiteral("after")));
}

} // namespace
} // namespace orwick
