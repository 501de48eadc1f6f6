// orwick-cli git: the review's git actions for scripts — stage, unstage, commit, log, branches,
// branch, switch, push, pull and stash — run exactly as the window runs them (GitRepository), and
// saying what the window says. A failure goes to standard error and ends with status 1; a usage
// mistake with 2.

#include "cli/CliCommand.h"
#include "cli/CliPaths.h"
#include "git/GitRepository.h"
#include "git/GitRunner.h"

#include <QMap>

namespace orwick::cli {
namespace {

const QString kUsage = QStringLiteral(
    "usage: orwick-cli git stage FILE...\n"
    "       orwick-cli git unstage FILE...\n"
    "       orwick-cli git commit DIR -m MESSAGE [--amend]\n"
    "       orwick-cli git log DIR [FILE]\n"
    "       orwick-cli git branches DIR\n"
    "       orwick-cli git branch DIR NAME\n"
    "       orwick-cli git switch DIR NAME\n"
    "       orwick-cli git push DIR\n"
    "       orwick-cli git pull DIR [--rebase|--merge|--ff-only]\n"
    "       orwick-cli git stash DIR [-m MESSAGE]");

// Says how an action went: a note on standard output, a failure on standard error.
int report(const GitOutcome& outcome)
{
    if (!outcome) {
        err() << outcome.text() << Qt::endl;
        return 1;
    }
    if (!outcome.text().isEmpty())
        out() << outcome.text() << Qt::endl;
    return 0;
}

// The repository holding the folder DIR, or the sentence why there is none.
std::optional<GitRepository> repositoryAt(const QByteArray& argument)
{
    if (const auto problem = problemWith(argument, Expect::folder)) {
        err() << *problem << Qt::endl;
        return std::nullopt;
    }
    if (!gitExecutable()) {
        err() << gitMissingMessage() << Qt::endl;
        return std::nullopt;
    }
    auto repository = GitRepository::containing(pathArgument(argument));
    if (!repository)
        err() << shownArgument(argument) << QStringLiteral(" isn’t in a git repository.") << Qt::endl;
    return repository;
}

// stage / unstage FILE...: files may be in several repositories; each gets its own run. A file
// need not be there (staging a deletion), but its folder must be in a repository.
int setStaged(const Arguments& files, bool staged)
{
    if (files.isEmpty())
        return usageError(kUsage);
    if (!gitExecutable()) {
        err() << gitMissingMessage() << Qt::endl;
        return 1;
    }
    QMap<FilePath, QList<FilePath>> byRoot;
    for (const QByteArray& argument : files) {
        const FilePath file = pathArgument(argument);
        const auto repository = GitRepository::containing(file.parent());
        if (!repository) {
            err() << shownArgument(argument) << QStringLiteral(" isn’t in a git repository.") << Qt::endl;
            return 1;
        }
        byRoot[repository->root()].append(file);
    }
    int code = 0;
    for (auto it = byRoot.cbegin(); it != byRoot.cend(); ++it) {
        const GitRepository repository(gitExecutable(), it.key());
        code = std::max(code, report(repository.setStaged(it.value(), staged)));
    }
    return code;
}

int commit(const Arguments& arguments)
{
    std::optional<QString> message;
    bool amend = false;
    Arguments rest;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        if (arguments[i] == "-m" && i + 1 < arguments.size())
            message = argumentText(arguments[++i]);
        else if (arguments[i] == "--amend")
            amend = true;
        else
            rest.append(arguments[i]);
    }
    if (rest.size() != 1 || !message)
        return usageError(kUsage);
    if (message->trimmed().isEmpty()) {
        err() << "A commit needs a message." << Qt::endl;
        return 2;
    }
    const auto repository = repositoryAt(rest.first());
    return repository ? report(repository->commit(*message, amend)) : 1;
}

int log(const Arguments& arguments)
{
    if (arguments.size() != 1 && arguments.size() != 2)
        return usageError(kUsage);
    const auto repository = repositoryAt(arguments.first());
    if (!repository)
        return 1;
    std::optional<FilePath> file;
    if (arguments.size() == 2)
        file = pathArgument(arguments[1]);
    const auto commits = repository->log(file);
    if (!commits) {
        err() << commits.error() << Qt::endl;
        return 1;
    }
    for (const GitCommit& commit : *commits)
        out() << commit.shortHash << '\t' << commit.date.toString(Qt::ISODate) << '\t' << commit.author << '\t' << commit.subject
              << '\n';
    return 0;
}

int branches(const Arguments& arguments)
{
    if (arguments.size() != 1)
        return usageError(kUsage);
    const auto repository = repositoryAt(arguments.first());
    if (!repository)
        return 1;
    const auto list = repository->branches();
    if (!list) {
        err() << list.error() << Qt::endl;
        return 1;
    }
    for (const GitBranch& branch : *list)
        out() << (branch.isCurrent ? "* " : "  ") << branch.name << '\t' << branch.upstream.value_or(QString()) << '\n';
    return 0;
}

int pull(const Arguments& arguments)
{
    PullMode mode = PullMode::fastForwardOnly;
    Arguments rest;
    int modes = 0;
    for (const QByteArray& argument : arguments) {
        if (argument == "--rebase" || argument == "--merge" || argument == "--ff-only") {
            mode = argument == "--rebase" ? PullMode::rebase : argument == "--merge" ? PullMode::merge : PullMode::fastForwardOnly;
            ++modes;
        } else {
            rest.append(argument);
        }
    }
    if (rest.size() != 1 || modes > 1)
        return usageError(kUsage);
    const auto repository = repositoryAt(rest.first());
    if (!repository)
        return 1;
    const GitOutcome outcome = repository->pull(mode);
    if (outcome.needsPullChoice) {
        err() << outcome.text() << "\nPull again with --rebase or --merge." << Qt::endl;
        return 1;
    }
    return report(outcome);
}

int stash(const Arguments& arguments)
{
    QString message;
    Arguments rest;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        if (arguments[i] == "-m" && i + 1 < arguments.size())
            message = argumentText(arguments[++i]);
        else
            rest.append(arguments[i]);
    }
    if (rest.size() != 1)
        return usageError(kUsage);
    const auto repository = repositoryAt(rest.first());
    return repository ? report(repository->stash(message)) : 1;
}

int run(const Arguments& arguments)
{
    const QByteArray verb = arguments.value(0);
    const Arguments rest = arguments.mid(1);
    if (verb == "stage" || verb == "unstage")
        return setStaged(rest, verb == "stage");
    if (verb == "commit")
        return commit(rest);
    if (verb == "log")
        return log(rest);
    if (verb == "branches")
        return branches(rest);
    if (verb == "pull")
        return pull(rest);
    if (verb == "stash")
        return stash(rest);
    if (verb == "push") {
        if (rest.size() != 1)
            return usageError(kUsage);
        const auto repository = repositoryAt(rest.first());
        return repository ? report(repository->push()) : 1;
    }
    if (verb == "branch" || verb == "switch") {
        if (rest.size() != 2)
            return usageError(kUsage);
        const auto repository = repositoryAt(rest.first());
        if (!repository)
            return 1;
        const QString name = argumentText(rest[1]);
        return report(verb == "branch" ? repository->createBranch(name) : repository->switchBranch(name));
    }
    return usageError(kUsage);
}

const CliRegistration registration({QStringLiteral("git"), QStringLiteral("git ACTION ARGUMENTS..."),
                                    QStringLiteral("stage, unstage, commit, log, branches, branch, switch, push, pull, stash"), run,
                                    QStringLiteral("  ") + kUsage.sliced(7).replace(QStringLiteral("\n       "), QStringLiteral("\n  ")) + QStringLiteral("\n\n"
                                    "branch makes NAME from where you are and switches to it; pull without a mode only\n"
                                    "fast-forwards, and says so when both sides have new commits.")});

} // namespace
} // namespace orwick::cli
