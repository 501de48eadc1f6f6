#include "platform/ChildProcess.h"

#include "platform/ChildSpawnAttributes.h"

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orwick {

namespace {

// Reads both pipes to their ends and feeds the input socket (closing it when given).
void readToEnd(int outFd, int errFd, int inFd, const ChildIo& io, pid_t child, std::string& errors)
{
    pollfd fds[3] = {{outFd, POLLIN, 0}, {errFd, POLLIN, 0}, {inFd, POLLOUT, 0}};
    char buffer[65536];
    int remaining = 2;
    size_t written = 0;
    auto closeInput = [&] {
        if (fds[2].fd >= 0)
            close(fds[2].fd);
        fds[2].fd = -1;
    };
    if (inFd >= 0 && io.input.empty())
        closeInput();
    while (remaining > 0) {
        if (io.cancel && io.cancel->isCancelled()) {
            kill(-child, SIGTERM);
            break;
        }
        const int ready = poll(fds, 3, io.cancel ? 50 : -1);
        if (ready < 0 && errno != EINTR)
            break;
        if (ready <= 0)
            continue; // time to look at the flag again
        for (int i = 0; i < 2; ++i) {
            if (fds[i].fd < 0 || fds[i].revents == 0)
                continue;
            const ssize_t n = read(fds[i].fd, buffer, sizeof buffer);
            if (n > 0 && i == 0 && io.onOutput)
                io.onOutput(std::string_view(buffer, size_t(n)));
            else if (n > 0 && i == 1)
                errors.append(buffer, size_t(n));
            else if (n == 0 || (n < 0 && errno != EINTR)) {
                fds[i].fd = -1; // poll skips it from now on
                --remaining;
            }
        }
        if (fds[2].fd >= 0 && fds[2].revents != 0) {
            const ssize_t n = (fds[2].revents & POLLOUT)
                ? send(fds[2].fd, io.input.data() + written, io.input.size() - written, MSG_NOSIGNAL | MSG_DONTWAIT)
                : -1;
            if (n > 0)
                written += size_t(n);
            if ((n < 0 && errno != EINTR && errno != EAGAIN) || written == io.input.size())
                closeInput(); // all given, or the program stopped reading
        }
    }
    closeInput();
}

ChildEnd startFailure(int error) { return {-1, error, {}}; }

} // namespace

std::vector<char*> nullTerminated(std::vector<std::string>& strings)
{
    std::vector<char*> pointers;
    pointers.reserve(strings.size() + 1);
    for (std::string& s : strings)
        pointers.push_back(s.data());
    pointers.push_back(nullptr);
    return pointers;
}

ChildEnd runChild(const char* program, char* const argv[], char* const environment[], const ChildIo& io)
{
    int outPipe[2];
    int errPipe[2];
    int inPipe[2] = {-1, -1};
    if (pipe2(outPipe, O_CLOEXEC) != 0)
        return startFailure(errno);
    if (pipe2(errPipe, O_CLOEXEC) != 0) {
        const int error = errno;
        close(outPipe[0]);
        close(outPipe[1]);
        return startFailure(error);
    }
    // Room for a big status or diff at once, so the program seldom waits for us to read (a pipe
    // holds 64 KiB unless asked; a refusal leaves it so).
    fcntl(outPipe[1], F_SETPIPE_SZ, 1 << 20);
    // A socket rather than a pipe: writing to a program that stopped reading gives EPIPE
    // (MSG_NOSIGNAL), never a SIGPIPE that would end this one.
    if (io.feedsInput && socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, inPipe) != 0) {
        const int error = errno;
        for (int fd : {outPipe[0], outPipe[1], errPipe[0], errPipe[1]})
            close(fd);
        return startFailure(error);
    }

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    if (io.feedsInput)
        posix_spawn_file_actions_adddup2(&actions, inPipe[0], STDIN_FILENO);
    else
        posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, outPipe[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, errPipe[1], STDERR_FILENO);
    posix_spawnattr_t attributes;
    initChildSpawnAttributes(attributes);

    pid_t child = -1;
    const int spawnError = posix_spawn(&child, program, &actions, &attributes, argv, environment);
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    close(outPipe[1]);
    close(errPipe[1]);
    if (io.feedsInput)
        close(inPipe[0]);
    if (spawnError != 0) {
        close(outPipe[0]);
        close(errPipe[0]);
        if (io.feedsInput)
            close(inPipe[1]);
        return startFailure(spawnError);
    }

    ChildEnd end;
    readToEnd(outPipe[0], errPipe[0], io.feedsInput ? inPipe[1] : -1, io, child, end.errors);
    close(outPipe[0]);
    close(errPipe[0]);

    int waitStatus = 0;
    while (waitpid(child, &waitStatus, 0) < 0 && errno == EINTR) {
    }
    end.status = WIFEXITED(waitStatus) ? WEXITSTATUS(waitStatus) : WIFSIGNALED(waitStatus) ? WTERMSIG(waitStatus) : -1;
    return end;
}

} // namespace orwick
