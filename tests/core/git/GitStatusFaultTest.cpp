// Git in a bad way, for real: warnings and trace output on standard error while the status
// succeeds (they must not change the branch or the files), and statuses that fail (a folder that
// isn't a repository, a damaged HEAD or index), which show git's own first complaint.

#include "support/GitTestRepo.h"
#include "git/Git.h"
#include "git/GitMessage.h"
#include "git/StatusReader.h"
#include "support/TestMain.h"

#include <QFile>
#include <QProcess>
#include <functional>
#include <gtest/gtest.h>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace orwick {
namespace {

using test::GitTestRepo;
using test::TempTree;

// Sets an environment variable for git's runs in one scope.
class ScopedEnvironment {
public:
    ScopedEnvironment(const char* name, const QByteArray& value) : m_name(name), m_had(qEnvironmentVariableIsSet(name)), m_old(qgetenv(name))
    {
        qputenv(name, value);
    }
    ~ScopedEnvironment()
    {
        if (m_had)
            qputenv(m_name, m_old);
        else
            qunsetenv(m_name);
    }

private:
    const char* m_name;
    bool m_had;
    QByteArray m_old;
};

// Runs `work` on a thread whose children can't pass over file permissions even as root: the
// capabilities that let root read any folder are dropped from that thread's bounding set, which
// the git it starts inherits. Returns why it couldn't, or nothing when `work` ran.
std::optional<QString> runWithoutPermissionOverride(const std::function<void()>& work)
{
    std::optional<QString> why;
    std::thread thread([&] {
        if (geteuid() == 0
            && (prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE, 0, 0, 0) != 0
                || prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH, 0, 0, 0) != 0)) {
            why = QStringLiteral("running as root, and dropping the capability to read any folder failed: %1")
                      .arg(QString::fromLocal8Bit(strerror(errno)));
            return;
        }
        work();
    });
    thread.join();
    return why;
}

// Git's own standard error for `git status` in `folder`, read independently of the runner.
QString gitsOwnErrors(const FilePath& folder)
{
    QProcess process;
    process.setWorkingDirectory(folder.text());
    process.start(QStringLiteral("git"), {QStringLiteral("status"), QStringLiteral("--porcelain=v1")});
    process.waitForFinished(60000);
    return QString::fromUtf8(process.readAllStandardError());
}

class GitStatusFault : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(gitExecutable().has_value()) << "these tests need git on PATH";
        repo.write("tracked.txt", "one\n");
        repo.write("sub/kept.txt", "k\n");
        repo.commitAll("one");
        repo.write("tracked.txt", "two\n");
        repo.write("untracked.txt", "u\n");
    }
    Result<RepoStatus> read(const FilePath& root) { return readStatus(*gitExecutable(), root); }
    // The status as it reads with nothing on standard error.
    void expectTheQuietStatus(const Result<RepoStatus>& status)
    {
        ASSERT_TRUE(status) << status.error().toStdString();
        EXPECT_EQ(status->branch, QStringLiteral("main"));
        ASSERT_EQ(status->files.size(), 2);
        EXPECT_EQ(status->files[0].path, QStringLiteral("tracked.txt"));
        EXPECT_EQ(status->files[0].change, Change::modified);
        EXPECT_EQ(status->files[1].path, QStringLiteral("untracked.txt"));
        EXPECT_EQ(status->files[1].change, Change::untracked);
    }
    TempTree tree;
    GitTestRepo repo{tree};
};

TEST_F(GitStatusFault, TraceOutputOnStandardErrorLeavesBranchAndFilesAlone)
{
    const auto quiet = read(repo.root());
    expectTheQuietStatus(quiet);
    for (const QByteArray value : {"1", "2"}) {
        SCOPED_TRACE(value.toStdString());
        ScopedEnvironment trace("GIT_TRACE", value);
        // git really does talk on standard error here…
        const GitOutput raw = runCapturingErrors(*gitExecutable(), {"status", "--porcelain=v1", "-z", "-b"}, repo.root());
        EXPECT_EQ(raw.status, 0);
        EXPECT_TRUE(raw.errors.contains(QStringLiteral("trace: "))) << raw.errors.toStdString();
        EXPECT_FALSE(raw.output.contains(QStringLiteral("trace: ")));
        // …and the status reads exactly as without it.
        const auto traced = read(repo.root());
        expectTheQuietStatus(traced);
        EXPECT_EQ(*traced, *quiet);
    }
}

TEST_F(GitStatusFault, AnUnreadableFolderWarnsButLeavesBranchAndFilesAlone)
{
    const auto quiet = read(repo.root());
    expectTheQuietStatus(quiet);
    repo.write("locked/secret.txt", "s\n");
    ASSERT_EQ(chmod(repo.path("locked").c_str(), 0), 0);
    GitOutput raw;
    Result<RepoStatus> warned = failure(QString());
    const auto why = runWithoutPermissionOverride([&] {
        raw = runCapturingErrors(*gitExecutable(), {"status", "--porcelain=v1", "-z", "-b", "--ignored"}, repo.root());
        warned = read(repo.root());
    });
    chmod(repo.path("locked").c_str(), 0755);
    if (why)
        GTEST_SKIP() << why->toStdString();
    ASSERT_EQ(raw.status, 0);
    EXPECT_TRUE(raw.errors.contains(QStringLiteral("locked"))) << "git gave no warning: " << raw.errors.toStdString();
    expectTheQuietStatus(warned);
    EXPECT_EQ(*warned, *quiet);
}

TEST_F(GitStatusFault, NotARepositoryShowsGitsFirstLineTidied)
{
    const auto status = read(tree.folder("plain"));
    ASSERT_FALSE(status);
    EXPECT_EQ(status.error(), QStringLiteral("Not a git repository (or any of the parent directories): .git."));
    // Trace output before the complaint is passed over.
    ScopedEnvironment trace("GIT_TRACE", "1");
    const auto traced = read(tree.folder("plain"));
    ASSERT_FALSE(traced);
    EXPECT_EQ(traced.error(), status.error());
}

TEST_F(GitStatusFault, ADamagedHeadShowsGitsFirstLine)
{
    QFile head(repo.path(".git/HEAD").text());
    ASSERT_TRUE(head.open(QIODevice::WriteOnly | QIODevice::Truncate));
    head.write("this is not a ref\n");
    head.close();
    const QString errors = gitsOwnErrors(repo.root());
    ASSERT_TRUE(errors.startsWith(QStringLiteral("fatal: "))) << errors.toStdString();
    const auto status = read(repo.root());
    ASSERT_FALSE(status);
    EXPECT_EQ(status.error(), tidyGitLine(QStringView(errors).split(u'\n').first()));
    EXPECT_TRUE(status.error().startsWith(QStringLiteral("Not a git repository"))) << status.error().toStdString();
}

TEST_F(GitStatusFault, ADamagedIndexShowsGitsFirstLine)
{
    QFile index(repo.path(".git/index").text());
    ASSERT_TRUE(index.open(QIODevice::WriteOnly | QIODevice::Truncate));
    index.write("DIRC this is not an index at all");
    index.close();
    const QString errors = gitsOwnErrors(repo.root());
    ASSERT_FALSE(errors.isEmpty());
    const auto status = read(repo.root());
    ASSERT_FALSE(status);
    const QString expected = tidyGitLine(QStringView(errors).split(u'\n').first());
    EXPECT_EQ(status.error(), expected);
    EXPECT_FALSE(status.error().startsWith(QStringLiteral("fatal")));
    EXPECT_FALSE(status.error().startsWith(QStringLiteral("error")));
    EXPECT_TRUE(status.error().at(0).isUpper()) << status.error().toStdString();
    EXPECT_TRUE(status.error().endsWith(u'.'));
}

TEST_F(GitStatusFault, TheSharedStateKeepsTheReasonUntilARepairedReadSucceeds)
{
    Git git{gitExecutable(), nullptr};
    int signals = 0;
    QObject::connect(&git, &Git::statusChanged, [&] { ++signals; });
    const auto settle = [&] {
        git.refresh(repo.root());
        ASSERT_TRUE(test::waitUntil([&] { return !git.isRefreshing(repo.root()); }));
    };
    settle();
    ASSERT_TRUE(git.status(repo.root()));
    EXPECT_TRUE(git.statusFailure(repo.root()).isEmpty());
    EXPECT_EQ(signals, 1);

    const QByteArray head = test::readAll(repo.path(".git/HEAD"));
    QFile file(repo.path(".git/HEAD").text());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write("garbage\n");
    file.close();
    settle();
    EXPECT_FALSE(git.status(repo.root()));
    EXPECT_FALSE(git.badgeFor(repo.path("tracked.txt")));
    EXPECT_TRUE(git.statusFailure(repo.path("sub")).startsWith(QStringLiteral("Not a git repository")))
        << git.statusFailure(repo.root()).toStdString();
    EXPECT_EQ(signals, 2);
    settle(); // the same failure again changes nothing observable
    EXPECT_EQ(signals, 2);

    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(head);
    file.close();
    settle();
    ASSERT_TRUE(git.status(repo.root()));
    EXPECT_EQ(git.status(repo.root())->branch, QStringLiteral("main"));
    EXPECT_TRUE(git.statusFailure(repo.root()).isEmpty());
    EXPECT_EQ(signals, 3);
}

TEST(GitStatusFaultMessage, GitsLineBecomesASentence)
{
    struct Row {
        const char* name;
        const char* errors;
        int status;
        const char* sentence;
    };
    const Row rows[] = {
        {"fatal prefix", "fatal: not a git repository (or any of the parent directories): .git\n", 128,
         "Not a git repository (or any of the parent directories): .git."},
        {"first complaint wins", "error: bad index version 544499817\nfatal: index file corrupt\n", 128,
         "Bad index version 544499817."},
        {"warnings and trace before it are passed over",
         "warning: could not open directory 'x/': Permission denied\n"
         "12:00:00.123456 git.c:460               trace: built-in: git status\nfatal: bad object HEAD\n",
         128, "Bad object HEAD."},
        {"no complaint: the first line that isn't trace",
         "12:00:00.123456 git.c:460               trace: built-in: git status\nsomething odd happened\n", 1,
         "Something odd happened."},
        {"a full stop is not doubled", "fatal: it broke.\n", 1, "It broke."},
        {"a question keeps its mark", "error: what now?\n", 1, "What now?"},
        {"nothing said", "", 128, "Git stopped with exit status 128."},
        {"only blank lines", "\n  \n", 2, "Git stopped with exit status 2."},
        {"could not start", "couldn't start git: No such file or directory", -1,
         "Couldn't start git: No such file or directory."},
    };
    for (const Row& row : rows) {
        GitOutput result{row.status, QStringLiteral("## main"), QString::fromUtf8(row.errors), {}};
        EXPECT_EQ(gitFailureMessage(result), QString::fromUtf8(row.sentence)) << row.name;
    }
}

} // namespace
} // namespace orwick
