// orwick-cli match ranks its input lines exactly as the matcher scores them (best first, ties by
// the line's bytes), whichever worker a line fell to, and counts every line, the last one without
// a final newline included.

#include "CliRun.h"
#include "base/FuzzyMatch.h"

#include <QString>
#include <algorithm>
#include <gtest/gtest.h>

namespace orwick::test {
namespace {

TEST(MatchCommand, RanksEveryLineAsTheMatcherScoresItAndNothingMatchingIsExitOne)
{
    // Enough lines that each worker gets many, of uneven lengths, some not ASCII.
    QList<QByteArray> lines;
    const char* words[] = {"config", "parser", "window", "network", "café", "Ωmega", "conf", "x"};
    for (int i = 0; i < 20000; ++i)
        lines.append(QByteArray("src/") + words[i % 8] + "/" + words[(i * 7) % 8] + QByteArray::number(i % 97) + ".cpp");
    lines.append("");                  // an empty line counts but never matches
    lines.append("last/conf-no-newline"); // the final line has no newline

    struct Expected {
        int score;
        QByteArray line;
    };
    std::vector<Expected> expected;
    for (const QByteArray& line : lines)
        if (const auto score = FuzzyMatch::score(u"conf", QString::fromUtf8(line)))
            expected.push_back({*score, line});
    std::sort(expected.begin(), expected.end(), [](const Expected& a, const Expected& b) {
        return a.score != b.score ? a.score > b.score : a.line < b.line;
    });
    ASSERT_GT(expected.size(), 1000u);

    const CliRun run = runCli({"match", "conf", "--scores"}, lines.join('\n'));
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    const QList<QByteArray> printed = run.outLines();
    ASSERT_EQ(printed.size(), qsizetype(expected.size()));
    for (size_t i = 0; i < expected.size(); ++i)
        ASSERT_EQ(printed[qsizetype(i)], QByteArray::number(expected[i].score) + '\t' + expected[i].line) << "rank " << i;
    EXPECT_EQ(run.err, QByteArray::number(qsizetype(expected.size())) + " of " + QByteArray::number(lines.size()) + " lines match\n");
    // Nothing matching is exit status 1.
    const CliRun none = runCli({"match", "zzz"}, "alpha\nbeta\n");
    EXPECT_EQ(none.status, 1);
    EXPECT_TRUE(none.out.isEmpty());
    EXPECT_EQ(none.err, "0 of 2 lines match\n");
}

} // namespace
} // namespace orwick::test
