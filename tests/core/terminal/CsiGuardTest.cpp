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

// Control characters and bytes past ASCII between ESC and "[" leave it a control sequence,
// in the guard as in the emulation (a case the fuzzer found).
TEST(CsiGuardTest, BytesBetweenEscapeAndBracketDoNotHideTheSequence)
{
    CsiGuard guard;
    const QByteArray noise("\x1b\xff\xff\x16");
    EXPECT_EQ(filtered(guard, noise + manyParameters(20).mid(1)), noise + manyParameters(16).mid(1));
    TerminalScreen screen(24, 80, {});
    for (int i = 0; i < 50; ++i)
        screen.feed(noise + manyParameters(300).mid(1));
    screen.feed("\x1b[Hafter");
    EXPECT_TRUE(screen.screenText().startsWith(QStringLiteral("after")));
}

// REP repeats the last character shown; the emulation never sees it (it loops on a character
// without width), and with nothing shown yet nothing is repeated.
TEST(CsiGuardTest, RepeatIsDoneByTheGuard)
{
    CsiGuard guard;
    EXPECT_EQ(filtered(guard, "\x1b[5b"), "\x1b[5\x18");
    EXPECT_EQ(filtered(guard, "ab\x1b[3b"), "ab\x1b[3\x18" "bbb");
    EXPECT_EQ(filtered(guard, "\xe2\x94\x80\x1b[2b"), "\xe2\x94\x80\x1b[2\x18\xe2\x94\x80\xe2\x94\x80");
    EXPECT_EQ(filtered(guard, "x\xcc\x81\x1b[b"), "x\xcc\x81\x1b[\x18x"); // a mark has no width of its own
    EXPECT_EQ(filtered(guard, "\x1b[?5b"), "\x1b[?5\x18");                    // cancelled, not repeated
    EXPECT_EQ(filtered(guard, "y\x1b[999999999b").size(), 1 + 11 + 1 + CsiGuard::kMaxRepeat);

    for (const QByteArray& output : {QByteArray("\x1b[b"), QByteArray("\x07\x1b[2b"), QByteArray("\xcc\x81\x1b[b"),
                                      QByteArray("\xe2\x80\x8b\x1b[b"), QByteArray("\x1b[5;1H\xcc\x81\x1b[3b"),
                                      QByteArray("\x1b[;;;;;;;;;;;;;;;;?b")}) {
        TerminalScreen screen(4, 20, {});
        screen.feed(output);
        screen.feed("\x1b[Hafter");
        EXPECT_TRUE(screen.screenText().startsWith(QStringLiteral("after"))) << output.toHex().toStdString();
    }
    TerminalScreen screen(4, 20, {});
    screen.feed("-\x1b[4b|");
    EXPECT_TRUE(screen.screenText().startsWith(QStringLiteral("-----|"))) << screen.screenText().toStdString();
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

namespace orwick {
namespace {

// Wide characters scrolled into the history and brought back into a narrower, taller screen
// (a case the fuzzer found: libvterm read a continuation it had no character for).
TEST(TerminalScreenTest, AResizeBringsBackWideCharactersWhole)
{
    const QByteArray input = QByteArray::fromBase64(
        "AxtbMTsyOzM7NDs1OzY7Nzs4O6CgoKCg5ubm5ubm5ubm5ubm5ubm5ubmoKCgoKCgoOOgoKCgoKCgoKCgoI2goKCgoKADG1sxOzI7Mzs0OzU7Njs3OziTOzk7MTA7"
        "AAAAAAAAAAAAAAAAAAAAAAAAADExOzEyOzQxOzEzOzE1OzE2OzE3//+goKCgoKCgoKCg/zCgOw==");
    TerminalScreen screen(6, 12, {}, 20);
    for (qsizetype at = 1; at < input.size(); at += 4)
        screen.feed(QByteArrayView(input).sliced(at, std::min<qsizetype>(4, input.size() - at)));
    screen.resize(3, 30);
    screen.resize(9, 5);
    screen.sendText(QStringLiteral("x"));
    EXPECT_EQ(screen.rows(), 9);
    for (char32_t c : {U'中', U'文'}) {
        const QByteArray wide = QString::fromUcs4(&c, 1).toUtf8();
        for (int i = 0; i < 40; ++i)
            screen.feed(wide);
    }
    screen.resize(2, 7);
    screen.resize(12, 3);
    screen.resize(4, 9);
    EXPECT_EQ(screen.cols(), 9);
}

} // namespace
} // namespace orwick
