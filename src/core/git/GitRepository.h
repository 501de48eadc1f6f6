#pragma once
// GitRepository: the git actions on one repository, each one blocking call that runs git through
// the runner (GitRunner.h) with its fixed arguments and reads the answer. The window reaches them
// through GitActions.h, which runs them in the background; orwick-cli and the tests call them
// directly.
//
// Paths are FilePaths (bytes): a name with blanks, a newline or bytes that aren't UTF-8 reaches
// git exactly as it is on disk. Pathspecs are literal (GIT_LITERAL_PATHSPECS), so a file called
// "*.txt" means that file only. Every action answers with a GitOutcome: success (perhaps with a
// short note such as "Already up to date"), or the message people read, built from the message
// table of GitTexts.h and git's own words tidied by tidyGitOutput() (GitMessage.h).
//
// Without git every action answers "git isn't installed". Safe to use from any thread; one
// instance is a pair of paths and may be copied freely.

#include "base/FilePath.h"
#include "base/Result.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <optional>

namespace orwick {

struct GitCommit {
    QString hash;      // full
    QString shortHash;
    QString author;
    QDateTime date;    // commit time
    QString subject;
    bool operator==(const GitCommit&) const = default;
};

struct GitBranch {
    QString name;
    bool isCurrent = false;
    std::optional<QString> upstream; // "origin/main"
    std::optional<QDateTime> date;   // of its last commit
    bool operator==(const GitBranch&) const = default;
};

struct GitStash {
    QString ref;     // "stash@{0}"
    QString message; // "On main: half done"
    std::optional<QDateTime> date;
    bool operator==(const GitStash&) const = default;
};

enum class PullMode { rebase, merge, fastForwardOnly };
enum class Resolution { ours, theirs };

// What a patch from the diff does (a line or hunk of the review's diff).
enum class PatchTarget {
    stage,   // "apply", "--cached": into the index
    unstage, // "apply", "--cached", "--reverse": out of the index
    discard, // "apply", "--reverse": out of the working tree (GitActions keeps the file in the Trash first)
};

// How an action ended.
struct GitOutcome {
    bool ok = true;
    // Failure: the table's sentence ("Couldn’t fetch", "Both sides have new commits").
    // Success: a note worth showing ("Already up to date", "Stash applied and removed"), or empty.
    QString message;
    // Under a failure: git's words, tidied, or the table's explanation. Empty when there are none.
    QString detail;
    // Pull was refused because the branch and its upstream both have new commits: ask Rebase or
    // Merge (GitTexts: pullChoiceExplanation) and pull again with that mode.
    bool needsPullChoice = false;
    // Another git program holds the repository's index.lock (GitActions retries once it goes).
    bool indexLocked = false;

    explicit operator bool() const { return ok; }
    // The message and the detail on lines of their own, as a toast or the command line shows it.
    QString text() const;

    static GitOutcome success(QString note = {}) { return {true, std::move(note), {}}; }
    static GitOutcome failure(QString message, QString detail = {}) { return {false, std::move(message), std::move(detail)}; }
};

// A file's diff, or a commit's patch, as git printed it.
struct GitDiff {
    QByteArray patch;       // git's bytes (the first kMaxDiffLines lines), what patches are built from
    QString text;           // the same as text, invalid UTF-8 replaced, for showing
    bool isBinary = false;  // git found a binary file: `note` says so and there are no lines
    bool truncated = false; // longer than kMaxDiffLines: cut there, and `note` says so
    QString note;           // said below (or instead of) the diff; empty for a whole text diff
    int totalLines = 0;     // lines git printed, cut or not
};
inline constexpr int kMaxDiffLines = 10000;

class GitRepository {
public:
    // `executable`: the git to run (gitExecutable()); none means git isn't installed.
    GitRepository(std::optional<FilePath> executable, FilePath root);
    // The repository holding `folder` with the git on PATH; none outside a repository.
    static std::optional<GitRepository> containing(const FilePath& folder);

    const FilePath& root() const { return m_root; }
    bool hasGit() const { return m_executable.has_value(); }

    // --- The index: "add", "--", path… / "restore", "--staged", "--", path…
    GitOutcome setStaged(const QList<FilePath>& files, bool staged) const;
    GitOutcome stage(const QList<FilePath>& files) const { return setStaged(files, true); }
    GitOutcome unstage(const QList<FilePath>& files) const { return setStaged(files, false); }
    // Applies a patch built from diff() (a hunk or some lines), read by git from its input.
    GitOutcome applyPatch(const QByteArray& patch, PatchTarget target) const;
    // Puts `files` back as the last commit has them, in the index and the working tree; a file
    // the last commit hasn't got leaves the index. Doesn't touch untracked files and keeps no
    // copy: GitActions::discard keeps the copies in the Trash and calls this.
    GitOutcome restoreFromHead(const QList<FilePath>& files) const;

    // --- Commits
    // "commit", "-m", message (and "--amend").
    GitOutcome commit(const QString& message, bool amend = false) const;
    // "log", "-1", "--format=%B": the last commit's message (to start an amend), without the
    // final line feed; empty when there are no commits.
    Result<QString> lastCommitMessage() const;
    // The newest `limit` commits of the current branch, or of `file` with "--follow". Empty when
    // there are no commits yet.
    Result<QList<GitCommit>> log(const std::optional<FilePath>& file = std::nullopt, int limit = 500) const;
    // "show", "--format=", "--patch", "-M", "--no-color", commit (and "--", path).
    Result<GitDiff> show(const QString& commit, const std::optional<FilePath>& file = std::nullopt) const;
    // The diff of one file: staged ("diff", "--cached", "--no-color", "--", path) or not ("diff",
    // "HEAD", "--no-color", "--", path). An untracked file shows as all new lines; in a
    // repository without commits an unstaged diff is against the index.
    Result<GitDiff> diff(const FilePath& file, bool staged) const;

    // --- Branches
    // Local branches, most recently committed first.
    Result<QList<GitBranch>> branches() const;
    // Checks isValidBranchName before git runs, then "switch", "-c", name.
    GitOutcome createBranch(const QString& name) const;
    // "switch", name.
    GitOutcome switchBranch(const QString& name) const;
    // "remote": one name per line.
    Result<QStringList> remotes() const;

    // --- Stashes
    // "stash", "push", "--include-untracked" (and "-m", message). "Nothing to stash" when clean.
    GitOutcome stash(const QString& message = {}) const;
    // Newest first: the first is the latest.
    Result<QList<GitStash>> stashes() const;
    // "stash", "apply", ref; with pop, then "stash", "drop", ref ("Stash applied and removed").
    GitOutcome applyStash(const QString& ref, bool pop) const;
    GitOutcome dropStash(const QString& ref) const;

    // --- Remotes
    // "fetch", "--all", "--prune"; "Fetched: up to date" when nothing came.
    GitOutcome fetch() const;
    // "pull" and "--rebase", "--no-rebase" or "--ff-only"; "Already up to date" when nothing
    // came; needsPullChoice when fast-forward only was refused because both sides moved.
    GitOutcome pull(PullMode mode) const;
    // "push"; when that fails: the no-remote message without remotes, else "push",
    // "--set-upstream", "origin" (or the first remote), "HEAD".
    GitOutcome push() const;

    // --- Conflicts and operations under way
    // "checkout", "--ours"/"--theirs", "--", path; then "add", "--", path.
    GitOutcome resolve(const FilePath& file, Resolution side) const;
    // "Rebasing", "Merging" or "Cherry-picking" while one is under way (read from the disk now).
    std::optional<QString> operation() const;
    // merge: "commit", "--no-edit"; rebase or cherry-pick: "--continue". Fails when none is under way.
    GitOutcome continueOperation() const;
    // "merge"/"rebase"/"cherry-pick", "--abort".
    GitOutcome abortOperation() const;

private:
    std::optional<FilePath> m_executable;
    FilePath m_root;
};

// True when git can take `name` as a new branch's name as far as people type them: no space,
// no "..", none of ~ ^ : ? * [ \ (GitTexts: branchNameRule, notABranchName).
bool isValidBranchName(const QString& name);

} // namespace orwick
