// orwick-cli status: the branch line, one line per changed file (kind, staged, unstaged, the name
// as on disk, bytes that aren't UTF-8 included) and the summary, read from a real repository.

#include "CliRun.h"
#include "support/GitTestRepo.h"

#include <gtest/gtest.h>

namespace orwick::test {
namespace {

TEST(CliStatusTest, PrintsEachChangeWithItsNameAsOnDisk)
{
    TempTree tree;
    GitTestRepo repo{tree};
    repo.write(".gitignore", "build/\n");
    repo.write("a.txt", "a");
    repo.write("both.txt", "b");
    repo.commitAll("one");
    repo.write("a.txt", "changed");
    repo.write("both.txt", "staged");
    repo.git({"add", "both.txt"});
    repo.write("both.txt", "and changed again");
    repo.write("build/out.o", "o");
    tree.file(QByteArray("repo/caf\xe9 new.txt"), "n"); // Latin-1: not UTF-8

    const CliRun run = runCli({"status", repo.root().native()});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_EQ(run.outLines(), (QList<QByteArray>{"branch main, ahead 0, behind 0", "modified\t-\tunstaged\ta.txt",
                                                 "modified\tstaged\tunstaged\tboth.txt",
                                                 "untracked\t-\tunstaged\tcaf\xe9 new.txt",
                                                 "3 changed (2 modified, 1 untracked), 1 ignored"}))
        << run.out.toStdString();
}

} // namespace
} // namespace orwick::test
