#include "disktools/ContentSearchRun.h"

#include "async/GuiDelivery.h"
#include "disktools/ContentSearchOutput.h"
#include "git/RepositoryRoot.h"
#include "platform/ChildSpawnAttributes.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QThreadPool>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace orwick::ContentSearch {

namespace {

std::atomic<void (*)()> firstOutputProbe{nullptr};

// This process's environment without a ripgrep configuration file, whose options could change
// the output this reader expects.
std::vector<char*> childEnvironment()
{
    std::vector<char*> entries;
    for (char** entry = environ; *entry; ++entry)
        if (strncmp(*entry, "RIPGREP_CONFIG_PATH=", 20) != 0)
            entries.push_back(*entry);
    entries.push_back(nullptr);
    return entries;
}

struct Child {
    pid_t pid = -1;
    int out = -1;
    int errors = -1;
};

std::optional<Child> spawn(const Command& command, const FilePath& folder)
{
    const QByteArray executable = command.executable.toLocal8Bit();
    // Named by its plain name, as a shell would: its messages then start "grep: ", not "/usr/bin/grep: ".
    QList<QByteArray> argv{executable.mid(executable.lastIndexOf('/') + 1)};
    for (const QString& argument : command.arguments)
        argv.append(argument.toLocal8Bit());
    std::vector<char*> pointers;
    for (QByteArray& argument : argv)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    std::vector<char*> environment = childEnvironment();

    int outPipe[2];
    int errPipe[2];
    if (pipe2(outPipe, O_CLOEXEC) != 0)
        return std::nullopt;
    if (pipe2(errPipe, O_CLOEXEC) != 0) {
        close(outPipe[0]);
        close(outPipe[1]);
        return std::nullopt;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, outPipe[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, errPipe[1], STDERR_FILENO);
    posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
    posix_spawnattr_t attributes;
    initChildSpawnAttributes(attributes); // stopping the group stops what the tool started
    pid_t pid = -1;
    const int failed = posix_spawn(&pid, executable.constData(), &actions, &attributes, pointers.data(), environment.data());
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    close(outPipe[1]);
    close(errPipe[1]);
    if (failed != 0) {
        close(outPipe[0]);
        close(errPipe[0]);
        return std::nullopt;
    }
    return Child{pid, outPipe[0], errPipe[0]};
}

int waitFor(pid_t pid)
{
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + (WIFSIGNALED(status) ? WTERMSIG(status) : 0);
}

} // namespace

RunOutcome runCommand(const Command& command, const FilePath& folder, const CancelFlag& cancel, const BatchSink& sink,
                      qint64 maxMatches)
{
    RunOutcome outcome;
    outcome.tool = command.tool;
    const auto child = spawn(command, folder);
    if (!child)
        return outcome;
    outcome.started = true;
    OutputReader reader(folder);
    QByteArray errors;
    std::vector<FileMatches> batch;
    pollfd fds[2] = {{child->out, POLLIN, 0}, {child->errors, POLLIN, 0}};
    static thread_local char buffer[1 << 16];
    int open = 2;
    bool stopped = false;
    bool readAny = false;
    while (open > 0) {
        if (cancel.isCancelled() || (maxMatches > 0 && reader.matchesRead() >= maxMatches)) {
            outcome.isCapped = !cancel.isCancelled();
            kill(-child->pid, SIGTERM);
            stopped = true;
            break;
        }
        const int ready = poll(fds, 2, 50);
        if (ready < 0 && errno != EINTR)
            break;
        if (ready <= 0)
            continue;
        for (int i = 0; i < 2; ++i) {
            if (fds[i].fd < 0 || fds[i].revents == 0)
                continue;
            const ssize_t n = read(fds[i].fd, buffer, sizeof buffer);
            if (n > 0 && i == 0) {
                if (!readAny) {
                    readAny = true;
                    if (auto* probe = firstOutputProbe.load(std::memory_order_relaxed))
                        probe();
                }
                reader.read(QByteArrayView(buffer, n), batch);
                if (!batch.empty()) {
                    sink(std::move(batch));
                    batch.clear();
                }
            } else if (n > 0) {
                if (errors.size() < (1 << 16))
                    errors.append(buffer, n);
            } else if (n == 0 || errno != EINTR) {
                fds[i].fd = -1;
                --open;
            }
        }
    }
    if (!stopped) {
        reader.finish(batch);
        if (!batch.empty())
            sink(std::move(batch));
    }
    close(child->out);
    close(child->errors);
    outcome.exitStatus = waitFor(child->pid);
    outcome.matches = reader.matchesRead();
    if (!stopped)
        outcome.failure = failureMessage(outcome.exitStatus, errors);
    return outcome;
}

void setFirstOutputProbe(void (*probe)()) { firstOutputProbe.store(probe); }

RunOutcome runSearch(const QString& query, const FilePath& folder, const Options& options, const CancelFlag& cancel,
                     const BatchSink& sink, qint64 maxMatches, const Tools& tools)
{
    const bool isRepository = tools.ripgrep.isEmpty() && findRepositoryRoot(folder).has_value();
    const auto chosen = command(query, options, isRepository, tools);
    if (!chosen) {
        RunOutcome outcome;
        outcome.failure = noToolMessage();
        return outcome;
    }
    RunOutcome outcome = runCommand(*chosen, folder, cancel, sink, maxMatches);
    if (!outcome.started && !outcome.failure)
        outcome.failure = QStringLiteral("Couldn’t run %1").arg(chosen->executable);
    return outcome;
}

void startSearch(QObject* receiver, const QString& query, const FilePath& folder, const Options& options,
                 CancelToken cancel, Update update, qint64 maxMatches)
{
    QPointer<QObject> guard(receiver);
    auto shared = std::make_shared<Update>(std::move(update));
    // Each delivery is posted to the application object and checked there, so a receiver
    // deleted meanwhile, or a search replaced meanwhile, is never called.
    auto deliver = [guard, cancel, shared](std::vector<FileMatches>&& batch, bool done, RunOutcome outcome) {
        auto moved = std::make_shared<std::vector<FileMatches>>(std::move(batch));
        deliverToGui(guard, [cancel, shared, moved, done, outcome](QObject&) {
            if (!cancel->isCancelled())
                (*shared)(std::move(*moved), done, outcome);
        });
    };
    QThreadPool::globalInstance()->start([=] {
        std::vector<FileMatches> pending;
        QElapsedTimer sinceSent;
        bool sentAny = false;
        auto sink = [&](std::vector<FileMatches>&& batch) {
            for (FileMatches& file : batch) {
                if (!pending.empty() && pending.back().path == file.path) {
                    auto& into = pending.back().matches;
                    into.insert(into.end(), std::make_move_iterator(file.matches.begin()), std::make_move_iterator(file.matches.end()));
                } else {
                    pending.push_back(std::move(file));
                }
            }
            // The first matches at once; then about twenty times a second.
            if (!sentAny || sinceSent.elapsed() >= 50) {
                deliver(std::move(pending), false, {});
                pending.clear();
                sentAny = true;
                sinceSent.restart();
            }
        };
        sinceSent.start();
        const RunOutcome outcome = runSearch(query, folder, options, *cancel, sink, maxMatches);
        deliver(std::move(pending), true, outcome);
    });
}

} // namespace orwick::ContentSearch
