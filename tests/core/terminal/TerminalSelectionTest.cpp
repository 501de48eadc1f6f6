// Copying from the terminal: a line the terminal wrapped at the right edge copies as one line, a
// line the program ended copies with its line break — on the screen and in the history, for a
// real program on a real pty, a line of exactly the screen's width included.

#include "TerminalRun.h"

#include "terminal/TerminalSelection.h"

#include <gtest/gtest.h>

namespace orwick {
namespace {

using test::shell;
using test::waitFinished;

// The number of the first kept line whose text starts with `start`; -1 when there is none.
int64_t lineStarting(const TerminalScreen& screen, const QString& start)
{
    for (int64_t n = screen.firstLine(); n < screen.endLine(); ++n)
        if (lineText(screen.lineAt(n)).startsWith(start))
            return n;
    return -1;
}

QString copied(const TerminalScreen& screen, TerminalPoint from, TerminalPoint to)
{
    TerminalSelection selection;
    selection.start(from);
    selection.extend(to);
    return selection.text(screen);
}

TEST(TerminalSelectionTest, AWrappedLineCopiesAsOneAndALineBreakStays)
{
    // 20 columns: the first line wraps twice, the second fills the row exactly and then ends,
    // the third wraps right after a blank at the edge.
    auto session = shell("printf '%s\\n' 0123456789abcdefghij0123456789ABCDEFGHIJ01234 exactlytwentychars!! "
                         "'aaaaaaaaaaaaaaaaaaa bbb' last; sleep 0.1",
                         4, 20);
    ASSERT_TRUE(waitFinished(*session));
    const TerminalScreen& screen = session->screen();
    const int64_t first = lineStarting(screen, "0123456789abcdefghij");
    const int64_t last = lineStarting(screen, "last");
    ASSERT_GE(first, 0) << test::allLines(screen).join(u'|').toStdString();
    ASSERT_GE(last, 0);
    EXPECT_LT(first, screen.screenTopLine()) << "the long line has gone into the history";
    EXPECT_TRUE(screen.isWrapped(first));
    EXPECT_FALSE(screen.isWrapped(lineStarting(screen, "exactlytwenty"))) << "it ended with a line feed at the edge";

    EXPECT_EQ(copied(screen, {first, 0}, {last, 4}),
              QStringLiteral("0123456789abcdefghij0123456789ABCDEFGHIJ01234\nexactlytwentychars!!\naaaaaaaaaaaaaaaaaaa bbb\nlast"));
    // From the middle of a wrapped line into its next row.
    EXPECT_EQ(copied(screen, {first, 15}, {first + 1, 5}), QStringLiteral("fghij01234"));
}

TEST(TerminalSelectionTest, AControlSequenceSplitAcrossReadsIsNotTakenForAWrap)
{
    TerminalScreen screen(6, 10, {});
    screen.feed("abc\x1b[");
    screen.feed("2Bdef\r\n"); // the cursor goes down two rows: a move, not a wrap
    EXPECT_FALSE(screen.isWrapped(0));
    EXPECT_FALSE(screen.isWrapped(2));
    screen.feed("0123456789xyz\r\n");
    EXPECT_TRUE(screen.isWrapped(3)) << screen.screenText().toStdString();
    EXPECT_FALSE(screen.isWrapped(4));
    TerminalSelection all;
    all.start({0, 0});
    all.extend({4, 10});
    EXPECT_EQ(all.text(screen), QStringLiteral("abc\n\n   def\n0123456789xyz"));
}

TEST(TerminalSelectionTest, ScrollingCarriesTheWrapMarksAlong)
{
    TerminalScreen screen(3, 10, {});
    screen.feed("0123456789wrapped\r\none\r\ntwo\r\nthree\r\n");
    const int64_t wrapped = 0;
    ASSERT_LT(wrapped, screen.screenTopLine()) << "pushed into the history";
    EXPECT_TRUE(screen.isWrapped(wrapped));
    for (int64_t n = 1; n < screen.endLine(); ++n)
        EXPECT_FALSE(screen.isWrapped(n)) << n;
}

} // namespace
} // namespace orwick
