// orwick-cli grep and compare, run as the built program on temporary trees.

#include "CliRun.h"
#include "support/TempHome.h"

#include <gtest/gtest.h>

namespace orwick::test {

TEST(GrepCommand, PrintsFileLineAndTextAsBytes)
{
    TempTree tree;
    tree.file("a:b.txt", "one\nneedle here\n");
    tree.file(QByteArray("caf\xe9.txt"), "NEEDLE \xff\n");
    tree.file("none.txt", "nothing\n");
    const CliRun run = runCli({"grep", "needle", tree.root().native()});
    EXPECT_EQ(run.status, 0) << run.err.constData();
    EXPECT_EQ(sorted(run.outLines()), sorted({"a:b.txt:2:needle here", QByteArray("caf\xe9.txt:1:NEEDLE \xff")}));
    const CliRun cased = runCli({"grep", "needle", tree.root().native(), "--case"});
    EXPECT_EQ(cased.outLines(), QList<QByteArray>{"a:b.txt:2:needle here"});
}

TEST(GrepCommand, RegexOptionAndExitStatus)
{
    TempTree tree;
    tree.file("x.txt", "a1\nab\n");
    EXPECT_EQ(runCli({"grep", "a[0-9]", tree.root().native()}).status, 1) << "literal by default";
    const CliRun regex = runCli({"grep", "a[0-9]", tree.root().native(), "--regex"});
    EXPECT_EQ(regex.status, 0);
    EXPECT_EQ(regex.outLines(), QList<QByteArray>{"x.txt:1:a1"});
    const CliRun broken = runCli({"grep", "(a", tree.root().native(), "--regex"});
    EXPECT_EQ(broken.status, 2);
    EXPECT_FALSE(broken.err.isEmpty());
    EXPECT_EQ(runCli({"grep", "a", tree.path("missing").native()}).status, 2);
}

TEST(CompareCommand, OneLinePerDifferenceThenTheSummary)
{
    TempTree tree;
    tree.file("l/same.txt", "s");
    tree.file("r/same.txt", "s");
    tree.file("l/changed.txt", "abc");
    tree.file("r/changed.txt", "abd");
    tree.file("l/dir/a", "1");
    tree.file("l/dir/b", "2");
    tree.file("r/extra.txt", "xy");
    const CliRun run = runCli({"compare", tree.path("l").native(), tree.path("r").native()});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.outLines(), (QList<QByteArray>{"changed\tchanged.txt\t3\t3", "onlyLeft\tdir/\t-\t-\t2 files",
                                                 "onlyRight\textra.txt\t-\t2",
                                                 "1 only on the left · 1 only on the right · 1 changed"}));
    const CliRun all = runCli({"compare", tree.path("l").native(), tree.path("r").native(), "--all"});
    EXPECT_TRUE(all.outLines().contains("same\tsame.txt\t1\t1"));
}

TEST(CompareCommand, SameFoldersAndRefusals)
{
    TempTree tree;
    tree.file("l/a", "1");
    tree.file("r/a", "1");
    const CliRun same = runCli({"compare", tree.path("l").native(), tree.path("r").native()});
    EXPECT_EQ(same.status, 0);
    EXPECT_EQ(same.outLines(), QList<QByteArray>{"No differences: every file matches"});
    const CliRun itself = runCli({"compare", tree.path("l").native(), tree.path("l").native()});
    EXPECT_EQ(itself.status, 2);
    EXPECT_TRUE(itself.out.isEmpty());
    EXPECT_FALSE(itself.err.isEmpty());
    EXPECT_EQ(runCli({"compare", tree.path("l").native()}).status, 2);
}

} // namespace orwick::test
