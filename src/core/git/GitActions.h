#pragma once
// GitActions: the git actions of the review panel and the palette, run in the background so the
// window never waits for git. Each call runs the GitRepository action of the same name on the
// thread pool and, back on the interface thread:
//   - sets the repository's busy label in Git (Git::setBusy: "Pushing…") while a changing action
//     runs, and clears it when it ends (reads — log, branches, diffs, stashes — set none);
//   - asks Git for a status refresh after every changing action, so badges follow at once;
//   - calls `done` with the outcome, unless `context` was given and has been destroyed by then;
//     every action and read answers, with gitMissingMessage() when the Git service has gone.
// An action that finds another git program's index.lock waits for it to go (the busy label says
// so) and runs once more; if it stays, the outcome says so (indexLocked).
//
// Discarding changes goes through FileOperations: each file goes to the Trash first and the whole
// discard is one undo step on `undo` that puts the files back (FileOperations::keepAndReplace).
//
// `root` is the repository's root (Git::root); a file of a status is RepoStatus::pathOf(file), so a
// name that isn't UTF-8 reaches git as it is.
//
// A GitActions is a handle on the shared Git (which must outlive the work it starts); make one
// wherever an action is needed. All members must be called on the interface thread.

#include "git/GitRepository.h"
#include "git/GitTexts.h"

#include <QObject>
#include <QPointer>
#include <functional>

class QUndoStack;

namespace orwick {

class Git;
class FileOperations;

class GitActions {
public:
    template <class T>
    using Done = std::function<void(T)>;
    using Finished = Done<GitOutcome>;

    explicit GitActions(Git& git);
    // Uses `operations` for discards instead of FileOperations::shared() (tests).
    GitActions(Git& git, FileOperations& operations);

    // --- The index
    void stage(const FilePath& root, const QList<FilePath>& files, QObject* context = nullptr, Finished done = {});
    void unstage(const FilePath& root, const QList<FilePath>& files, QObject* context = nullptr, Finished done = {});
    // Applies a patch of some lines or a hunk. For PatchTarget::discard, `file` goes to the Trash
    // first and a copy comes back for git to change: one undo step on `undo` puts it back whole.
    void applyPatch(const FilePath& root, const QByteArray& patch, PatchTarget target, const FilePath& file,
                    QUndoStack* undo, QObject* context = nullptr, Finished done = {});
    // Back to the last commit: each file goes to the Trash first (one undo step on `undo`), then a
    // tracked file is restored from HEAD in the index and the working tree and an untracked one
    // stays in the Trash. A file that can't go to the Trash is left alone
    // (gittexts::couldNotKeepCopy).
    void discard(const FilePath& root, const QList<FilePath>& files, QUndoStack* undo, QObject* context = nullptr,
                 Finished done = {});

    // --- Commits
    void commit(const FilePath& root, const QString& message, bool amend, QObject* context = nullptr, Finished done = {});
    void lastCommitMessage(const FilePath& root, QObject* context, Done<Result<QString>> done);
    void log(const FilePath& root, const std::optional<FilePath>& file, int limit, QObject* context,
             Done<Result<QList<GitCommit>>> done);
    void show(const FilePath& root, const QString& commit, const std::optional<FilePath>& file, QObject* context,
              Done<Result<GitDiff>> done);
    void diff(const FilePath& root, const FilePath& file, bool staged, QObject* context, Done<Result<GitDiff>> done);

    // --- Branches
    void branches(const FilePath& root, QObject* context, Done<Result<QList<GitBranch>>> done);
    // Refused at once (no git run) when !isValidBranchName(name).
    void createBranch(const FilePath& root, const QString& name, QObject* context = nullptr, Finished done = {});
    void switchBranch(const FilePath& root, const QString& name, QObject* context = nullptr, Finished done = {});

    // --- Stashes
    void stash(const FilePath& root, const QString& message = {}, QObject* context = nullptr, Finished done = {});
    void stashes(const FilePath& root, QObject* context, Done<Result<QList<GitStash>>> done);
    void applyStash(const FilePath& root, const QString& ref, bool pop, QObject* context = nullptr, Finished done = {});
    // Applies the newest stash (keeps it); "Nothing to stash"-like failure when there is none.
    void applyLatestStash(const FilePath& root, QObject* context = nullptr, Finished done = {});
    void dropStash(const FilePath& root, const QString& ref, QObject* context = nullptr, Finished done = {});

    // --- Remotes
    void fetch(const FilePath& root, QObject* context = nullptr, Finished done = {});
    // needsPullChoice in the outcome: ask Rebase or Merge and call again with that mode.
    void pull(const FilePath& root, PullMode mode, QObject* context = nullptr, Finished done = {});
    void push(const FilePath& root, QObject* context = nullptr, Finished done = {});

    // --- Conflicts and operations under way
    void resolve(const FilePath& root, const FilePath& file, Resolution side, QObject* context = nullptr, Finished done = {});
    void continueOperation(const FilePath& root, QObject* context = nullptr, Finished done = {});
    void abortOperation(const FilePath& root, QObject* context = nullptr, Finished done = {});

    // The busy labels ("Pushing…") by action, as Git::busy() shows them.
    static QString busyLabel(const char* action);

private:
    void change(const FilePath& root, const char* action, std::function<GitOutcome(const GitRepository&)> work,
                QObject* context, Finished done);
    template <class T>
    void read(const FilePath& root, std::function<T(const GitRepository&)> work, QObject* context, Done<T> done);
    GitRepository repository(const FilePath& root) const;

    QPointer<Git> m_git;
    QPointer<FileOperations> m_operations;
};

} // namespace orwick
