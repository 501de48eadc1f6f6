#include "git/GitRunner.h"

#include "platform/ChildSpawnAttributes.h"

#include <QProcessEnvironment>
#include <QStandardPaths>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
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
    // A remote that wants a password fails at once: no password program pops up (an empty
    // GIT_ASKPASS also hides core.askPass and SSH_ASKPASS from git) and no credential manager asks.
    environment.insert(QStringLiteral("GIT_ASKPASS"), QString());
    environment.insert(QStringLiteral("SSH_ASKPASS_REQUIRE"), QStringLiteral("never"));
    environment.insert(QStringLiteral("GCM_INTERACTIVE"), QStringLiteral("never"));
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
    return {-1, {}, QStringLiteral("couldn't start git: ") + QString::fromLocal8Bit(strerror(error)), {}};
}

struct Captured {
    QByteArray output;
    QByteArray errors;
};

// Reads both pipes to their ends, whichever has data first, and writes `input` to git's input
// pipe as git takes it, so git never blocks on a full pipe while we wait on another. With a
// cancel flag it wakes every 50 ms to look at it; once it is set, git and whatever it started
// (its own process group) are stopped and reading ends. Standard output goes to `onOutput`
// when given. Closes `inFd` (when given).
Captured readToEnd(int outFd, int errFd, int inFd, const QByteArray& input, pid_t child, const CancelFlag* cancel,
                   const std::function<void(QByteArrayView)>& onOutput)
{
    Captured captured;
    pollfd fds[3] = {{outFd, POLLIN, 0}, {errFd, POLLIN, 0}, {inFd, POLLOUT, 0}};
    QByteArray* sinks[2] = {&captured.output, &captured.errors};
    char buffer[65536];
    int remaining = 2;
    qsizetype written = 0;
    auto closeInput = [&] {
        if (fds[2].fd >= 0)
            close(fds[2].fd);
        fds[2].fd = -1;
    };
    if (inFd >= 0 && input.isEmpty())
        closeInput();
    while (remaining > 0) {
        if (cancel && cancel->isCancelled()) {
            kill(-child, SIGTERM);
            break;
        }
        const int ready = poll(fds, 3, cancel ? 50 : -1);
        if (ready < 0 && errno != EINTR)
            break;
        if (ready <= 0)
            continue; // time to look at the flag again
        for (int i = 0; i < 2; ++i) {
            if (fds[i].fd < 0 || fds[i].revents == 0)
                continue;
            const ssize_t n = read(fds[i].fd, buffer, sizeof buffer);
            if (n > 0 && i == 0 && onOutput)
                onOutput(QByteArrayView(buffer, n));
            else if (n > 0)
                sinks[i]->append(buffer, n);
            else if (n == 0 || errno != EINTR) {
                fds[i].fd = -1; // poll skips it from now on
                --remaining;
            }
        }
        if (fds[2].fd >= 0 && fds[2].revents != 0) {
            const ssize_t n = (fds[2].revents & POLLOUT)
                ? send(fds[2].fd, input.constData() + written, size_t(input.size() - written), MSG_NOSIGNAL | MSG_DONTWAIT)
                : -1;
            if (n > 0)
                written += n;
            if ((n < 0 && errno != EINTR && errno != EAGAIN) || written == input.size())
                closeInput(); // all given, or git stopped reading
        }
    }
    closeInput();
    return captured;
}

} // namespace

GitOutput runCapturingErrors(const FilePath& executable, const QStringList& arguments, const FilePath& root,
                             const CancelFlag* cancel)
{
    QList<QByteArray> bytes;
    bytes.reserve(arguments.size());
    for (const QString& argument : arguments)
        bytes.append(argument.toUtf8());
    GitRun how;
    how.cancel = cancel;
    return runGit(executable, bytes, root, how);
}

GitOutput runGit(const FilePath& executable, const QList<QByteArray>& arguments, const FilePath& root, const GitRun& how)
{
    const CancelFlag* cancel = how.cancel;
    QList<QByteArray> argv{executable.native(), "-C", root.native(), "-c", "core.quotepath=off"};
    argv.append(arguments);
    QList<QByteArray> environment = gitEnvironment();
    if (how.literalPathspecs)
        environment.append("GIT_LITERAL_PATHSPECS=1");
    std::vector<char*> argvPointers = pointers(argv);
    std::vector<char*> environmentPointers = pointers(environment);

    int outPipe[2];
    int errPipe[2];
    int inPipe[2] = {-1, -1};
    if (pipe2(outPipe, O_CLOEXEC) != 0)
        return launchFailure(errno);
    if (pipe2(errPipe, O_CLOEXEC) != 0) {
        const int error = errno;
        close(outPipe[0]);
        close(outPipe[1]);
        return launchFailure(error);
    }
    // Room for a big status or diff at once, so git seldom waits for us to read (a pipe holds 64 KiB
    // unless asked; a refusal leaves it so).
    fcntl(outPipe[1], F_SETPIPE_SZ, 1 << 20);
    const bool feeding = !how.input.isNull();
    // A socket rather than a pipe: writing to a git that stopped reading gives EPIPE
    // (MSG_NOSIGNAL), never a SIGPIPE that would end this program.
    if (feeding && socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, inPipe) != 0) {
        const int error = errno;
        for (int fd : {outPipe[0], outPipe[1], errPipe[0], errPipe[1]})
            close(fd);
        return launchFailure(error);
    }

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    if (feeding)
        posix_spawn_file_actions_adddup2(&actions, inPipe[0], STDIN_FILENO);
    else
        posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, outPipe[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, errPipe[1], STDERR_FILENO);
    // A fresh signal mask and default handlers, and a process group of its own.
    posix_spawnattr_t attributes;
    initChildSpawnAttributes(attributes);

    pid_t child = -1;
    const int spawnError = posix_spawn(&child, executable.c_str(), &actions, &attributes, argvPointers.data(),
                                       environmentPointers.data());
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    close(outPipe[1]);
    close(errPipe[1]);
    if (feeding)
        close(inPipe[0]);
    if (spawnError != 0) {
        close(outPipe[0]);
        close(errPipe[0]);
        if (feeding)
            close(inPipe[1]);
        return launchFailure(spawnError);
    }

    const Captured captured =
        readToEnd(outPipe[0], errPipe[0], feeding ? inPipe[1] : -1, how.input, child, cancel, how.onOutput);
    close(outPipe[0]);
    close(errPipe[0]);

    int waitStatus = 0;
    while (waitpid(child, &waitStatus, 0) < 0 && errno == EINTR) {
    }
    // Like a process's termination status: the exit code, or the signal that ended it.
    const int status = WIFEXITED(waitStatus) ? WEXITSTATUS(waitStatus) : WIFSIGNALED(waitStatus) ? WTERMSIG(waitStatus) : -1;
    if (how.keepBytes)
        return {status, {}, QString::fromUtf8(captured.errors), captured.output};
    return {status, QString::fromUtf8(captured.output), QString::fromUtf8(captured.errors), {}};
}

} // namespace orwick
