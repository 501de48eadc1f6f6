// The window's status read inside one process, against git alone: readStatus (spawning git
// through the runner, reading its output, parsing it and looking for a running operation) next
// to spawning the same git — same path, arguments and environment — and reading its output to
// the end, nothing more. The two alternate round by round so both see the same machine. Also
// times parseStatus alone on the output captured once. No process start-up on either side:
// bench/git-status.sh gives the whole-process figure beside it.
//   bench_git_status_read REPOSITORY [ROUNDS]

#include "UiBenchTiming.h"

#include "git/GitRunner.h"
#include "git/StatusReader.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <numeric>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

using namespace orwick;

namespace {

// git, as the runner starts it, with standard output read to its end; the bytes read.
qsizetype spawnAndRead(const FilePath& git, const FilePath& root, QList<QByteArray> environment)
{
    QList<QByteArray> arguments{git.native(), "-C", root.native(), "-c", "core.quotepath=off",
                                "status", "--porcelain=v1", "-z", "-b", "--ignored"};
    std::vector<char*> argv, envp;
    for (QByteArray& argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);
    for (QByteArray& entry : environment)
        envp.push_back(entry.data());
    envp.push_back(nullptr);
    int out[2];
    if (pipe2(out, O_CLOEXEC) != 0)
        return -1;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
    pid_t child = -1;
    const int error = posix_spawn(&child, git.c_str(), &actions, nullptr, argv.data(), envp.data());
    posix_spawn_file_actions_destroy(&actions);
    close(out[1]);
    qsizetype total = error == 0 ? 0 : -1;
    static char buffer[65536];
    for (ssize_t n; error == 0 && (n = read(out[0], buffer, sizeof buffer)) != 0;)
        if (n > 0)
            total += n;
    close(out[0]);
    int status = 0;
    if (error == 0)
        waitpid(child, &status, 0);
    return error == 0 && WIFEXITED(status) && WEXITSTATUS(status) == 0 ? total : -1;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc < 2 || !gitExecutable()) {
        std::fprintf(stderr, "usage: bench_git_status_read REPOSITORY [ROUNDS] (with git on PATH)\n");
        return 2;
    }
    const FilePath git = *gitExecutable();
    const FilePath root = FilePath::fromNative(argv[1]);
    const int rounds = argc > 2 ? std::max(1, atoi(argv[2])) : 60;

    GitRun how;
    how.keepBytes = true;
    const GitOutput captured = runGit(git, {"status", "--porcelain=v1", "-z", "-b", "--ignored"}, root, how);
    if (captured.status != 0) {
        std::fprintf(stderr, "git status failed: %s\n", qPrintable(captured.errors));
        return 1;
    }

    std::vector<double> gitTimes, readTimes, parseTimes;
    qsizetype files = 0;
    for (int round = -3; round < rounds; ++round) { // three rounds to warm up, not counted
        QElapsedTimer clock;
        clock.start();
        // The runner builds git's environment on each call, so the peer is handed it ready-made.
        if (spawnAndRead(git, root, gitEnvironment()) < 0) {
            std::fprintf(stderr, "git status failed\n");
            return 1;
        }
        const double gitTime = milliseconds(clock);
        clock.restart();
        const Result<RepoStatus> status = readStatus(git, root);
        const double readTime = milliseconds(clock);
        if (!status) {
            std::fprintf(stderr, "readStatus failed: %s\n", qPrintable(status.error()));
            return 1;
        }
        clock.restart();
        const RepoStatus parsed = parseStatus(captured.bytes, root);
        const double parseTime = milliseconds(clock);
        files = parsed.files.size();
        if (round >= 0) {
            gitTimes.push_back(gitTime);
            readTimes.push_back(readTime);
            parseTimes.push_back(parseTime);
        }
    }

    std::printf("the status read in one process on %s (%lld changed files, %lld bytes from git; %d rounds):\n",
                root.c_str(), qlonglong(files), qlonglong(captured.bytes.size()), rounds);
    std::printf("  git status, output read       %7.2f ms mean  %7.2f ms median\n", mean(gitTimes), median(gitTimes));
    std::printf("  readStatus (spawn and parse)  %7.2f ms mean  %7.2f ms median\n", mean(readTimes), median(readTimes));
    std::printf("  parseStatus alone             %7.2f ms mean  %7.2f ms median\n", mean(parseTimes), median(parseTimes));
    std::printf("  readStatus / git: %.3f (mean), %.3f (median)\n", mean(readTimes) / mean(gitTimes),
                median(readTimes) / median(gitTimes));
    return 0;
}
