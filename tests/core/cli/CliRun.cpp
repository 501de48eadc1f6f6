#include "CliRun.h"

#include <QTemporaryFile>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace orwick::test {

namespace {

QList<QByteArray> lines(const QByteArray& text)
{
    QList<QByteArray> list = text.split('\n');
    if (!list.isEmpty() && list.last().isEmpty())
        list.removeLast();
    return list;
}

QByteArray readBack(QTemporaryFile& file)
{
    file.seek(0);
    return file.readAll();
}

} // namespace

QList<QByteArray> CliRun::outLines() const { return lines(out); }
QList<QByteArray> CliRun::errLines() const { return lines(err); }

CliRun runCli(const QList<QByteArray>& arguments, const QByteArray& input)
{
    return runProgram(ORWICK_CLI_PATH, arguments, input);
}

CliRun runProgram(const QByteArray& program, const QList<QByteArray>& arguments, const QByteArray& input)
{
    CliRun run;
    QTemporaryFile in, out, err;
    if (!in.open() || !out.open() || !err.open() || in.write(input) != input.size() || !in.seek(0))
        return run;
    std::vector<char*> argv{const_cast<char*>(program.constData())};
    for (const QByteArray& argument : arguments)
        argv.push_back(const_cast<char*>(argument.constData()));
    argv.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, in.handle(), STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, out.handle(), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, err.handle(), STDERR_FILENO);
    pid_t child = 0;
    const int spawned = posix_spawn(&child, program.constData(), &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (spawned != 0)
        return run;
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.out = readBack(out);
    run.err = readBack(err);
    return run;
}

} // namespace orwick::test
