#include "terminal/PtyProcess.h"

#include "platform/ErrorText.h"
#include "terminal/ChildReaper.h"

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>
#include <vector>

namespace orwick {

namespace {

// Runs in the child between fork and exec: async-signal-safe calls only.
[[noreturn]] void becomeProgram(const char* program, char* const* argv, char* const* envp, const char* folder, const char* home)
{
    struct sigaction plain = {};
    plain.sa_handler = SIG_DFL;
    for (int signal = 1; signal < NSIG; ++signal)
        ::sigaction(signal, &plain, nullptr);
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    if (::chdir(folder) != 0 && (!home || ::chdir(home) != 0))
        (void)::chdir("/");
    ::close_range(3, ~0U, 0); // the terminal is 0, 1 and 2; nothing of Orwick's leaks into the shell
    ::execve(program, argv, envp);
    const char* reason = ::strerror(errno); // not strictly async-signal-safe, but only read
    const char prefix[] = "Couldn't start ";
    (void)!::write(2, prefix, sizeof prefix - 1);
    (void)!::write(2, program, ::strlen(program));
    (void)!::write(2, ": ", 2);
    (void)!::write(2, reason, ::strlen(reason));
    (void)!::write(2, "\r\n", 2);
    ::_exit(127);
}

} // namespace

Result<std::unique_ptr<PtyProcess>> PtyProcess::start(const Launch& launch)
{
    // Everything the child needs is made before the fork.
    QByteArray argv0 = launch.argv0.isEmpty() ? launch.program : launch.argv0;
    std::vector<char*> argv{argv0.data()};
    QList<QByteArray> arguments = launch.arguments;
    for (QByteArray& argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);
    QList<QByteArray> environment = launch.environment;
    std::vector<char*> envp;
    for (QByteArray& entry : environment)
        envp.push_back(entry.data());
    envp.push_back(nullptr);
    const QByteArray program = launch.program;
    const QByteArray folder = launch.folder.isEmpty() ? QByteArray("/") : launch.folder;
    const QByteArray home = qgetenv("HOME");

    winsize size = {};
    size.ws_row = (unsigned short)std::clamp(launch.rows, 1, 1000);
    size.ws_col = (unsigned short)std::clamp(launch.cols, 1, 1000);
    int master = -1;
    const pid_t pid = ::forkpty(&master, nullptr, nullptr, &size);
    if (pid < 0)
        return failure(QStringLiteral("Couldn't start the terminal: ") + errorReason(errno));
    if (pid == 0)
        becomeProgram(program.constData(), argv.data(), envp.data(), folder.constData(), home.isEmpty() ? nullptr : home.constData());

    ::fcntl(master, F_SETFD, FD_CLOEXEC);
    ::fcntl(master, F_SETFL, ::fcntl(master, F_GETFL) | O_NONBLOCK);
    const int pidfd = int(::syscall(SYS_pidfd_open, pid, 0)); // a kernel without it gives -1: the session polls
    if (pidfd >= 0)
        ::fcntl(pidfd, F_SETFD, FD_CLOEXEC);
    return std::unique_ptr<PtyProcess>(new PtyProcess(master, pid, pidfd));
}

PtyProcess::~PtyProcess()
{
    if (!m_reaped && !reap()) {
        hangUp();
        ::close(m_master);
        ChildReaper::shared().adopt(m_pid, m_pidfd); // takes the pidfd
        return;
    }
    ::close(m_master);
    if (m_pidfd >= 0)
        ::close(m_pidfd);
}

bool PtyProcess::resize(int rows, int cols)
{
    winsize size = {};
    size.ws_row = (unsigned short)std::clamp(rows, 1, 1000);
    size.ws_col = (unsigned short)std::clamp(cols, 1, 1000);
    return ::ioctl(m_master, TIOCSWINSZ, &size) == 0;
}

pid_t PtyProcess::foregroundGroup() const { return ::tcgetpgrp(m_master); }

namespace {

// Where a link in /proc leads; empty when it can't be read.
QByteArray procLink(const QByteArray& link)
{
    char buffer[PATH_MAX];
    const ssize_t length = ::readlink(link.constData(), buffer, sizeof buffer);
    return length > 0 && size_t(length) < sizeof buffer ? QByteArray(buffer, qsizetype(length)) : QByteArray();
}

} // namespace

QByteArray PtyProcess::workingFolder() const
{
    if (m_reaped)
        return {};
    const QByteArray proc = "/proc/" + QByteArray::number(m_pid);
    // Until the child has become the program it still works in Orwick's folder (the terminal
    // echoes what is typed that early).
    if (!m_becameProgram) {
        const QByteArray program = procLink(proc + "/exe");
        if (program.isEmpty() || program == procLink("/proc/self/exe"))
            return {};
        m_becameProgram = true;
    }
    const QByteArray folder = procLink(proc + "/cwd");
    if (folder.isEmpty())
        return {};
    // A deleted folder reads as "PATH (deleted)", which names nothing.
    struct stat st {};
    return ::stat(folder.constData(), &st) == 0 && S_ISDIR(st.st_mode) ? folder : QByteArray();
}

std::optional<int> PtyProcess::reap()
{
    if (m_reaped)
        return std::nullopt;
    int status = 0;
    pid_t done;
    do
        done = ::waitpid(m_pid, &status, WNOHANG);
    while (done < 0 && errno == EINTR);
    if (done != m_pid)
        return std::nullopt;
    m_reaped = true;
    if (WIFEXITED(status))
        return WEXITSTATUS(status);
    if (WIFSIGNALED(status))
        return 128 + WTERMSIG(status);
    return 0;
}

void PtyProcess::hangUp()
{
    if (m_reaped)
        return;
    // The shell's group and, through the shell's own SIGHUP handling, its jobs.
    ::kill(-m_pid, SIGHUP);
    ::kill(m_pid, SIGHUP);
    ::kill(m_pid, SIGCONT); // a stopped shell wakes up to hear it
}

} // namespace orwick
