// The git actions that talk to a remote (a second, bare repository on this computer): push with
// and without an upstream or a remote, fetch, pull ahead and behind and when both sides moved,
// a real merge conflict resolved and a rebase stopped on a conflict, and a remote that wants a
// password failing at once.

#include "GitActionFixture.h"
#include "git/GitMessage.h"
#include "git/GitTexts.h"
#include "git/StatusReader.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTcpServer>
#include <QTcpSocket>
#include <thread>

namespace orwick {
namespace {

using test::GitActionTest;
using test::GitTestRepo;
namespace t = gittexts;

class GitRemoteTest : public GitActionTest {
protected:
    // A committed repository whose main branch is pushed to `bare`, with upstream.
    void publish()
    {
        repo.write("shared.txt", "line one\n");
        repo.commitAll("base");
        bare = addRemote();
        const GitOutcome pushed = actions().push();
        ASSERT_TRUE(pushed) << pushed.text().toStdString();
    }
    // The colleague commits `content` to `name` and pushes it.
    void colleagueChanges(const QString& name, const QByteArray& content, const QString& message)
    {
        if (colleague.isEmpty())
            colleague = cloneAsColleague(bare);
        else
            GitTestRepo::gitIn(colleague, {"pull", "-q", "--rebase"});
        QFile file(colleague.child(name).text());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(content);
        file.close();
        GitTestRepo::gitIn(colleague, {"add", "--", name});
        GitTestRepo::gitIn(colleague, {"commit", "-q", "-m", message});
        GitTestRepo::gitIn(colleague, {"push", "-q"});
    }
    void commitHere(const QString& name, const QByteArray& content, const QString& message)
    {
        repo.write(name, content);
        repo.commitAll(message);
    }
    RepoStatus status() const { return *readStatus(*gitExecutable(), repo.root()); }

    FilePath bare;
    FilePath colleague;
};

TEST_F(GitRemoteTest, PushWithoutARemoteSaysHowToAddOne)
{
    repo.write("a.txt", "a");
    repo.commitAll("base");
    const GitOutcome outcome = actions().push();
    EXPECT_FALSE(outcome);
    EXPECT_EQ(outcome.message, QStringLiteral("This repository has no remote to push to. Add one with git remote add."));
    EXPECT_EQ(outcome.detail, QString());
    EXPECT_EQ(*actions().remotes(), QStringList());
}

TEST_F(GitRemoteTest, APushWithoutUpstreamSetsItOnOrigin)
{
    publish();
    EXPECT_EQ(*actions().remotes(), QStringList{"origin"});
    const auto branches = actions().branches();
    ASSERT_EQ(branches->size(), 1);
    EXPECT_EQ(branches->first().upstream, QStringLiteral("origin/main"));
    EXPECT_EQ(GitTestRepo::gitIn(bare, {"rev-parse", "main"}).trimmed(), head().toUtf8());

    // A new branch without upstream goes the same way.
    ASSERT_TRUE(actions().createBranch(QStringLiteral("topic")));
    commitHere("topic.txt", "t", "topic");
    ASSERT_TRUE(actions().push());
    EXPECT_EQ(GitTestRepo::gitIn(bare, {"rev-parse", "topic"}).trimmed(), head().toUtf8());
}

TEST_F(GitRemoteTest, FetchAndPullBringTheColleaguesCommitsAndSayWhenNothingCame)
{
    publish();
    EXPECT_EQ(actions().fetch().message, t::fetchedUpToDate());
    colleagueChanges("shared.txt", "line one\nline two\n", "Their change");

    const GitOutcome fetched = actions().fetch();
    ASSERT_TRUE(fetched) << fetched.text().toStdString();
    EXPECT_EQ(fetched.message, QString());
    EXPECT_EQ(status().behind, 1);
    EXPECT_EQ(status().ahead, 0);

    const GitOutcome pulled = actions().pull(PullMode::fastForwardOnly);
    ASSERT_TRUE(pulled) << pulled.text().toStdString();
    EXPECT_EQ(pulled.message, QString());
    EXPECT_EQ(test::readAll(repo.path("shared.txt")), QByteArray("line one\nline two\n"));
    EXPECT_EQ(actions().pull(PullMode::fastForwardOnly).message, QStringLiteral("Already up to date"));

    commitHere("mine.txt", "m", "Mine");
    EXPECT_EQ(status().ahead, 1);
    ASSERT_TRUE(actions().push());
    EXPECT_EQ(status().ahead, 0);
}

TEST_F(GitRemoteTest, WhenBothSidesMovedPullAsksForRebaseOrMergeAndEachWorks)
{
    publish();
    colleagueChanges("theirs.txt", "theirs\n", "Theirs");
    commitHere("mine.txt", "mine\n", "Mine");
    ASSERT_TRUE(actions().fetch());
    EXPECT_EQ(status().ahead, 1);
    EXPECT_EQ(status().behind, 1);

    const GitOutcome refused = actions().pull(PullMode::fastForwardOnly);
    EXPECT_FALSE(refused);
    EXPECT_TRUE(refused.needsPullChoice);
    EXPECT_EQ(refused.message, QStringLiteral("Both sides have new commits"));
    EXPECT_EQ(refused.detail, t::pullChoiceExplanation());
    EXPECT_EQ(status().ahead, 1) << "nothing changed";

    const GitOutcome rebased = actions().pull(PullMode::rebase);
    ASSERT_TRUE(rebased) << rebased.text().toStdString();
    EXPECT_EQ(status().ahead, 1);
    EXPECT_EQ(status().behind, 0);
    EXPECT_EQ(gitText({"rev-list", "--count", "--merges", "HEAD"}), QStringLiteral("0")) << "a rebase makes no merge commit";
    ASSERT_TRUE(actions().push());

    colleagueChanges("theirs.txt", "theirs again\n", "Theirs again");
    commitHere("mine.txt", "mine again\n", "Mine again");
    const GitOutcome merged = actions().pull(PullMode::merge);
    ASSERT_TRUE(merged) << merged.text().toStdString();
    EXPECT_EQ(gitText({"rev-list", "--count", "--merges", "HEAD"}), QStringLiteral("1"));
}

TEST_F(GitRemoteTest, ARealMergeConflictIsResolvedWithTheirsAndContinued)
{
    commitHere("story.txt", "start\n", "base");
    repo.git({"switch", "-q", "-c", "other"});
    commitHere("story.txt", "their ending\n", "Their ending");
    repo.git({"switch", "-q", "main"});
    commitHere("story.txt", "our ending\n", "Our ending");
    repo.git({"merge", "other"}, true);

    EXPECT_EQ(actions().operation(), QStringLiteral("Merging"));
    const RepoStatus conflicted = status();
    ASSERT_EQ(conflicted.files.size(), 1);
    EXPECT_EQ(conflicted.files.first().change, Change::conflicted);

    const GitOutcome early = actions().continueOperation();
    EXPECT_FALSE(early);
    EXPECT_EQ(early.message, t::couldNotContinue());

    const GitOutcome resolved = actions().resolve(repo.path("story.txt"), Resolution::theirs);
    ASSERT_TRUE(resolved) << resolved.text().toStdString();
    EXPECT_EQ(test::readAll(repo.path("story.txt")), QByteArray("their ending\n"));
    EXPECT_TRUE(status().files.isEmpty() || status().files.first().change != Change::conflicted);

    const GitOutcome continued = actions().continueOperation();
    ASSERT_TRUE(continued) << continued.text().toStdString();
    EXPECT_EQ(actions().operation(), std::nullopt);
    EXPECT_EQ(gitText({"rev-list", "--count", "--merges", "HEAD"}), QStringLiteral("1"));

    const GitOutcome unknown = actions().resolve(repo.path("nothing.txt"), Resolution::ours);
    EXPECT_EQ(unknown.message, QStringLiteral("Couldn’t resolve “nothing.txt”"));
}

TEST_F(GitRemoteTest, ARebaseStoppedOnAConflictIsAbortedBackToHowItWas)
{
    publish();
    colleagueChanges("shared.txt", "their line\n", "Theirs");
    commitHere("shared.txt", "my line\n", "Mine");
    const QString before = head();

    const GitOutcome stopped = actions().pull(PullMode::rebase);
    EXPECT_FALSE(stopped);
    EXPECT_EQ(stopped.message, t::couldNotPull());
    EXPECT_FALSE(stopped.detail.contains(QLatin1StringView("hint:")));
    EXPECT_EQ(actions().operation(), QStringLiteral("Rebasing"));
    EXPECT_EQ(status().operation, QStringLiteral("Rebasing"));

    const GitOutcome aborted = actions().abortOperation();
    ASSERT_TRUE(aborted) << aborted.text().toStdString();
    EXPECT_EQ(actions().operation(), std::nullopt);
    EXPECT_EQ(head(), before);
    EXPECT_EQ(test::readAll(repo.path("shared.txt")), QByteArray("my line\n"));
    EXPECT_EQ(actions().abortOperation().message, t::couldNotAbort());
}

TEST_F(GitRemoteTest, ARebaseStoppedOnAConflictContinuesOnceResolved)
{
    publish();
    colleagueChanges("shared.txt", "their line\n", "Theirs");
    commitHere("shared.txt", "my line\n", "Mine");
    EXPECT_FALSE(actions().pull(PullMode::rebase));
    ASSERT_TRUE(actions().resolve(repo.path("shared.txt"), Resolution::ours)); // in a rebase, "ours" is theirs: the upstream
    const GitOutcome continued = actions().continueOperation();
    ASSERT_TRUE(continued) << continued.text().toStdString();
    EXPECT_EQ(actions().operation(), std::nullopt);
}

// A web server that answers every request with "401: who are you?", in its own thread.
class PasswordServer {
public:
    PasswordServer()
    {
        m_thread = std::thread([this] {
            QTcpServer server;
            server.listen(QHostAddress::LocalHost, 0);
            m_port = server.serverPort();
            while (!m_stop) {
                if (!server.waitForNewConnection(50))
                    continue;
                while (QTcpSocket* socket = server.nextPendingConnection()) {
                    socket->waitForReadyRead(1000);
                    socket->readAll();
                    ++m_asked;
                    socket->write("HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Basic realm=\"orwick\"\r\n"
                                  "Content-Length: 0\r\nConnection: close\r\n\r\n");
                    socket->waitForBytesWritten(1000);
                    socket->disconnectFromHost();
                    delete socket;
                }
            }
        });
        while (m_port == 0)
            std::this_thread::yield();
    }
    ~PasswordServer()
    {
        m_stop = true;
        m_thread.join();
    }
    quint16 port() const { return m_port; }
    int asked() const { return m_asked; }

private:
    std::thread m_thread;
    std::atomic<quint16> m_port{0};
    std::atomic<bool> m_stop{false};
    std::atomic<int> m_asked{0};
};

TEST_F(GitRemoteTest, ARemoteThatWantsAPasswordFailsAtOnceAndNoPasswordProgramRuns)
{
    repo.write("a.txt", "a");
    repo.commitAll("base");
    PasswordServer server;
    repo.git({"remote", "add", "origin", QStringLiteral("http://127.0.0.1:%1/repo.git").arg(server.port())});
    // A password program the desktop would offer: it must never be asked.
    const FilePath asked = tree.path("askpass-was-asked");
    const FilePath askpass = tree.file("askpass", "#!/bin/sh\ntouch '" + asked.native() + "'\necho secret\n");
    QFile::setPermissions(askpass.text(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("SSH_ASKPASS", askpass.native());
    repo.git({"config", "core.askPass", askpass.text()});

    QElapsedTimer timer;
    timer.start();
    const GitOutcome fetched = actions().fetch();
    qunsetenv("SSH_ASKPASS");
    EXPECT_FALSE(fetched);
    EXPECT_EQ(fetched.message, t::couldNotFetch());
    EXPECT_FALSE(fetched.detail.isEmpty());
    EXPECT_LT(timer.elapsed(), 10000);
    EXPECT_GE(server.asked(), 1) << "git did ask the server";
    EXPECT_FALSE(test::exists(asked)) << "no password program was started";
}

TEST(GitTidyTest, DropsHintsAndPrefixesAndSaysSoWhenNothingIsLeft)
{
    EXPECT_EQ(tidyGitOutput(u"hint: one\nhint: two\n\n"), QStringLiteral("git didn't say why."));
    EXPECT_EQ(tidyGitOutput(u"fatal: not possible to fast-forward"), QStringLiteral("not possible to fast-forward"));
    EXPECT_EQ(tidyGitOutput(u"  error: first  \nhint: skip\nsecond line\n"), QStringLiteral("first\nsecond line"));
    EXPECT_EQ(tidyGitOutput(u""), QStringLiteral("git didn't say why."));
}

} // namespace
} // namespace orwick
