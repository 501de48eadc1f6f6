// The git actions as the window runs them: in the background, with the repository's busy label
// while they run, a status refresh after each, no answer to a caller that went away, and a
// discard that keeps every file in the Trash as one undo step.

#include "GitActionFixture.h"
#include "fileops/FileOperations.h"
#include "git/Git.h"
#include "git/GitActions.h"
#include "platform/XdgPaths.h"

#include <QDir>
#include <QFile>
#include <QTimer>
#include <QUndoStack>

namespace orwick {
namespace {

using test::GitActionTest;
using test::waitUntil;
namespace t = gittexts;

class GitActionsAsyncTest : public GitActionTest {
protected:
    void SetUp() override
    {
        GitActionTest::SetUp();
        QDir(xdg::homeTrash().text()).removeRecursively();
        QObject::connect(&git, &Git::busyChanged, [this](const FilePath& root) { labels.append(git.busy().value(root)); });
        operations.setReportErrors([this](const OperationOutcome& outcome) { reported += outcome.errors; });
    }
    // Runs `start` with a callback and waits for the outcome and for the refresh after it.
    GitOutcome wait(const std::function<void(GitActions::Finished)>& start)
    {
        std::optional<GitOutcome> outcome;
        start([&](GitOutcome result) { outcome = std::move(result); });
        EXPECT_TRUE(waitUntil([&] { return outcome.has_value() && operations.isIdle() && !git.isRefreshing(repo.root()); }, 20000));
        return outcome.value_or(GitOutcome::failure(QStringLiteral("no answer")));
    }
    int trashed() const { return int(QDir(xdg::homeTrash().child(QByteArrayView("files")).text()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden).size()); }

    Git git{gitExecutable(), nullptr};
    FileOperations operations;
    GitActions actions{git, operations};
    QUndoStack undo;
    QStringList labels; // the busy label after each change of it ("" when cleared)
    QStringList reported;
};

TEST_F(GitActionsAsyncTest, AnActionShowsItsBusyLabelThenRefreshesTheStatus)
{
    repo.write("a.txt", "a");
    repo.commitAll("base");
    const FilePath file = repo.write("a.txt", "changed");
    git.refresh(repo.root());
    ASSERT_TRUE(waitUntil([&] { return git.status(repo.root()) != nullptr; }));
    EXPECT_FALSE(git.status(repo.root())->files.first().isStaged);

    const GitOutcome staged = wait([&](auto done) { actions.stage(repo.root(), {file}, nullptr, done); });
    ASSERT_TRUE(staged) << staged.text().toStdString();
    EXPECT_EQ(labels, (QStringList{"Staging…", ""}));
    EXPECT_TRUE(git.busy().isEmpty());
    ASSERT_TRUE(waitUntil([&] { return git.status(repo.root())->files.first().isStaged; }))
        << "the badge follows without another refresh";

    labels.clear();
    const GitOutcome pushed = wait([&](auto done) { actions.push(repo.root(), nullptr, done); });
    EXPECT_EQ(pushed.message, t::noRemote());
    EXPECT_EQ(labels, (QStringList{"Pushing…", ""}));
}

TEST_F(GitActionsAsyncTest, AnIndexLockOfAnotherProgramIsWaitedForAndTheActionRunsOnceItGoes)
{
    repo.write("a.txt", "a");
    repo.commitAll("base");
    const FilePath file = repo.write("a.txt", "changed");
    const FilePath lock = repo.write(".git/index.lock", "");
    QTimer::singleShot(400, [lock] { QFile::remove(lock.text()); }); // the other program ends
    const GitOutcome staged = wait([&](auto done) { actions.stage(repo.root(), {file}, nullptr, done); });
    ASSERT_TRUE(staged) << staged.text().toStdString();
    EXPECT_EQ(labels, (QStringList{"Staging…", "Waiting for another git program…", ""}));
    EXPECT_EQ(stagedNames(), QByteArray("a.txt\0", 6));
}

TEST_F(GitActionsAsyncTest, ReadsAnswerInTheBackgroundAndNotACallerThatWentAway)
{
    repo.write("a.txt", "a");
    repo.commitAll("First");
    std::optional<Result<QList<GitCommit>>> log;
    actions.log(repo.root(), std::nullopt, 10, nullptr, [&](Result<QList<GitCommit>> result) { log = std::move(result); });
    ASSERT_TRUE(waitUntil([&] { return log.has_value(); }));
    ASSERT_TRUE(*log);
    EXPECT_EQ((*log)->first().subject, QStringLiteral("First"));
    EXPECT_TRUE(labels.isEmpty()) << "reading sets no busy label";

    bool answered = false;
    auto* caller = new QObject;
    actions.branches(repo.root(), caller, [&](auto) { answered = true; });
    delete caller;
    bool later = false;
    actions.lastCommitMessage(repo.root(), nullptr, [&](Result<QString> message) { later = message && *message == "First"; });
    ASSERT_TRUE(waitUntil([&] { return later; }));
    EXPECT_FALSE(answered);
}

TEST_F(GitActionsAsyncTest, ABranchNameIsRefusedBeforeGitRuns)
{
    repo.write("a.txt", "a");
    repo.commitAll("base");
    const GitOutcome refused = wait([&](auto done) { actions.createBranch(repo.root(), QStringLiteral("my branch"), nullptr, done); });
    EXPECT_EQ(refused.message, QStringLiteral("“my branch” can’t be a branch name"));
    EXPECT_TRUE(labels.isEmpty());
}

TEST_F(GitActionsAsyncTest, DiscardKeepsEachFileInTheTrashAndOneUndoPutsThemBack)
{
    repo.write("tracked.txt", "committed\n");
    repo.write("gone.txt", "was here\n");
    repo.commitAll("base");
    const FilePath tracked = repo.write("tracked.txt", "my edit\n");
    const FilePath untracked = repo.write("new\nname.txt", "new file\n");
    const FilePath added = repo.write("added.txt", "staged new file\n");
    repo.git({"add", "added.txt"});
    repo.git({"rm", "-q", "gone.txt"});
    const FilePath gone = repo.path("gone.txt");

    const GitOutcome discarded = wait([&](auto done) { actions.discard(repo.root(), {tracked, untracked, added, gone}, &undo, nullptr, done); });
    ASSERT_TRUE(discarded) << discarded.text().toStdString();
    EXPECT_TRUE(reported.isEmpty()) << reported.join('\n').toStdString();
    EXPECT_EQ(test::readAll(tracked), QByteArray("committed\n"));
    EXPECT_EQ(test::readAll(gone), QByteArray("was here\n"));
    EXPECT_FALSE(test::exists(untracked));
    EXPECT_FALSE(test::exists(added));
    EXPECT_TRUE(stagedNames().isEmpty());
    EXPECT_EQ(trashed(), 3) << "the three versions that existed are in the Trash";
    EXPECT_EQ(undo.count(), 1);
    EXPECT_EQ(undo.undoText(), QStringLiteral("Discard Changes"));
    EXPECT_EQ(labels, (QStringList{"Discarding…", ""}));
    ASSERT_TRUE(waitUntil([&] { return git.status(repo.root()) && git.status(repo.root())->files.isEmpty(); }));

    undo.undo();
    ASSERT_TRUE(waitUntil([&] { return operations.isIdle(); }));
    EXPECT_TRUE(reported.isEmpty()) << reported.join('\n').toStdString();
    EXPECT_EQ(test::readAll(tracked), QByteArray("my edit\n"));
    EXPECT_EQ(test::readAll(untracked), QByteArray("new file\n"));
    EXPECT_EQ(test::readAll(added), QByteArray("staged new file\n"));
    EXPECT_FALSE(test::exists(gone)) << "it was deleted before the discard, and is again";
}

TEST_F(GitActionsAsyncTest, AFileThatCantGoToTheTrashIsLeftAlone)
{
    repo.write("tracked.txt", "committed\n");
    repo.commitAll("base");
    const FilePath tracked = repo.write("tracked.txt", "my edit\n");
    // The Trash can't be made: a file stands where its folder would be.
    QDir().mkpath(xdg::homeTrash().parent().text());
    QFile blocker(xdg::homeTrash().text());
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();

    const GitOutcome refused = wait([&](auto done) { actions.discard(repo.root(), {tracked}, &undo, nullptr, done); });
    QFile::remove(xdg::homeTrash().text());
    EXPECT_FALSE(refused);
    EXPECT_EQ(refused.message, t::couldNotDiscard());
    EXPECT_EQ(refused.detail, QStringLiteral("Couldn’t keep a copy of “tracked.txt”, so it wasn’t discarded."));
    EXPECT_EQ(reported, QStringList{refused.detail});
    EXPECT_EQ(test::readAll(tracked), QByteArray("my edit\n"));
    EXPECT_EQ(undo.count(), 0);
}

TEST_F(GitActionsAsyncTest, DiscardingSomeLinesKeepsTheWholeFileInTheTrashFirst)
{
    repo.write("lines.txt", "one\ntwo\nthree\n");
    repo.commitAll("base");
    const FilePath file = repo.write("lines.txt", "one\nTWO\nthree\nfour\n");
    // The hunk that changes "two", and not the one that adds "four".
    const QByteArray patch = "diff --git a/lines.txt b/lines.txt\n--- a/lines.txt\n+++ b/lines.txt\n"
                             "@@ -1,3 +1,3 @@\n one\n-two\n+TWO\n three\n";
    const GitOutcome discarded =
        wait([&](auto done) { actions.applyPatch(repo.root(), patch, PatchTarget::discard, file, &undo, nullptr, done); });
    ASSERT_TRUE(discarded) << discarded.text().toStdString();
    EXPECT_EQ(test::readAll(file), QByteArray("one\ntwo\nthree\nfour\n"));
    EXPECT_EQ(trashed(), 1);
    EXPECT_EQ(undo.undoText(), QStringLiteral("Discard Lines"));
    undo.undo();
    ASSERT_TRUE(waitUntil([&] { return operations.isIdle(); }));
    EXPECT_EQ(test::readAll(file), QByteArray("one\nTWO\nthree\nfour\n"));

    // Staging a hunk goes to the index only.
    ASSERT_TRUE(wait([&](auto done) { actions.applyPatch(repo.root(), patch, PatchTarget::stage, file, &undo, nullptr, done); }));
    EXPECT_EQ(repo.git({"show", ":lines.txt"}), QByteArray("one\nTWO\nthree\n"));
    ASSERT_TRUE(wait([&](auto done) { actions.applyPatch(repo.root(), patch, PatchTarget::unstage, file, &undo, nullptr, done); }));
    EXPECT_EQ(repo.git({"show", ":lines.txt"}), QByteArray("one\ntwo\nthree\n"));
}

} // namespace
} // namespace orwick
