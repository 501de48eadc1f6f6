// The runner against the real git: its arguments, its environment, output and errors kept apart,
// decoding, launch failures and stopping.

#include "support/GitTestRepo.h"
#include "git/GitRunner.h"

#include <QElapsedTimer>
#include <gtest/gtest.h>
#include <thread>

namespace orwick {
namespace {

using test::GitTestRepo;
using test::TempTree;

class GitRunnerTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(gitExecutable().has_value()) << "these tests need git on PATH"; }
    // Runs a shell snippet as a git alias, so it runs as git's child with git's environment.
    GitOutput runAlias(const QString& snippet, const CancelFlag* cancel = nullptr)
    {
        return runCapturingErrors(*gitExecutable(), {"-c", "alias.probe=!" + snippet, "probe"}, repo.root(), cancel);
    }
    TempTree tree;
    GitTestRepo repo{tree};
};

TEST_F(GitRunnerTest, RunsInTheRootWithPathsUnquoted)
{
    const GitOutput top = runCapturingErrors(*gitExecutable(), {"rev-parse", "--show-toplevel"}, repo.root());
    EXPECT_EQ(top.status, 0);
    EXPECT_EQ(top.output.trimmed(), repo.root().text());
    const GitOutput quoting = runCapturingErrors(*gitExecutable(), {"config", "core.quotepath"}, repo.root());
    EXPECT_EQ(quoting.output.trimmed(), QStringLiteral("off"));
}

TEST_F(GitRunnerTest, GitCanNeverWaitForAPromptOrAnEditor)
{
    qunsetenv("GIT_SSH_COMMAND");
    const QString environment = runAlias("env").output;
    for (const char* entry : {"GIT_OPTIONAL_LOCKS=0", "GIT_TERMINAL_PROMPT=0", "GIT_EDITOR=true",
                              "GIT_SSH_COMMAND=ssh -o BatchMode=yes -o ConnectTimeout=20"})
        EXPECT_TRUE(environment.split('\n').contains(QString::fromUtf8(entry))) << entry;
    // The user's own SSH command is kept.
    qputenv("GIT_SSH_COMMAND", "ssh -i /keys/work");
    const QString own = runAlias("env").output;
    qunsetenv("GIT_SSH_COMMAND");
    EXPECT_TRUE(own.split('\n').contains(QStringLiteral("GIT_SSH_COMMAND=ssh -i /keys/work")));
    // HOME and the rest of the process's environment pass through.
    EXPECT_TRUE(own.split('\n').contains("HOME=" + QString::fromLocal8Bit(qgetenv("HOME"))));
}

TEST_F(GitRunnerTest, OutputAndErrorsArriveApartWithTheExitStatus)
{
    const GitOutput result = runAlias("echo to-out; echo to-err >&2; echo more-out; exit 3");
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.output, QStringLiteral("to-out\nmore-out\n"));
    EXPECT_EQ(result.errors, QStringLiteral("to-err\n"));

    const GitOutput notARepo = runCapturingErrors(*gitExecutable(), {"status"}, tree.folder("plain"));
    EXPECT_NE(notARepo.status, 0);
    EXPECT_TRUE(notARepo.output.isEmpty()) << notARepo.output.toStdString();
    EXPECT_TRUE(notARepo.errors.contains(QStringLiteral("not a git repository"))) << notARepo.errors.toStdString();
}

TEST_F(GitRunnerTest, MuchOnBothStreamsAtOnceDoesNotStall)
{
    // Far more than a pipe holds on each stream, interleaved: reading only one would deadlock.
    CancelFlag neverSet;
    const GitOutput result = runAlias("i=0; while [ $i -lt 4000 ]; do echo out-$i-........................................; "
                                      "echo err-$i-........................................ >&2; i=$((i+1)); done",
                                      &neverSet);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output.count(u'\n'), 4000);
    EXPECT_EQ(result.errors.count(u'\n'), 4000);
    EXPECT_FALSE(result.output.contains(QStringLiteral("err-")));
    EXPECT_FALSE(result.errors.contains(QStringLiteral("out-")));
    const GitOutput blocking = runAlias("i=0; while [ $i -lt 4000 ]; do echo err-$i-........................................ >&2; "
                                        "i=$((i+1)); done; echo done");
    EXPECT_EQ(blocking.output, QStringLiteral("done\n"));
    EXPECT_EQ(blocking.errors.count(u'\n'), 4000);
}

TEST_F(GitRunnerTest, BytesThatAreNotUtf8BecomeReplacementCharacters)
{
    const GitOutput result = runAlias("printf 'caf\\351 ok'");
    EXPECT_EQ(result.output, QStringLiteral("caf\uFFFD ok"));
}

TEST_F(GitRunnerTest, AProgramThatCannotStartGivesMinusOneAndTheReason)
{
    const GitOutput missing = runCapturingErrors(FilePath::fromNative("/nonexistent/bin/git"), {"status"}, repo.root());
    EXPECT_EQ(missing.status, -1);
    EXPECT_TRUE(missing.output.isEmpty());
    EXPECT_TRUE(missing.errors.startsWith(QStringLiteral("couldn't start git: "))) << missing.errors.toStdString();
    const GitOutput notAProgram = runCapturingErrors(tree.file(QStringLiteral("not-a-program"), "text"), {"status"}, repo.root());
    EXPECT_EQ(notAProgram.status, -1);
}

TEST_F(GitRunnerTest, CancellingStopsGitAndWhatItStarted)
{
    CancelFlag cancel;
    std::thread canceller([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        cancel.cancel();
    });
    QElapsedTimer timer;
    timer.start();
    runAlias("sleep 30", &cancel);
    canceller.join();
    EXPECT_LT(timer.elapsed(), 5000);
}

} // namespace
} // namespace orwick
