#include "git/GitRunner.h"

#include <QProcessEnvironment>
#include <QStandardPaths>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orwick {

const std::optional<FilePath>& gitExecutable()
{
    static const std::optional<FilePath> found = []() -> std::optional<FilePath> {
        const QString path = QStandardPaths::findExecutable(QStringLiteral("git"));
        if (path.isEmpty())
            return std::nullopt;
        return FilePath::fromText(path);
    }();
    return found;
}

QString gitMissingMessage() { return QStringLiteral("git isn't installed"); }

QList<QByteArray> gitEnvironment()
{
    // systemEnvironment() reads under Qt's environment lock, so a worker thread never races qputenv.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("GIT_OPTIONAL_LOCKS"), QStringLiteral("0"));
    environment.insert(QStringLiteral("GIT_TERMINAL_PROMPT"), QStringLiteral("0"));
    environment.insert(QStringLiteral("GIT_EDITOR"), QStringLiteral("true"));
    if (!environment.contains(QStringLiteral("GIT_SSH_COMMAND")))
        environment.insert(QStringLiteral("GIT_SSH_COMMAND"), QStringLiteral("ssh -o BatchMode=yes -o ConnectTimeout=20"));
    QList<QByteArray> entries;
    const QStringList keys = environment.keys();
    entries.reserve(keys.size());
    for (const QString& key : keys)
        entries.append(key.toLocal8Bit() + '=' + environment.value(key).toLocal8Bit());
    return entries;
}

namespace {

std::vector<char*> pointers(QList<QByteArray>& strings)
{
    std::vector<char*> result;
    result.reserve(size_t(strings.size()) + 1);
    for (QByteArray& s : strings)
        result.push_back(s.data());
    result.push_back(nullptr);
    return result;
}

GitOutput launchFailure(int error)
{
    return {-1, {}, QStringLiteral("couldn't start git: ") + QString::fromLocal8Bit(strerror(error))};
}

struct Captured {
    QByteArray output;
    QByteArray errors;
};

// Reads both pipes to their ends, whichever has data first, so git never blocks on a full pipe
// of one while we wait on the other. With a cancel flag it wakes every 50 ms to look at it; once
// it is set, git and whatever it started (its own process group) are stopped and reading ends.
Captured readToEnd(int outFd, int errFd, pid_t child, const CancelFlag* cancel)
{
    Captured captured;
    pollfd fds[2] = {{outFd, POLLIN, 0}, {errFd, POLLIN, 0}};
    QByteArray* sinks[2] = {&captured.output, &captured.errors};
    char buffer[65536];
    int remaining = 2;
    while (remaining > 0) {
        if (cancel && cancel->isCancelled()) {
            kill(-child, SIGTERM);
            return captured;
        }
        const int ready = poll(fds, 2, cancel ? 50 : -1);
        if (ready < 0 && errno != EINTR)
            return captured;
        if (ready <= 0)
            continue; // time to look at the flag again
        for (int i = 0; i < 2; ++i) {
            if (fds[i].fd < 0 || fds[i].revents == 0)
                continue;
            const ssize_t n = read(fds[i].fd, buffer, sizeof buffer);
            if (n > 0)
                sinks[i]->append(buffer, n);
            else if (n == 0 || errno != EINTR) {
                fds[i].fd = -1; // poll skips it from now on
                --remaining;
            }
        }
    }
    return captured;
}

} // namespace

GitOutput runCapturingErrors(const FilePath& executable, const QStringList& arguments, const FilePath& root,
                             const CancelFlag* cancel)
{
    QList<QByteArray> argv{executable.native(), "-C", root.native(), "-c", "core.quotepath=off"};
    for (const QString& argument : arguments)
        argv.append(argument.toUtf8());
    QList<QByteArray> environment = gitEnvironment();
    std::vector<char*> argvPointers = pointers(argv);
    std::vector<char*> environmentPointers = pointers(environment);

    int outPipe[2];
    int errPipe[2];
    if (pipe2(outPipe, O_CLOEXEC) != 0)
        return launchFailure(errno);
    if (pipe2(errPipe, O_CLOEXEC) != 0) {
        const int error = errno;
        close(outPipe[0]);
        close(outPipe[1]);
        return launchFailure(error);
    }

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, outPipe[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, errPipe[1], STDERR_FILENO);
    // A fresh signal mask and default handlers, whatever this thread had.
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none, all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    // Its own process group, so that stopping it also stops the programs it runs.
    posix_spawnattr_setpgroup(&attributes, 0);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP);

    pid_t child = -1;
    const int spawnError = posix_spawn(&child, executable.c_str(), &actions, &attributes, argvPointers.data(),
                                       environmentPointers.data());
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    close(outPipe[1]);
    close(errPipe[1]);
    if (spawnError != 0) {
        close(outPipe[0]);
        close(errPipe[0]);
        return launchFailure(spawnError);
    }

    const Captured captured = readToEnd(outPipe[0], errPipe[0], child, cancel);
    close(outPipe[0]);
    close(errPipe[0]);

    int waitStatus = 0;
    while (waitpid(child, &waitStatus, 0) < 0 && errno == EINTR) {
    }
    // Like a process's termination status: the exit code, or the signal that ended it.
    const int status = WIFEXITED(waitStatus) ? WEXITSTATUS(waitStatus) : WIFSIGNALED(waitStatus) ? WTERMSIG(waitStatus) : -1;
    return {status, QString::fromUtf8(captured.output), QString::fromUtf8(captured.errors)};
}

} // namespace orwick
