// orwick-cli status: the branch line, one line per changed file (kind, staged, unstaged, the name
// as on disk, bytes that aren't UTF-8 included) and the summary, read from a real repository. The
// plain `status DIR` is answered before Qt loads; every case, plain or not, reads the same as the
// status command of the program with Qt.

#include "CliRun.h"
#include "support/GitTestRepo.h"

#include <QFile>
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

TEST(CliStatusTest, ReadsTheSameWithoutQtAsWithIt)
{
    TempTree tree;
    GitTestRepo repo{tree};
    repo.write("a.txt", "a");
    repo.write("old.txt", "o");
    repo.commitAll("one");
    repo.git({"mv", "old.txt", "new.txt"});
    repo.write("a.txt", "changed");
    repo.write("sub/b.txt", "b");
    tree.folder("plain");

    const QByteArray root = repo.root().native();
    const QList<QList<QByteArray>> commandLines{
        {"status", root},
        {"status", root + "/./sub/"},       // "." parts and a final slash
        {"status", root + "/sub/.."},       // ".." is left to the program with Qt
        {"status", tree.path(QStringLiteral("plain")).native()}, // not in a repository
        {"status", root + "/missing"},
        {"status", root + "/a.txt"},        // not a folder
        {"status"},
        {"status", root, root},
        {"status", "--help"},
    };
    for (const QList<QByteArray>& arguments : commandLines) {
        const CliRun light = runCli(arguments);
        const CliRun full = runProgram(ORWICK_CLI_FULL_PATH, arguments);
        const std::string shown = arguments.join(' ').toStdString();
        EXPECT_EQ(light.status, full.status) << shown;
        EXPECT_EQ(light.out, full.out) << shown;
        EXPECT_EQ(light.err, full.err) << shown;
    }
    const CliRun plain = runCli({"status", root});
    EXPECT_EQ(plain.outLines(), (QList<QByteArray>{"branch main, ahead 0, behind 0", "modified\t-\tunstaged\ta.txt",
                                                   "renamed\tstaged\t-\tnew.txt", "untracked\t-\tunstaged\tsub/",
                                                   "3 changed (1 modified, 1 renamed, 1 untracked), 0 ignored"}))
        << plain.out.toStdString();

    // A corrupt index: git fails, and the program with Qt says why in git's words.
    QFile index(tree.path(QStringLiteral("repo/.git/index")).text());
    ASSERT_TRUE(index.open(QIODevice::WriteOnly | QIODevice::Truncate));
    index.write("not an index");
    index.close();
    const CliRun broken = runCli({"status", root});
    EXPECT_EQ(broken.status, 1);
    EXPECT_TRUE(broken.out.isEmpty()) << broken.out.toStdString();
    EXPECT_TRUE(broken.err.startsWith(root + ": ")) << broken.err.toStdString();
    EXPECT_EQ(broken.err, runProgram(ORWICK_CLI_FULL_PATH, {"status", root}).err);
}

} // namespace
} // namespace orwick::test
