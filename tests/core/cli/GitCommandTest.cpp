// orwick-cli git: each form against a real repository, with the window's messages and a
// non-zero exit status on failure.

#include "CliRun.h"
#include "support/GitTestRepo.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace orwick::test {
namespace {

class CliGitTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        repo.git({"config", "user.name", "Orwick Test"});
        repo.git({"config", "user.email", "test@orwick.invalid"});
        repo.write("a.txt", "a\n");
        repo.commitAll("Base");
    }
    QByteArray dir() const { return repo.root().native(); }
    QByteArray staged() const { return repo.git({"diff", "--cached", "--name-only"}); }

    TempTree tree;
    GitTestRepo repo{tree};
};

TEST_F(CliGitTest, StagesUnstagesAndCommitsThenAmends)
{
    repo.write("a.txt", "changed\n");
    const QByteArray odd = repo.root().native() + "/caf\xe9 new.txt";
    tree.file(QByteArray("repo/caf\xe9 new.txt"), "n");
    CliRun run = runCli({"git", "stage", repo.path("a.txt").native(), odd});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_TRUE(run.out.isEmpty());
    EXPECT_EQ(repo.git({"diff", "--cached", "--name-only", "-z"}), QByteArray("a.txt\0caf\xe9 new.txt\0", 19));

    run = runCli({"git", "unstage", odd});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_EQ(staged(), QByteArray("a.txt\n"));

    run = runCli({"git", "commit", dir(), "-m", "Change a"});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    run = runCli({"git", "commit", dir(), "-m", "Change a, better", "--amend"});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    run = runCli({"git", "log", dir()});
    ASSERT_EQ(run.status, 0);
    const QList<QByteArray> lines = run.outLines();
    ASSERT_EQ(lines.size(), 2);
    EXPECT_TRUE(lines[0].endsWith("\tOrwick Test\tChange a, better")) << lines[0].toStdString();
    EXPECT_TRUE(lines[1].endsWith("\tBase"));
    run = runCli({"git", "log", dir(), repo.path("a.txt").native()});
    EXPECT_EQ(run.outLines().size(), 2);

    run = runCli({"git", "commit", dir(), "-m", "Again"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errLines(), (QList<QByteArray>{"Couldn’t commit", "Nothing is staged to commit."}));
    ::unlink(odd.constData()); // the temporary folder's clean-up reads names as text
}

TEST_F(CliGitTest, BranchSwitchAndBranchesWithARefusedName)
{
    CliRun run = runCli({"git", "branch", dir(), "feature"});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_EQ(repo.git({"branch", "--show-current"}), QByteArray("feature\n"));
    run = runCli({"git", "switch", dir(), "main"});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    run = runCli({"git", "branches", dir()});
    ASSERT_EQ(run.status, 0);
    EXPECT_TRUE(run.outLines().contains("* main\t")) << run.out.toStdString();
    EXPECT_TRUE(run.outLines().contains("  feature\t")) << run.out.toStdString();

    run = runCli({"git", "branch", dir(), "my feature"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errLines(), (QList<QByteArray>{"“my feature” can’t be a branch name",
                                                 "Branch names can’t have spaces, “..”, or any of ~ ^ : ? * [ \\."}));
    run = runCli({"git", "switch", dir(), "nowhere"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errLines().value(0), QByteArray("Couldn’t switch to nowhere"));
}

TEST_F(CliGitTest, StashPushAndPull)
{
    repo.write("a.txt", "work in progress\n");
    repo.write("untracked.txt", "u\n");
    CliRun run = runCli({"git", "stash", dir(), "-m", "later"});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_EQ(readAll(repo.path("a.txt")), QByteArray("a\n"));
    EXPECT_FALSE(exists(repo.path("untracked.txt")));
    run = runCli({"git", "stash", dir()});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.outLines(), QList<QByteArray>{"Nothing to stash"});

    run = runCli({"git", "push", dir()});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errLines(), QList<QByteArray>{"This repository has no remote to push to. Add one with git remote add."});

    const FilePath bare = tree.folder("remote.git");
    GitTestRepo::gitIn(bare, {"init", "-q", "--bare", "-b", "main"});
    repo.git({"remote", "add", "origin", bare.text()});
    run = runCli({"git", "push", dir()});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    run = runCli({"git", "pull", dir()});
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_EQ(run.outLines(), QList<QByteArray>{"Already up to date"});
    EXPECT_EQ(runCli({"git", "pull", dir(), "--rebase"}).status, 0);
    EXPECT_EQ(runCli({"git", "pull", dir(), "--merge"}).status, 0);
    EXPECT_EQ(runCli({"git", "pull", dir(), "--ff-only"}).status, 0);
}

TEST_F(CliGitTest, UsageMistakesAndFoldersOutsideARepository)
{
    EXPECT_EQ(runCli({"git"}).status, 2);
    EXPECT_EQ(runCli({"git", "frobnicate", dir()}).status, 2);
    EXPECT_EQ(runCli({"git", "commit", dir()}).status, 2) << "a commit needs -m";
    EXPECT_EQ(runCli({"git", "pull", dir(), "--rebase", "--merge"}).status, 2);
    EXPECT_EQ(runCli({"git", "pull", dir(), "--squash"}).status, 2);

    const FilePath outside = tree.folder("plain");
    const CliRun run = runCli({"git", "log", outside.native()});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.err.contains("isn’t in a git repository")) << run.err.toStdString();
    EXPECT_EQ(runCli({"git", "log", tree.path("missing").native()}).status, 1);
}

} // namespace
} // namespace orwick::test
