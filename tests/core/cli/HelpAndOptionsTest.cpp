// orwick-cli answers --help for itself and every command, says its version, names an option a
// command doesn't take, reads "--" as the end of the options, and words its counts in agreement.

#include "CliRun.h"
#include "support/TempHome.h"

#include <QDir>
#include <QRegularExpression>
#include <gtest/gtest.h>

namespace orwick::test {
namespace {

// The command names the overview lists, each line "  USAGE   SUMMARY".
QList<QByteArray> listedCommands()
{
    QList<QByteArray> names;
    for (const QByteArray& line : runCli({"help"}).outLines())
        if (line.startsWith("  ") && line.size() > 2 && line[2] != ' ')
            names.append(line.mid(2, line.indexOf(' ', 2) - 2));
    return names;
}

TEST(CliHelpTest, HelpAndVersionAnswerWithExitZero)
{
    for (const QByteArray& asking : {QByteArray("help"), QByteArray("--help"), QByteArray("-h")}) {
        const CliRun run = runCli({asking});
        EXPECT_EQ(run.status, 0) << asking.toStdString();
        EXPECT_TRUE(run.out.startsWith("usage: orwick-cli COMMAND")) << run.out.toStdString();
    }
    const CliRun version = runCli({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^orwick-cli \\d+\\.\\d+")).match(QString::fromUtf8(version.out)).hasMatch())
        << version.out.toStdString();
    EXPECT_EQ(runCli({}).status, 2); // nothing asked: the overview, as a usage error
}

TEST(CliHelpTest, EveryCommandAnswersHelpWithItsUsageAndTouchesNothing)
{
    TempTree tree;
    const QList<QByteArray> names = listedCommands();
    ASSERT_GE(names.size(), 10);
    for (const QByteArray& name : names) {
        for (const QByteArray& asking : {QByteArray("--help"), QByteArray("-h")}) {
            const CliRun run = runCli({name, asking});
            EXPECT_EQ(run.status, 0) << name.toStdString();
            EXPECT_TRUE(run.out.startsWith("usage: orwick-cli " + name)) << name.toStdString() << ": " << run.out.toStdString();
            EXPECT_TRUE(run.err.isEmpty()) << name.toStdString() << ": " << run.err.toStdString();
        }
        // After other arguments too, and `help NAME` says the same.
        EXPECT_EQ(runCli({name, tree.root().native(), "--help"}).out, runCli({"help", name}).out) << name.toStdString();
    }
    // Nothing was made, moved or trashed on the way.
    EXPECT_TRUE(QDir(tree.root().text()).isEmpty());
    EXPECT_EQ(runCli({"help", "nosuch"}).status, 2);
}

TEST(CliHelpTest, TheOverviewKeepsEachSummaryApartFromItsUsage)
{
    const QByteArray overview = runCli({"help"}).out;
    const QList<QByteArray> names = listedCommands();
    ASSERT_GE(names.size(), 10);
    int summaryColumn = -1;
    for (const QByteArray& name : names) {
        // `help NAME` starts with "usage: orwick-cli USAGE" and the summary on the next line.
        const QList<QByteArray> help = runCli({"help", name}).outLines();
        ASSERT_GE(help.size(), 2) << name.toStdString();
        const QByteArray usage = help[0].mid(QByteArray("usage: orwick-cli ").size());
        const QByteArray summary = help[1];
        const qsizetype at = overview.indexOf("\n  " + usage);
        ASSERT_GE(at, 0) << name.toStdString();
        const qsizetype after = at + 3 + usage.size();
        const qsizetype summaryAt = overview.indexOf(summary, after);
        ASSERT_GE(summaryAt, 0) << name.toStdString();
        // Between them: two spaces or more on the same line, or a line break and an indent.
        const QByteArray gap = overview.mid(after, summaryAt - after);
        EXPECT_TRUE(gap.trimmed().isEmpty()) << name.toStdString() << ": " << gap.toStdString();
        EXPECT_GE(gap.size(), 2) << name.toStdString() << ": " << usage.toStdString() << "|" << summary.toStdString();
        EXPECT_LE(gap.count('\n'), 1) << name.toStdString();
        // Every summary starts in the same column (counted in characters: usages hold "…").
        const qsizetype lineStart = overview.lastIndexOf('\n', summaryAt) + 1;
        const int column = int(QString::fromUtf8(overview.mid(lineStart, summaryAt - lineStart)).size());
        if (summaryColumn < 0)
            summaryColumn = column;
        EXPECT_EQ(column, summaryColumn) << name.toStdString();
    }
}

TEST(CliHelpTest, AnOptionACommandDoesNotTakeIsNamed)
{
    TempTree tree;
    const CliRun run = runCli({"list", "--colour", tree.root().native()});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.errLines(), QList<QByteArray>{"orwick-cli: list has no option “--colour”; see orwick-cli list --help"});
    EXPECT_TRUE(run.out.isEmpty());
    EXPECT_EQ(runCli({"space", "-x", tree.root().native()}).errLines(),
              QList<QByteArray>{"orwick-cli: space has no option “-x”; see orwick-cli space --help"});
    EXPECT_EQ(runCli({"--frobnicate"}).errLines(), QList<QByteArray>{"orwick-cli: there is no option “--frobnicate”; see orwick-cli help"});
    // Documented options still work.
    EXPECT_EQ(runCli({"list", tree.root().native(), "--hidden"}).status, 0);
}

TEST(CliHelpTest, AfterTwoDashesAnArgumentIsAPathEvenWhenItLooksLikeAnOption)
{
    TempTree tree;
    tree.file("--help", "twelve bytes");
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(tree.root().text())); // orwick-cli runs here
    const CliRun run = runCli({"space", "--", "--help"});
    QDir::setCurrent(before);
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    ASSERT_EQ(run.outLines().size(), 2);
    EXPECT_TRUE(run.outLines()[0].endsWith("\tfile\t--help"));
}

TEST(CliSpaceTest, AFileSaysWhatItTakesAndItsLength)
{
    TempTree tree;
    const FilePath file = tree.file("big.bin", QByteArray(300'000, 'x'));
    const CliRun run = runCli({"space", file.native()});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    const QList<QByteArray> lines = run.outLines();
    ASSERT_EQ(lines.size(), 2);
    const qint64 allocated = lines[0].split('\t').first().toLongLong();
    EXPECT_GE(allocated, 300'000); // blocks on disk, never the "0 bytes" of an empty scan
    EXPECT_TRUE(lines[1].startsWith(QByteArray::number(allocated) + " bytes ("));
    EXPECT_TRUE(lines[1].endsWith("· 1 entry (300000 bytes long)")) << lines[1].toStdString();
}

TEST(CliCountsTest, OneIsSingular)
{
    TempTree tree;
    tree.file("a/one.bin", QByteArray(5000, 'q'));
    tree.file("a/two.bin", QByteArray(5000, 'q'));
    const CliRun duplicates = runCli({"duplicates", tree.path("a").native(), "--min-size", "1"});
    ASSERT_EQ(duplicates.status, 0);
    EXPECT_TRUE(duplicates.outLines().last().startsWith("1 group, ")) << duplicates.out.toStdString();
    EXPECT_TRUE(duplicates.outLines().last().endsWith("Looked through 2 files")) << duplicates.out.toStdString();

    tree.file("b/node_modules/x.js", "x");
    tree.file("b/package.json", "{}");
    const CliRun cleanup = runCli({"cleanup", tree.path("b").native()});
    EXPECT_TRUE(cleanup.outLines().last().startsWith("1 build folder, ")) << cleanup.out.toStdString();

    const CliRun space = runCli({"space", tree.path("b/node_modules").native()});
    EXPECT_TRUE(space.outLines().last().endsWith("· 1 entry")) << space.out.toStdString();
}

} // namespace
} // namespace orwick::test
