#include "git/GitRepository.h"

#include "git/GitMessage.h"
#include "git/GitOutputParse.h"
#include "git/GitRunner.h"
#include "git/GitTexts.h"
#include "git/RepoStatus.h"
#include "git/RepositoryRoot.h"

#include <QSet>

namespace orwick {

namespace t = gittexts;

QString GitOutcome::text() const
{
    if (message.isEmpty())
        return detail;
    if (detail.isEmpty())
        return message;
    return message + u'\n' + detail;
}

bool isValidBranchName(const QString& name)
{
    if (name.isEmpty() || name.contains(QLatin1StringView("..")))
        return false;
    for (const QChar c : name)
        if (c.isSpace() || QStringView(u"~^:?*[\\").contains(c))
            return false;
    return true;
}

namespace {

// A path as git takes it under the root: relative, as bytes ("." for the root itself).
QByteArray relativeTo(const FilePath& root, const FilePath& file)
{
    if (file == root)
        return ".";
    if (root.isAncestorOf(file))
        return file.native().sliced(root.isRoot() ? 1 : root.native().size() + 1);
    return file.native(); // outside: git says so in its own words
}

// Arguments of one run: text, then any paths as bytes.
QList<QByteArray> args(std::initializer_list<const char*> words)
{
    QList<QByteArray> list;
    for (const char* word : words)
        list.append(QByteArray(word));
    return list;
}

bool isIndexLocked(const GitOutput& result)
{
    return result.status != 0 && result.errors.contains(QLatin1StringView("index.lock"))
        && result.errors.contains(QLatin1StringView("File exists"));
}

GitOutcome missingGit() { return GitOutcome::failure(gitMissingMessage()); }

} // namespace

GitRepository::GitRepository(std::optional<FilePath> executable, FilePath root)
    : m_executable(std::move(executable)), m_root(std::move(root))
{
}

std::optional<GitRepository> GitRepository::containing(const FilePath& folder)
{
    const auto root = findRepositoryRoot(folder);
    if (!root)
        return std::nullopt;
    return GitRepository(gitExecutable(), *root);
}

// Every action runs through here. Paths named after "--" are taken literally, so "*.txt" is that
// file only; a run without them keeps git's own pathspecs (stash's clean-up of untracked files
// relies on them).
static GitOutput runIn(const std::optional<FilePath>& executable, const FilePath& root, const QList<QByteArray>& arguments,
                       GitRun how = {})
{
    how.literalPathspecs = arguments.value(0) != "stash" && arguments.contains(QByteArray("--"));
    return runGit(*executable, arguments, root, how);
}

// The outcome of a failed run: the lock's own message when another git holds the index,
// else `title` over git's tidied words.
static GitOutcome failed(const QString& title, const GitOutput& result)
{
    if (isIndexLocked(result)) {
        GitOutcome outcome = GitOutcome::failure(t::indexLocked(), t::indexLockedDetail());
        outcome.indexLocked = true;
        return outcome;
    }
    return GitOutcome::failure(title, tidyGitOutput(result));
}

namespace {

struct Runner {
    const std::optional<FilePath>& executable;
    const FilePath& root;
    GitOutput operator()(const QList<QByteArray>& arguments, GitRun how = {}) const
    {
        return runIn(executable, root, arguments, std::move(how));
    }
    // True when HEAD names a commit (false in a repository without commits).
    bool hasHead() const { return (*this)(args({"rev-parse", "-q", "--verify", "HEAD"})).status == 0; }
    QString revision(const char* name) const
    {
        const GitOutput result = (*this)(args({"rev-parse", "-q", "--verify", name}));
        return result.status == 0 ? result.output.trimmed() : QString();
    }
    QList<QByteArray> withPaths(QList<QByteArray> arguments, const QList<FilePath>& files) const
    {
        arguments.append("--");
        for (const FilePath& file : files)
            arguments.append(relativeTo(root, file));
        return arguments;
    }
};

} // namespace

#define ORWICK_NEEDS_GIT(fail) \
    if (!m_executable)         \
        return fail;
#define RUNNER Runner run{m_executable, m_root}

GitOutcome GitRepository::setStaged(const QList<FilePath>& files, bool staged) const
{
    ORWICK_NEEDS_GIT(missingGit());
    if (files.isEmpty())
        return GitOutcome::success();
    RUNNER;
    GitOutput result;
    if (staged)
        result = run(run.withPaths(args({"add"}), files));
    else if (run.hasHead())
        result = run(run.withPaths(args({"restore", "--staged"}), files));
    else // nothing to restore from before the first commit: the files just leave the index
        result = run(run.withPaths(args({"rm", "--cached", "-r", "-q"}), files));
    if (result.status != 0)
        return failed(staged ? t::couldNotStage() : t::couldNotUnstage(), result);
    return GitOutcome::success();
}

GitOutcome GitRepository::applyPatch(const QByteArray& patch, PatchTarget target) const
{
    ORWICK_NEEDS_GIT(missingGit());
    RUNNER;
    QList<QByteArray> arguments = args({"apply", "--whitespace=nowarn"});
    if (target != PatchTarget::discard)
        arguments.append("--cached");
    if (target != PatchTarget::stage)
        arguments.append("--reverse");
    arguments.append("-");
    GitRun how;
    how.input = patch.isNull() ? QByteArray("") : patch;
    const GitOutput result = run(arguments, how);
    if (result.status != 0)
        return failed(target == PatchTarget::stage     ? t::couldNotStage()
                      : target == PatchTarget::unstage ? t::couldNotUnstage()
                                                       : t::couldNotDiscard(),
                      result);
    return GitOutcome::success();
}

GitOutcome GitRepository::restoreFromHead(const QList<FilePath>& files) const
{
    ORWICK_NEEDS_GIT(missingGit());
    RUNNER;
    // Only paths git knows (in the index or the last commit) are restored; the others are
    // untracked and stay as they are.
    const bool hasHead = run.hasHead();
    QSet<QByteArray> known;
    GitRun bytes;
    bytes.keepBytes = true;
    const GitOutput indexed = run(run.withPaths(args({"ls-files", "-z", "--full-name"}), files), bytes);
    for (const QByteArray& name : indexed.bytes.split('\0'))
        known.insert(name);
    if (hasHead) {
        const GitOutput committed = run(run.withPaths(args({"ls-tree", "-r", "-z", "--name-only", "--full-tree", "HEAD"}), files), bytes);
        for (const QByteArray& name : committed.bytes.split('\0'))
            known.insert(name);
    }
    known.remove(QByteArray());
    QList<FilePath> tracked;
    for (const FilePath& file : files) {
        const QByteArray relative = relativeTo(m_root, file);
        const bool isKnown = known.contains(relative) || std::any_of(known.cbegin(), known.cend(), [&](const QByteArray& name) {
            return name.startsWith(relative + '/') || relative == ".";
        });
        if (isKnown)
            tracked.append(file);
    }
    if (tracked.isEmpty())
        return GitOutcome::success();
    const GitOutput result = hasHead ? run(run.withPaths(args({"restore", "--source=HEAD", "--staged", "--worktree"}), tracked))
                                     : run(run.withPaths(args({"rm", "--cached", "-r", "-q", "--force"}), tracked));
    if (result.status != 0)
        return failed(t::couldNotDiscard(), result);
    return GitOutcome::success();
}

GitOutcome GitRepository::commit(const QString& message, bool amend) const
{
    ORWICK_NEEDS_GIT(missingGit());
    RUNNER;
    QList<QByteArray> arguments{"commit", "-m", message.toUtf8()};
    if (amend)
        arguments.append("--amend");
    const GitOutput result = run(arguments);
    if (result.status == 0)
        return GitOutcome::success();
    // With nothing staged git prints the whole status on its output; its last line says it.
    if (result.errors.trimmed().isEmpty()) {
        const QStringList lines = result.output.trimmed().split(u'\n');
        const QString last = lines.isEmpty() ? QString() : lines.last().trimmed();
        if (last.startsWith(QLatin1StringView("nothing to commit")) || last.startsWith(QLatin1StringView("no changes added to commit"))
            || last.startsWith(QLatin1StringView("nothing added to commit")))
            return GitOutcome::failure(t::couldNotCommit(), t::nothingStaged());
    }
    return failed(t::couldNotCommit(), result);
}

Result<QString> GitRepository::lastCommitMessage() const
{
    ORWICK_NEEDS_GIT(failure(gitMissingMessage()));
    RUNNER;
    const GitOutput result = run(args({"log", "-1", "--format=%B"}));
    if (result.status != 0)
        return run.hasHead() ? Result<QString>(failure(tidyGitOutput(result))) : Result<QString>(QString());
    QString message = result.output;
    while (message.endsWith(u'\n'))
        message.chop(1);
    return message;
}

Result<QList<GitCommit>> GitRepository::log(const std::optional<FilePath>& file, int limit) const
{
    ORWICK_NEEDS_GIT(failure(gitMissingMessage()));
    RUNNER;
    const QByteArray format = QByteArray("--format=%H\x1f%h\x1f%an\x1f%ct\x1f%s\x1e");
    QList<QByteArray> arguments{"log", "-n", QByteArray::number(std::max(1, limit)), format};
    if (file)
        arguments = run.withPaths(arguments + QList<QByteArray>{"--follow"}, {*file});
    const GitOutput result = run(arguments);
    if (result.status != 0) {
        if (!run.hasHead())
            return QList<GitCommit>();
        return failure(tidyGitOutput(result));
    }
    return parseLog(result.output);
}

Result<GitDiff> GitRepository::show(const QString& commit, const std::optional<FilePath>& file) const
{
    ORWICK_NEEDS_GIT(failure(gitMissingMessage()));
    RUNNER;
    QList<QByteArray> arguments = args({"show", "--format=", "--patch", "-M", "--no-color"});
    arguments.append(commit.toUtf8());
    if (file)
        arguments = run.withPaths(arguments, {*file});
    GitRun how;
    how.keepBytes = true;
    const GitOutput result = run(arguments, how);
    if (result.status != 0)
        return failure(tidyGitOutput(result));
    return readDiff(result.bytes);
}

Result<GitDiff> GitRepository::diff(const FilePath& file, bool staged) const
{
    ORWICK_NEEDS_GIT(failure(gitMissingMessage()));
    RUNNER;
    GitRun how;
    how.keepBytes = true;
    GitOutput result;
    if (staged)
        result = run(run.withPaths(args({"diff", "--cached", "--no-color"}), {file}), how);
    else if (run.hasHead())
        result = run(run.withPaths(args({"diff", "HEAD", "--no-color"}), {file}), how);
    else // before the first commit: against the index
        result = run(run.withPaths(args({"diff", "--no-color"}), {file}), how);
    if (result.status != 0)
        return failure(tidyGitOutput(result));
    if (!staged && result.bytes.isEmpty()) {
        // An untracked file: every line is new.
        const GitOutput known = run(run.withPaths(args({"ls-files", "--error-unmatch"}), {file}));
        if (known.status != 0) {
            const GitOutput added =
                run({"diff", "--no-index", "--no-color", "--", "/dev/null", relativeTo(m_root, file)}, how);
            if (added.status > 1 || added.status < 0) // 1: there are differences
                return failure(tidyGitOutput(added));
            return readDiff(added.bytes);
        }
    }
    return readDiff(result.bytes);
}

Result<QList<GitBranch>> GitRepository::branches() const
{
    ORWICK_NEEDS_GIT(failure(gitMissingMessage()));
    RUNNER;
    const GitOutput result = run({"for-each-ref", "refs/heads", "--sort=-committerdate",
                                  "--format=%(refname:short)\x1f%(HEAD)\x1f%(upstream:short)\x1f%(committerdate:unix)"});
    if (result.status != 0)
        return failure(tidyGitOutput(result));
    return parseBranches(result.output);
}

GitOutcome GitRepository::createBranch(const QString& name) const
{
    if (!isValidBranchName(name))
        return GitOutcome::failure(t::notABranchName(name), t::branchNameRule());
    ORWICK_NEEDS_GIT(missingGit());
    RUNNER;
    const GitOutput result = run({"switch", "-c", name.toUtf8()});
    if (result.status != 0)
        return failed(t::couldNotMakeBranch(), result);
    return GitOutcome::success();
}

GitOutcome GitRepository::switchBranch(const QString& name) const
{
    ORWICK_NEEDS_GIT(missingGit());
    RUNNER;
    const GitOutput result = run({"switch", name.toUtf8()});
    if (result.status != 0)
        return failed(t::couldNotSwitch(name), result);
    return GitOutcome::success();
}

Result<QStringList> GitRepository::remotes() const
{
    ORWICK_NEEDS_GIT(failure(gitMissingMessage()));
    RUNNER;
    const GitOutput result = run(args({"remote"}));
    if (result.status != 0)
        return failure(tidyGitOutput(result));
    QStringList names;
    for (QStringView line : QStringView(result.output).split(u'\n', Qt::SkipEmptyParts))
        if (!line.trimmed().isEmpty())
            names.append(line.trimmed().toString());
    return names;
}

GitOutcome GitRepository::stash(const QString& message) const
{
    ORWICK_NEEDS_GIT(missingGit());
    RUNNER;
    const QString before = run.revision("refs/stash");
    QList<QByteArray> arguments = args({"stash", "push", "--include-untracked"});
    if (!message.isEmpty())
        arguments += QList<QByteArray>{"-m", message.toUtf8()};
    const GitOutput result = run(arguments);
    if (result.status != 0)
        return failed(t::couldNotStash(), result);
    if (run.revision("refs/stash") == before)
        return GitOutcome::success(t::nothingToStash());
    return GitOutcome::success();
}

Result<QList<GitStash>> GitRepository::stashes() const
{
    ORWICK_NEEDS_GIT(failure(gitMissingMessage()));
    RUNNER;
    const GitOutput result = run({"stash", "list", "--format=%gd\x1f%s\x1f%ct"});
    if (result.status != 0)
        return failure(tidyGitOutput(result));
    return parseStashes(result.output);
}

GitOutcome GitRepository::applyStash(const QString& ref, bool pop) const
{
    ORWICK_NEEDS_GIT(missingGit());
    RUNNER;
    const GitOutput applied = run({"stash", "apply", ref.toUtf8()});
    if (applied.status != 0)
        return failed(t::couldNotApplyStash(), applied);
    if (!pop)
        return GitOutcome::success();
    const GitOutput dropped = run({"stash", "drop", ref.toUtf8()});
    if (dropped.status != 0)
        return failed(t::couldNotDropStash(), dropped);
    return GitOutcome::success(t::stashAppliedAndRemoved());
}

GitOutcome GitRepository::dropStash(const QString& ref) const
{
    ORWICK_NEEDS_GIT(missingGit());
    RUNNER;
    const GitOutput result = run({"stash", "drop", ref.toUtf8()});
    if (result.status != 0)
        return failed(t::couldNotDropStash(), result);
    return GitOutcome::success();
}

GitOutcome GitRepository::fetch() const
{
    ORWICK_NEEDS_GIT(missingGit());
    RUNNER;
    const auto remoteRefs = [&] { return run(args({"for-each-ref", "--format=%(objectname) %(refname)", "refs/remotes", "refs/tags"})).output; };
    const QString before = remoteRefs();
    const GitOutput result = run(args({"fetch", "--all", "--prune"}));
    if (result.status != 0)
        return failed(t::couldNotFetch(), result);
    return GitOutcome::success(remoteRefs() == before ? t::fetchedUpToDate() : QString());
}

GitOutcome GitRepository::pull(PullMode mode) const
{
    ORWICK_NEEDS_GIT(missingGit());
    RUNNER;
    const QString before = run.revision("HEAD");
    const char* flag = mode == PullMode::rebase ? "--rebase" : mode == PullMode::merge ? "--no-rebase" : "--ff-only";
    const GitOutput result = run({"pull", flag});
    if (result.status != 0) {
        if (mode == PullMode::fastForwardOnly && !isIndexLocked(result)) {
            // Refused because both sides moved on? Then it's a choice, not a failure.
            const GitOutput counts = run(args({"rev-list", "--count", "--left-right", "HEAD...@{upstream}"}));
            const QStringList sides = counts.output.simplified().split(u' ');
            if (counts.status == 0 && sides.size() == 2 && sides[0].toInt() > 0 && sides[1].toInt() > 0) {
                GitOutcome outcome = GitOutcome::failure(t::bothSidesMoved(), t::pullChoiceExplanation());
                outcome.needsPullChoice = true;
                return outcome;
            }
        }
        return failed(t::couldNotPull(), result);
    }
    return GitOutcome::success(run.revision("HEAD") == before ? t::alreadyUpToDate() : QString());
}

GitOutcome GitRepository::push() const
{
    ORWICK_NEEDS_GIT(missingGit());
    RUNNER;
    const GitOutput result = run(args({"push"}));
    if (result.status == 0)
        return GitOutcome::success();
    if (isIndexLocked(result))
        return failed(t::couldNotPush(), result);
    const Result<QStringList> names = remotes();
    if (!names)
        return failed(t::couldNotPush(), result);
    if (names->isEmpty())
        return GitOutcome::failure(t::noRemote());
    const QString remote = names->contains(QStringLiteral("origin")) ? QStringLiteral("origin") : names->first();
    const GitOutput again = run({"push", "--set-upstream", remote.toUtf8(), "HEAD"});
    if (again.status != 0)
        return failed(t::couldNotPush(), again);
    return GitOutcome::success();
}

GitOutcome GitRepository::resolve(const FilePath& file, Resolution side) const
{
    ORWICK_NEEDS_GIT(missingGit());
    RUNNER;
    const QString name = displayName(relativeTo(m_root, file));
    const GitOutput checkedOut = run(run.withPaths({"checkout", side == Resolution::ours ? "--ours" : "--theirs"}, {file}));
    if (checkedOut.status != 0)
        return failed(t::couldNotResolve(name), checkedOut);
    const GitOutput added = run(run.withPaths(args({"add"}), {file}));
    if (added.status != 0)
        return failed(t::couldNotResolve(name), added);
    return GitOutcome::success();
}

std::optional<QString> GitRepository::operation() const { return operationInProgress(m_root); }

namespace {

// The command of an operation under way: "merge", "rebase", "cherry-pick".
QByteArray commandOf(const QString& operation)
{
    if (operation == QLatin1StringView("Merging"))
        return "merge";
    if (operation == QLatin1StringView("Rebasing"))
        return "rebase";
    return "cherry-pick";
}

QString nothingUnderWay() { return QStringLiteral("No merge, rebase or cherry-pick is under way."); }

} // namespace

GitOutcome GitRepository::continueOperation() const
{
    ORWICK_NEEDS_GIT(missingGit());
    const auto under = operation();
    if (!under)
        return GitOutcome::failure(t::couldNotContinue(), nothingUnderWay());
    RUNNER;
    const QByteArray command = commandOf(*under);
    const GitOutput result = command == "merge" ? run(args({"commit", "--no-edit"})) : run({command, "--continue"});
    if (result.status != 0)
        return failed(t::couldNotContinue(), result);
    return GitOutcome::success();
}

GitOutcome GitRepository::abortOperation() const
{
    ORWICK_NEEDS_GIT(missingGit());
    const auto under = operation();
    if (!under)
        return GitOutcome::failure(t::couldNotAbort(), nothingUnderWay());
    RUNNER;
    const GitOutput result = run({commandOf(*under), "--abort"});
    if (result.status != 0)
        return failed(t::couldNotAbort(), result);
    return GitOutcome::success();
}

} // namespace orwick
