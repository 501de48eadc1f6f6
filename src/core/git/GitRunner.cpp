#include "git/GitRunner.h"

#include "git/GitEnvironment.h"
#include "platform/ChildProcess.h"
#include "platform/ExecutableSearch.h"

#include <QProcessEnvironment>
#include <cstring>

namespace orwick {

const std::optional<FilePath>& gitExecutable()
{
    static const std::optional<FilePath> found = []() -> std::optional<FilePath> {
        const std::optional<std::string> path = findExecutable("git");
        if (!path)
            return std::nullopt;
        return FilePath::fromNative(QByteArrayView(path->data(), qsizetype(path->size())));
    }();
    return found;
}

QString gitMissingMessage() { return QStringLiteral("git isn't installed"); }

QString gitStartFailure(int error) { return QStringLiteral("couldn't start git: ") + QString::fromLocal8Bit(strerror(error)); }

namespace {

// This process's environment with git's settings.
std::vector<std::string> gitEnvironmentEntries()
{
    // systemEnvironment() reads under Qt's environment lock, so a worker thread never races qputenv.
    const QStringList entries = QProcessEnvironment::systemEnvironment().toStringList();
    std::vector<std::string> environment;
    environment.reserve(size_t(entries.size()) + 8);
    for (const QString& entry : entries)
        environment.push_back(entry.toLocal8Bit().toStdString());
    return withGitSettings(std::move(environment));
}

} // namespace

QList<QByteArray> gitEnvironment()
{
    QList<QByteArray> result;
    for (const std::string& entry : gitEnvironmentEntries())
        result.append(QByteArray::fromStdString(entry));
    return result;
}

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
    std::vector<std::string> argv{executable.native().toStdString(), "-C", root.native().toStdString(), "-c", "core.quotepath=off"};
    for (const QByteArray& argument : arguments)
        argv.push_back(argument.toStdString());
    std::vector<std::string> environment = gitEnvironmentEntries();
    if (how.literalPathspecs)
        environment.push_back("GIT_LITERAL_PATHSPECS=1");
    std::vector<char*> argvPointers = nullTerminated(argv);
    std::vector<char*> environmentPointers = nullTerminated(environment);

    QByteArray output;
    ChildIo io;
    io.feedsInput = !how.input.isNull();
    io.input = std::string_view(how.input.constData(), size_t(how.input.size()));
    io.cancel = how.cancel;
    if (how.onOutput)
        io.onOutput = [&how](std::string_view piece) { how.onOutput(QByteArrayView(piece.data(), qsizetype(piece.size()))); };
    else
        io.onOutput = [&output](std::string_view piece) { output.append(piece.data(), qsizetype(piece.size())); };
    const ChildEnd end = runChild(executable.c_str(), argvPointers.data(), environmentPointers.data(), io);
    if (end.status == -1 && end.startError != 0)
        return {-1, {}, gitStartFailure(end.startError), {}};
    const QString errors = QString::fromUtf8(end.errors.data(), qsizetype(end.errors.size()));
    if (how.keepBytes)
        return {end.status, {}, errors, output};
    return {end.status, QString::fromUtf8(output), errors, {}};
}

} // namespace orwick
