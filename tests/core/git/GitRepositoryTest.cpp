// The git actions against the real git: the index, commits, branches and stashes, in a
// repository without commits too, and names that are hard to pass along.

#include "GitActionFixture.h"
#include "git/GitTexts.h"
#include "git/StatusReader.h"

#include <QFile>
#include <unistd.h>

namespace orwick {
namespace {

using test::GitActionTest;
using test::GitTestRepo;
namespace t = gittexts;

QList<QByteArray> namesOf(const QByteArray& nulSeparated)
{
    QList<QByteArray> names = nulSeparated.split('\0');
    names.removeAll(QByteArray());
    std::sort(names.begin(), names.end());
    return names;
}

TEST_F(GitActionTest, StagesAndUnstagesNamesWithBlanksNewlinesBytesAndPatternCharacters)
{
    repo.write("base.txt", "base");
    repo.commitAll("base");
    test::TempTree& files = tree;
    const QList<QByteArray> names{"a b.txt", "new\nline.txt", "caf\xe9.txt", "*.txt"};
    QList<FilePath> paths;
    for (const QByteArray& name : names)
        paths.append(files.file(QByteArray("repo/") + name, "x"));
    // "*.txt" is a name here, not a pattern: staging it alone stages only it.
    ASSERT_TRUE(actions().stage({paths.last()}));
    EXPECT_EQ(namesOf(stagedNames()), QList<QByteArray>{"*.txt"});

    const GitOutcome staged = actions().stage(paths);
    ASSERT_TRUE(staged) << staged.text().toStdString();
    QList<QByteArray> expected = names;
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(namesOf(stagedNames()), expected);

    const GitOutcome unstaged = actions().unstage({paths[1], paths[2]});
    ASSERT_TRUE(unstaged) << unstaged.text().toStdString();
    EXPECT_EQ(namesOf(stagedNames()), (QList<QByteArray>{"*.txt", "a b.txt"}));
    ::unlink(paths[2].c_str()); // the temporary folder's clean-up reads names as text
}

TEST_F(GitActionTest, ARepositoryWithoutCommitsStagesUnstagesReadsAndCommits)
{
    const FilePath file = repo.write("first.txt", "one\ntwo\n");
    EXPECT_EQ(actions().log()->size(), 0);
    EXPECT_EQ(*actions().lastCommitMessage(), QString());
    EXPECT_TRUE(actions().branches()->isEmpty());
    EXPECT_TRUE(actions().stashes()->isEmpty());

    // An untracked file's diff is all new lines.
    const auto untracked = actions().diff(file, false);
    ASSERT_TRUE(untracked) << untracked.error().toStdString();
    EXPECT_TRUE(untracked->text.contains(QLatin1StringView("+one\n+two\n"))) << untracked->text.toStdString();

    ASSERT_TRUE(actions().stage({file}));
    EXPECT_EQ(namesOf(stagedNames()), QList<QByteArray>{"first.txt"});
    const auto staged = actions().diff(file, true);
    ASSERT_TRUE(staged);
    EXPECT_TRUE(staged->text.contains(QLatin1StringView("+one"))) << staged->text.toStdString();
    ASSERT_TRUE(actions().unstage({file}));
    EXPECT_TRUE(stagedNames().isEmpty());
    EXPECT_TRUE(QFile::exists(file.text())) << "unstaging never touches the file";

    const GitOutcome stash = actions().stash();
    EXPECT_FALSE(stash);
    EXPECT_EQ(stash.message, t::couldNotStash());

    ASSERT_TRUE(actions().stage({file}));
    const GitOutcome committed = actions().commit(QStringLiteral("First"));
    ASSERT_TRUE(committed) << committed.text().toStdString();
    const auto log = actions().log();
    ASSERT_EQ(log->size(), 1);
    EXPECT_EQ(log->first().subject, QStringLiteral("First"));
    EXPECT_EQ(log->first().author, QStringLiteral("Orwick Test"));
    EXPECT_EQ(log->first().hash, head());
    EXPECT_TRUE(head().startsWith(log->first().shortHash));
}

TEST_F(GitActionTest, CommitsAmendsWithTheLastMessageAndSaysWhenNothingIsStaged)
{
    repo.write("a.txt", "a");
    repo.commitAll("base");
    const FilePath file = repo.write("a.txt", "changed");
    const GitOutcome nothing = actions().commit(QStringLiteral("Nothing"));
    EXPECT_FALSE(nothing);
    EXPECT_EQ(nothing.message, t::couldNotCommit());
    EXPECT_EQ(nothing.detail, QStringLiteral("Nothing is staged to commit."));

    ASSERT_TRUE(actions().stage({file}));
    ASSERT_TRUE(actions().commit(QStringLiteral("Change a\n\nWith a body.")));
    EXPECT_EQ(*actions().lastCommitMessage(), QStringLiteral("Change a\n\nWith a body."));
    const QString before = head();
    ASSERT_TRUE(actions().commit(QStringLiteral("Change a, amended"), true));
    EXPECT_NE(head(), before);
    EXPECT_EQ(actions().log()->size(), 2) << "an amend replaces the last commit";
    EXPECT_EQ(*actions().lastCommitMessage(), QStringLiteral("Change a, amended"));
}

TEST_F(GitActionTest, AFailingCommitHookShowsItsOwnWordsAndOneWaitingForInputDoesNotHang)
{
    repo.write("a.txt", "a");
    repo.commitAll("base");
    const FilePath hook = repo.write(".git/hooks/pre-commit", "#!/bin/sh\necho 'Lint found 3 problems' >&2\nexit 1\n");
    QFile::setPermissions(hook.text(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const FilePath file = repo.write("a.txt", "b");
    ASSERT_TRUE(actions().stage({file}));
    const GitOutcome refused = actions().commit(QStringLiteral("Blocked"));
    EXPECT_FALSE(refused);
    EXPECT_EQ(refused.message, t::couldNotCommit());
    EXPECT_EQ(refused.detail, QStringLiteral("Lint found 3 problems"));

    // A hook that asks a question reads the end of its input and goes on.
    repo.write(".git/hooks/pre-commit", "#!/bin/sh\nprintf 'Really? ' >&2\nread answer || exit 0\nexit 1\n");
    EXPECT_TRUE(actions().commit(QStringLiteral("Asked")));
}

TEST_F(GitActionTest, BranchesAreMadeSwitchedAndListedMostRecentFirst)
{
    repo.write("a.txt", "a");
    qputenv("GIT_COMMITTER_DATE", "2020-01-01T00:00:00Z");
    repo.commitAll("base");
    ASSERT_TRUE(actions().createBranch(QStringLiteral("feature")));
    EXPECT_EQ(gitText({"branch", "--show-current"}), QStringLiteral("feature"));
    repo.write("b.txt", "b");
    qputenv("GIT_COMMITTER_DATE", "2021-01-01T00:00:00Z");
    repo.commitAll("on feature");
    qunsetenv("GIT_COMMITTER_DATE");
    ASSERT_TRUE(actions().switchBranch(QStringLiteral("main")));

    const auto branches = actions().branches();
    ASSERT_TRUE(branches);
    ASSERT_EQ(branches->size(), 2);
    EXPECT_EQ(branches->at(0).name, QStringLiteral("feature"));
    EXPECT_FALSE(branches->at(0).isCurrent);
    EXPECT_EQ(branches->at(0).date, QDateTime::fromString(QStringLiteral("2021-01-01T00:00:00Z"), Qt::ISODate));
    EXPECT_EQ(branches->at(1).name, QStringLiteral("main"));
    EXPECT_TRUE(branches->at(1).isCurrent);
    EXPECT_FALSE(branches->at(1).upstream);

    const GitOutcome missing = actions().switchBranch(QStringLiteral("nowhere"));
    EXPECT_FALSE(missing);
    EXPECT_EQ(missing.message, QStringLiteral("Couldn’t switch to nowhere"));
    EXPECT_FALSE(missing.detail.isEmpty());
    const GitOutcome taken = actions().createBranch(QStringLiteral("feature"));
    EXPECT_EQ(taken.message, t::couldNotMakeBranch());
    EXPECT_TRUE(taken.detail.contains(QLatin1StringView("already exists"))) << taken.detail.toStdString();
}

TEST_F(GitActionTest, BranchNamesWithSpacesDotsOrSpecialCharactersAreRefusedBeforeGitRuns)
{
    for (const char* name : {"has space", "a..b", "tilde~", "caret^", "colon:", "what?", "star*", "bracket[", "back\\slash", ""})
        EXPECT_FALSE(isValidBranchName(QString::fromUtf8(name))) << name;
    for (const char* name : {"feature/login", "fix-2", "v1.2", "naïve"})
        EXPECT_TRUE(isValidBranchName(QString::fromUtf8(name))) << name;

    // No git at all: the name is refused before git would have been needed.
    const GitOutcome refused = GitRepository(std::nullopt, repo.root()).createBranch(QStringLiteral("has space"));
    EXPECT_EQ(refused.message, QStringLiteral("“has space” can’t be a branch name"));
    EXPECT_EQ(refused.detail, QStringLiteral("Branch names can’t have spaces, “..”, or any of ~ ^ : ? * [ \\."));
    repo.write("a.txt", "a");
    repo.commitAll("base");
    EXPECT_EQ(actions().createBranch(QStringLiteral("a..b")).message, QStringLiteral("“a..b” can’t be a branch name"));
    EXPECT_EQ(actions().branches()->size(), 1);
}

TEST_F(GitActionTest, StashesChangesWithUntrackedFilesAndAppliesPopsAndDrops)
{
    repo.write("tracked.txt", "one");
    repo.commitAll("base");
    const FilePath tracked = repo.write("tracked.txt", "two");
    const FilePath untracked = repo.write("new file.txt", "new");

    const GitOutcome stashed = actions().stash(QStringLiteral("half done"));
    ASSERT_TRUE(stashed) << stashed.text().toStdString();
    EXPECT_EQ(stashed.message, QString());
    EXPECT_EQ(test::readAll(tracked), QByteArray("one"));
    EXPECT_FALSE(QFile::exists(untracked.text())) << "untracked files go into the stash too";
    EXPECT_EQ(actions().stash().message, t::nothingToStash());

    auto stashes = actions().stashes();
    ASSERT_TRUE(stashes);
    ASSERT_EQ(stashes->size(), 1);
    EXPECT_EQ(stashes->first().ref, QStringLiteral("stash@{0}"));
    EXPECT_TRUE(stashes->first().message.endsWith(QLatin1StringView("half done"))) << stashes->first().message.toStdString();
    EXPECT_TRUE(stashes->first().date.has_value());

    const GitOutcome popped = actions().applyStash(stashes->first().ref, true);
    ASSERT_TRUE(popped) << popped.text().toStdString();
    EXPECT_EQ(popped.message, QStringLiteral("Stash applied and removed"));
    EXPECT_EQ(test::readAll(tracked), QByteArray("two"));
    EXPECT_EQ(test::readAll(untracked), QByteArray("new"));
    EXPECT_TRUE(actions().stashes()->isEmpty());

    ASSERT_TRUE(actions().stash());
    ASSERT_TRUE(actions().applyStash(QStringLiteral("stash@{0}"), false));
    EXPECT_EQ(actions().stashes()->size(), 1) << "apply keeps the stash";
    ASSERT_TRUE(actions().dropStash(QStringLiteral("stash@{0}")));
    EXPECT_TRUE(actions().stashes()->isEmpty());
    const GitOutcome gone = actions().dropStash(QStringLiteral("stash@{0}"));
    EXPECT_EQ(gone.message, t::couldNotDropStash());
    EXPECT_EQ(actions().applyStash(QStringLiteral("stash@{3}"), true).message, t::couldNotApplyStash());
}

TEST_F(GitActionTest, WithoutGitEveryActionSaysGitIsNotInstalled)
{
    const GitRepository none(std::nullopt, repo.root());
    EXPECT_FALSE(none.hasGit());
    for (const GitOutcome& outcome : {none.stage({repo.path("a")}), none.commit(QStringLiteral("x")), none.fetch(),
                                      none.pull(PullMode::merge), none.push(), none.stash(), none.switchBranch("main")}) {
        EXPECT_FALSE(outcome);
        EXPECT_EQ(outcome.message, QStringLiteral("git isn't installed"));
    }
    EXPECT_EQ(none.log().error(), QStringLiteral("git isn't installed"));
}

TEST_F(GitActionTest, AnIndexLockOfAnotherProgramGivesItsMessage)
{
    repo.write("a.txt", "a");
    repo.commitAll("base");
    const FilePath file = repo.write("a.txt", "b");
    repo.write(".git/index.lock", "");
    const GitOutcome locked = actions().stage({file});
    EXPECT_FALSE(locked);
    EXPECT_TRUE(locked.indexLocked);
    EXPECT_EQ(locked.message, t::indexLocked());
    QFile::remove(repo.path(".git/index.lock").text());
    EXPECT_TRUE(actions().stage({file}));
}

TEST_F(GitActionTest, DiffsAreCutAfterTenThousandLinesAndBinaryFilesAreSaidSo)
{
    QByteArray many;
    for (int i = 0; i < 12000; ++i)
        many += "line " + QByteArray::number(i) + '\n';
    const FilePath big = repo.write("big.txt", "");
    const FilePath binary = repo.write("image.bin", QByteArray("\x89PNG\0\0\0\x01", 8));
    repo.commitAll("base");
    repo.write("big.txt", many);
    repo.write("image.bin", QByteArray("\x89PNG\0\0\0\x02", 8));

    const auto cut = actions().diff(big, false);
    ASSERT_TRUE(cut);
    EXPECT_TRUE(cut->truncated);
    EXPECT_GT(cut->totalLines, 12000);
    EXPECT_EQ(cut->patch.count('\n'), kMaxDiffLines);
    EXPECT_EQ(cut->note, QStringLiteral("Only the first 10,000 of %1 lines are shown.").arg(QLocale().toString(cut->totalLines)));

    const auto bin = actions().diff(binary, false);
    ASSERT_TRUE(bin);
    EXPECT_TRUE(bin->isBinary);
    EXPECT_EQ(bin->note, t::binaryFile());

    // Staged: only what is in the index.
    EXPECT_TRUE(actions().diff(big, true)->patch.isEmpty());
    ASSERT_TRUE(actions().stage({big}));
    EXPECT_TRUE(actions().diff(big, true)->truncated);
}

TEST_F(GitActionTest, LogFollowsOneFileThroughARenameAndShowGivesACommitsPatch)
{
    repo.write("old name.txt", "a\n");
    repo.commitAll("Add the file");
    repo.write("other.txt", "o\n");
    repo.commitAll("Another file");
    repo.git({"mv", "old name.txt", "new name.txt"});
    repo.commitAll("Rename it");
    repo.write("new name.txt", "a\nb\n");
    repo.commitAll("Grow it");

    const auto all = actions().log();
    ASSERT_TRUE(all);
    EXPECT_EQ(all->size(), 4);
    EXPECT_EQ(all->first().subject, QStringLiteral("Grow it"));
    EXPECT_EQ(actions().log(std::nullopt, 2)->size(), 2);
    const auto followed = actions().log(repo.path("new name.txt"));
    ASSERT_TRUE(followed);
    QStringList subjects;
    for (const GitCommit& commit : *followed)
        subjects.append(commit.subject);
    EXPECT_EQ(subjects, (QStringList{"Grow it", "Rename it", "Add the file"}));

    const auto patch = actions().show(followed->first().hash);
    ASSERT_TRUE(patch) << patch.error().toStdString();
    EXPECT_TRUE(patch->text.startsWith(QLatin1StringView("diff --git"))) << patch->text.toStdString();
    EXPECT_TRUE(patch->text.contains(QLatin1StringView("+b\n")));
    const auto renamed = actions().show(followed->at(1).hash, repo.path("new name.txt"));
    ASSERT_TRUE(renamed);
    EXPECT_FALSE(actions().show(QStringLiteral("0123456789abcdef")));
}

} // namespace
} // namespace orwick
