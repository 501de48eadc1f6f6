// orwick-cli grep and compare, run as the built program on temporary trees.

#include "CliRun.h"
#include "support/TempHome.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace orwick::test {

TEST(GrepCommand, PrintsFileLineAndTextAsBytesWithItsOptionsAndExitStatus)
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

    // The regex option and the exit status.
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

TEST(GrepCommand, AQueryBeginningWithADashIsTheQueryAndOtherDashesAreStillOptions)
{
    TempTree tree;
    tree.file("flags.txt", "run with -dash here\nrun with -DASH there\n");
    tree.file("plain.txt", "dash\n");
    const QList<QByteArray> both = {"flags.txt:1:run with -dash here", "flags.txt:2:run with -DASH there"};
    const CliRun run = runCli({"grep", "-dash", tree.root().native()});
    EXPECT_EQ(run.status, 0) << run.err.constData();
    EXPECT_EQ(run.outLines(), both);
    // After an option, with "--", and with an option after it.
    EXPECT_EQ(runCli({"grep", "--case", "-dash", tree.root().native()}).outLines(), QList<QByteArray>{both[0]});
    EXPECT_EQ(runCli({"grep", "--", "-dash", tree.root().native()}).outLines(), both);
    EXPECT_EQ(runCli({"grep", "-dash", tree.root().native(), "--case"}).outLines(), QList<QByteArray>{both[0]});
    // Once the query is given, an unknown option is still refused, and --help still answers.
    const CliRun refused = runCli({"grep", "dash", tree.root().native(), "-x"});
    EXPECT_EQ(refused.status, 2);
    EXPECT_EQ(refused.errLines(), QList<QByteArray>{"orwick-cli: grep has no option “-x”; see orwick-cli grep --help"});
    EXPECT_EQ(runCli({"grep", "-dash", "--help"}).status, 0);
    EXPECT_EQ(runCli({"grep", "--regex"}).status, 2) << "an option alone is no query";
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

TEST(CompareCommand, MirrorSyncCopiesReplacesAndTrashesThroughTheEngine)
{
    TempTree tree;
    tree.file("l/same.txt", "s");
    tree.file("r/same.txt", "s");
    tree.file("l/mirror-changed.txt", "new");
    tree.file("r/mirror-changed.txt", "old!");
    tree.file("l/sub/missing.txt", "m");
    tree.file("r/mirror-extra.txt", "x");
    const CliRun run = runCli({"compare", tree.path("l").native(), tree.path("r").native(), "--sync", "mirror"});
    EXPECT_EQ(run.status, 0) << run.err.constData();
    EXPECT_EQ(run.outLines(), QList<QByteArray>{"Copied 2 items, moved mirror-extra.txt to the Trash"});
    EXPECT_EQ(readAll(tree.path("r/mirror-changed.txt")), "new");
    EXPECT_EQ(readAll(tree.path("r/sub/missing.txt")), "m");
    struct stat info {};
    EXPECT_NE(lstat(tree.path("r/mirror-extra.txt").c_str(), &info), 0);
    // What the mirror replaced or removed lies in the Trash, not deleted.
    const FilePath trash = tempHome().child(QStringLiteral(".local/share/Trash/files"));
    EXPECT_EQ(readAll(trash.child(QStringLiteral("mirror-extra.txt"))), "x");
    EXPECT_EQ(readAll(trash.child(QStringLiteral("mirror-changed.txt"))), "old!");
    EXPECT_EQ(readAll(tree.path("l/mirror-changed.txt")), "new") << "the source side is left as it was";

    const CliRun again = runCli({"compare", tree.path("l").native(), tree.path("r").native(), "--sync", "mirror"});
    EXPECT_EQ(again.status, 0);
    EXPECT_EQ(again.outLines(), QList<QByteArray>{"Nothing to do for “Mirror (extra files go to the Trash)”"});
    EXPECT_EQ(runCli({"compare", tree.path("l").native(), tree.path("r").native()}).status, 0);
}

TEST(CompareCommand, MissingSyncTowardTheLeftAndABadMode)
{
    TempTree tree;
    tree.file("l/both.txt", "left");
    tree.file("r/both.txt", "right");
    tree.file("r/only-right.txt", "r");
    tree.file("l/only-left.txt", "l");
    const CliRun run = runCli({"compare", tree.path("l").native(), tree.path("r").native(), "--sync", "missing", "--to-left"});
    EXPECT_EQ(run.status, 0) << run.err.constData();
    EXPECT_EQ(readAll(tree.path("l/only-right.txt")), "r");
    EXPECT_EQ(readAll(tree.path("l/both.txt")), "left") << "nothing is overwritten";
    struct stat info {};
    EXPECT_NE(lstat(tree.path("r/only-left.txt").c_str(), &info), 0) << "the other side is left alone";

    const CliRun bad = runCli({"compare", tree.path("l").native(), tree.path("r").native(), "--sync", "everything"});
    EXPECT_EQ(bad.status, 2);
    EXPECT_TRUE(bad.out.isEmpty());
    EXPECT_FALSE(bad.err.isEmpty());
    EXPECT_EQ(readAll(tree.path("l/both.txt")), "left");
}

} // namespace orwick::test
