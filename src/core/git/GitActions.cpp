#include "git/GitActions.h"

#include "async/Background.h"
#include "fileops/FileOperations.h"
#include "git/Git.h"
#include "git/GitRunner.h"
#include "git/RepoStatus.h"

#include <QThread>
#include <sys/stat.h>

namespace orwick {

namespace {

// Waits on a worker, up to `limit`, for another git program's index.lock to go. True when it went.
bool lockWentAway(const FilePath& root, std::chrono::milliseconds limit = std::chrono::seconds(5))
{
    const FilePath lock = gitFolder(root).child(QByteArrayView("index.lock"));
    const auto deadline = std::chrono::steady_clock::now() + limit;
    struct stat info;
    while (::lstat(lock.c_str(), &info) == 0) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        QThread::msleep(100);
    }
    return true;
}

// Calls `done` on the interface thread unless the caller's context went meanwhile.
template <class T>
struct Reply {
    QPointer<QObject> context;
    bool hadContext = false;
    std::function<void(T)> done;
    void operator()(T value) const
    {
        if (done && (!hadContext || context))
            done(std::move(value));
    }
};

template <class T>
Reply<T> replyTo(QObject* context, std::function<void(T)> done)
{
    return {context, context != nullptr, std::move(done)};
}

} // namespace

GitActions::GitActions(Git& git) : GitActions(git, FileOperations::shared()) {}

GitActions::GitActions(Git& git, FileOperations& operations) : m_git(&git), m_operations(&operations) {}

QString GitActions::busyLabel(const char* action)
{
    static const QHash<QByteArray, QString> labels{
        {"stage", QStringLiteral("Staging…")},
        {"unstage", QStringLiteral("Unstaging…")},
        {"discard", QStringLiteral("Discarding…")},
        {"commit", QStringLiteral("Committing…")},
        {"createBranch", QStringLiteral("Making the branch…")},
        {"switchBranch", QStringLiteral("Switching…")},
        {"stash", QStringLiteral("Stashing…")},
        {"applyStash", QStringLiteral("Applying the stash…")},
        {"dropStash", QStringLiteral("Deleting the stash…")},
        {"fetch", QStringLiteral("Fetching…")},
        {"pull", QStringLiteral("Pulling…")},
        {"push", QStringLiteral("Pushing…")},
        {"resolve", QStringLiteral("Resolving…")},
        {"continue", QStringLiteral("Continuing…")},
        {"abort", QStringLiteral("Aborting…")},
        {"waitForLock", QStringLiteral("Waiting for another git program…")},
    };
    return labels.value(QByteArray(action), QStringLiteral("Working…"));
}

GitRepository GitActions::repository(const FilePath& root) const
{
    return GitRepository(m_git ? m_git->executable() : std::nullopt, root);
}

void GitActions::change(const FilePath& root, const char* action, std::function<GitOutcome(const GitRepository&)> work,
                        QObject* context, Finished done)
{
    Git* git = m_git;
    if (!git) { // the service went: say so, so no caller waits for ever
        replyTo(context, std::move(done))(GitOutcome::failure(gitMissingMessage()));
        return;
    }
    git->setBusy(root, busyLabel(action));
    const QPointer<Git> guard(git);
    runInBackground(
        git,
        [repository = repository(root), work = std::move(work), guard, root]() {
            GitOutcome outcome = work(repository);
            if (outcome.indexLocked) {
                // Another git program is at work: say so, and go again once it is done.
                deliverToGui(guard, [root](Git& service) {
                    if (service.busy().contains(root))
                        service.setBusy(root, busyLabel("waitForLock"));
                });
                if (lockWentAway(root))
                    outcome = work(repository);
            }
            return outcome;
        },
        [git, root, reply = replyTo(context, std::move(done))](GitOutcome outcome) {
            git->clearBusy(root);
            git->refresh(root);
            reply(std::move(outcome));
        });
}

template <class T>
void GitActions::read(const FilePath& root, std::function<T(const GitRepository&)> work, QObject* context, Done<T> done)
{
    if (!m_git) { // every read answers a Result: say why there is nothing to read
        replyTo(context, std::move(done))(T(std::unexpected(gitMissingMessage())));
        return;
    }
    runInBackground(
        m_git.data(), [repository = repository(root), work = std::move(work)]() { return work(repository); },
        [reply = replyTo(context, std::move(done))](T value) { reply(std::move(value)); });
}

// --- The index

void GitActions::stage(const FilePath& root, const QList<FilePath>& files, QObject* context, Finished done)
{
    change(root, "stage", [files](const GitRepository& repo) { return repo.stage(files); }, context, std::move(done));
}

void GitActions::unstage(const FilePath& root, const QList<FilePath>& files, QObject* context, Finished done)
{
    change(root, "unstage", [files](const GitRepository& repo) { return repo.unstage(files); }, context, std::move(done));
}

namespace {

// A discard's outcome from what the engine handed on and what git said.
GitOutcome discardOutcome(const QList<FilePath>& asked, const QList<FilePath>& handed, const QStringList& gitErrors)
{
    QStringList problems;
    for (const FilePath& file : asked)
        if (!handed.contains(file))
            problems.append(gittexts::couldNotKeepCopy(file.fileName()));
    problems += gitErrors;
    if (problems.isEmpty())
        return GitOutcome::success();
    return GitOutcome::failure(gittexts::couldNotDiscard(), problems.join(u'\n'));
}

} // namespace

void GitActions::applyPatch(const FilePath& root, const QByteArray& patch, PatchTarget target, const FilePath& file,
                            QUndoStack* undo, QObject* context, Finished done)
{
    if (target != PatchTarget::discard) {
        change(root, target == PatchTarget::stage ? "stage" : "unstage",
               [patch, target](const GitRepository& repo) { return repo.applyPatch(patch, target); }, context, std::move(done));
        return;
    }
    Git* git = m_git;
    if (!git || !m_operations || !git->isAvailable()) { // nothing is kept in the Trash for a git that can't run
        replyTo(context, std::move(done))(GitOutcome::failure(gitMissingMessage()));
        return;
    }
    git->setBusy(root, busyLabel("discard"));
    const GitRepository repo = repository(root);
    auto gitErrors = std::make_shared<QStringList>(); // written on the worker, read after the job
    FileOperations::RewriteTexts texts{QStringLiteral("Discarding lines"), QStringLiteral("Discard Lines"),
                                       QStringLiteral("Discarded lines in"), QStringLiteral("arrow.uturn.backward")};
    m_operations->keepAndReplace(
        {file}, true, texts, [](const FilePath& item) { return gittexts::couldNotKeepCopy(item.fileName()); },
        [repo, patch, gitErrors](const QList<FilePath>&) {
            const GitOutcome outcome = repo.applyPatch(patch, PatchTarget::discard);
            if (!outcome)
                gitErrors->append(outcome.detail.isEmpty() ? outcome.message : outcome.detail);
            return *gitErrors;
        },
        undo,
        [guard = QPointer<Git>(git), root, file, gitErrors, reply = replyTo(context, std::move(done))](const QList<FilePath>& handed) {
            if (guard) {
                guard->clearBusy(root);
                guard->refresh(root);
            }
            reply(discardOutcome({file}, handed, *gitErrors));
        });
}

void GitActions::discard(const FilePath& root, const QList<FilePath>& files, QUndoStack* undo, QObject* context, Finished done)
{
    Git* git = m_git;
    if (files.isEmpty()) {
        replyTo(context, std::move(done))(GitOutcome::success());
        return;
    }
    if (!git || !m_operations || !git->isAvailable()) {
        replyTo(context, std::move(done))(GitOutcome::failure(gitMissingMessage()));
        return;
    }
    git->setBusy(root, busyLabel("discard"));
    const GitRepository repo = repository(root);
    auto gitErrors = std::make_shared<QStringList>();
    FileOperations::RewriteTexts texts{QStringLiteral("Discarding changes"), QStringLiteral("Discard Changes"),
                                       QStringLiteral("Discarded changes to"), QStringLiteral("arrow.uturn.backward")};
    m_operations->keepAndReplace(
        files, false, texts, [](const FilePath& item) { return gittexts::couldNotKeepCopy(item.fileName()); },
        [repo, gitErrors](const QList<FilePath>& items) {
            const GitOutcome outcome = repo.restoreFromHead(items);
            if (!outcome)
                gitErrors->append(outcome.detail.isEmpty() ? outcome.message : outcome.detail);
            return *gitErrors;
        },
        undo,
        [guard = QPointer<Git>(git), root, files, gitErrors, reply = replyTo(context, std::move(done))](const QList<FilePath>& handed) {
            if (guard) {
                guard->clearBusy(root);
                guard->refresh(root);
            }
            reply(discardOutcome(files, handed, *gitErrors));
        });
}

// --- Commits

void GitActions::commit(const FilePath& root, const QString& message, bool amend, QObject* context, Finished done)
{
    change(root, "commit", [message, amend](const GitRepository& repo) { return repo.commit(message, amend); }, context,
           std::move(done));
}

void GitActions::lastCommitMessage(const FilePath& root, QObject* context, Done<Result<QString>> done)
{
    read<Result<QString>>(root, [](const GitRepository& repo) { return repo.lastCommitMessage(); }, context, std::move(done));
}

void GitActions::log(const FilePath& root, const std::optional<FilePath>& file, int limit, QObject* context,
                     Done<Result<QList<GitCommit>>> done)
{
    read<Result<QList<GitCommit>>>(root, [file, limit](const GitRepository& repo) { return repo.log(file, limit); }, context,
                                   std::move(done));
}

void GitActions::show(const FilePath& root, const QString& commit, const std::optional<FilePath>& file, QObject* context,
                      Done<Result<GitDiff>> done)
{
    read<Result<GitDiff>>(root, [commit, file](const GitRepository& repo) { return repo.show(commit, file); }, context,
                          std::move(done));
}

void GitActions::diff(const FilePath& root, const FilePath& file, bool staged, QObject* context, Done<Result<GitDiff>> done)
{
    read<Result<GitDiff>>(root, [file, staged](const GitRepository& repo) { return repo.diff(file, staged); }, context,
                          std::move(done));
}

// --- Branches

void GitActions::branches(const FilePath& root, QObject* context, Done<Result<QList<GitBranch>>> done)
{
    read<Result<QList<GitBranch>>>(root, [](const GitRepository& repo) { return repo.branches(); }, context, std::move(done));
}

void GitActions::createBranch(const FilePath& root, const QString& name, QObject* context, Finished done)
{
    if (!isValidBranchName(name)) { // refused before git runs
        replyTo(context, std::move(done))(GitOutcome::failure(gittexts::notABranchName(name), gittexts::branchNameRule()));
        return;
    }
    change(root, "createBranch", [name](const GitRepository& repo) { return repo.createBranch(name); }, context, std::move(done));
}

void GitActions::switchBranch(const FilePath& root, const QString& name, QObject* context, Finished done)
{
    change(root, "switchBranch", [name](const GitRepository& repo) { return repo.switchBranch(name); }, context, std::move(done));
}

// --- Stashes

void GitActions::stash(const FilePath& root, const QString& message, QObject* context, Finished done)
{
    change(root, "stash", [message](const GitRepository& repo) { return repo.stash(message); }, context, std::move(done));
}

void GitActions::stashes(const FilePath& root, QObject* context, Done<Result<QList<GitStash>>> done)
{
    read<Result<QList<GitStash>>>(root, [](const GitRepository& repo) { return repo.stashes(); }, context, std::move(done));
}

void GitActions::applyStash(const FilePath& root, const QString& ref, bool pop, QObject* context, Finished done)
{
    change(root, "applyStash", [ref, pop](const GitRepository& repo) { return repo.applyStash(ref, pop); }, context,
           std::move(done));
}

void GitActions::applyLatestStash(const FilePath& root, QObject* context, Finished done)
{
    change(root, "applyStash", [](const GitRepository& repo) {
        const auto list = repo.stashes();
        if (!list)
            return GitOutcome::failure(gittexts::couldNotApplyStash(), list.error());
        if (list->isEmpty())
            return GitOutcome::failure(gittexts::couldNotApplyStash(), QStringLiteral("There is no stash to apply."));
        return repo.applyStash(list->first().ref, false);
    }, context, std::move(done));
}

void GitActions::dropStash(const FilePath& root, const QString& ref, QObject* context, Finished done)
{
    change(root, "dropStash", [ref](const GitRepository& repo) { return repo.dropStash(ref); }, context, std::move(done));
}

// --- Remotes

void GitActions::fetch(const FilePath& root, QObject* context, Finished done)
{
    change(root, "fetch", [](const GitRepository& repo) { return repo.fetch(); }, context, std::move(done));
}

void GitActions::pull(const FilePath& root, PullMode mode, QObject* context, Finished done)
{
    change(root, "pull", [mode](const GitRepository& repo) { return repo.pull(mode); }, context, std::move(done));
}

void GitActions::push(const FilePath& root, QObject* context, Finished done)
{
    change(root, "push", [](const GitRepository& repo) { return repo.push(); }, context, std::move(done));
}

// --- Conflicts and operations under way

void GitActions::resolve(const FilePath& root, const FilePath& file, Resolution side, QObject* context, Finished done)
{
    change(root, "resolve", [file, side](const GitRepository& repo) { return repo.resolve(file, side); }, context,
           std::move(done));
}

void GitActions::continueOperation(const FilePath& root, QObject* context, Finished done)
{
    change(root, "continue", [](const GitRepository& repo) { return repo.continueOperation(); }, context, std::move(done));
}

void GitActions::abortOperation(const FilePath& root, QObject* context, Finished done)
{
    change(root, "abort", [](const GitRepository& repo) { return repo.abortOperation(); }, context, std::move(done));
}

} // namespace orwick
