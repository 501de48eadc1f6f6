#pragma once
// GitRunner: the one way Orwick runs the `git` tool. Every status read and every git action goes
// through runCapturingErrors(), so git can never wait for a password, an editor or an SSH prompt.
// Standard output and standard error arrive apart (each UTF-8 with invalid bytes replaced): output
// is what callers parse, errors are git's words for people. A warning git prints while it
// succeeds (an unreadable folder, trace output asked for with GIT_TRACE) therefore never reaches
// a parser; gitFailureMessage() (GitMessage.h) makes the sentence shown when git fails.

#include "base/CancelFlag.h"
#include "base/FilePath.h"

#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

namespace orwick {

// The git program found on PATH, looked up once per process; none when git isn't installed.
const std::optional<FilePath>& gitExecutable();

// The message for actions that need git when there is none.
QString gitMissingMessage();
// The reason git could not be started ("couldn't start git: " and the system's words for `error`).
QString gitStartFailure(int error);

struct GitOutput {
    int status = 0;   // the exit status; -1 when git could not be started
    QString output;   // standard output only: what callers parse
    QString errors;   // standard error: warnings and complaints; the reason when git could not start
    QByteArray bytes; // standard output's bytes instead of `output`, when asked for (GitRun::keepBytes)
};

// How to run git beyond its arguments.
struct GitRun {
    QByteArray input;               // written to git's standard input; without it, git reads /dev/null
    bool literalPathspecs = false;  // GIT_LITERAL_PATHSPECS=1: a path is only ever that path, never a pattern
    bool keepBytes = false;         // hand back standard output's bytes, not text (patches, names that aren't UTF-8)
    const CancelFlag* cancel = nullptr;
    // Standard output handed over piece by piece as git writes it, instead of kept: the caller
    // reads while git still works. `output` and `bytes` stay empty then.
    std::function<void(QByteArrayView)> onOutput;
};

// Runs `executable -C root -c core.quotepath=off arguments…` (ChildProcess.h) and blocks until it
// ends. The environment is this process's with git's settings (GitEnvironment.h).
// When `cancel` is given and gets set, git is stopped; the caller drops the result.
GitOutput runCapturingErrors(const FilePath& executable, const QStringList& arguments, const FilePath& root,
                             const CancelFlag* cancel = nullptr);

// The same with arguments as bytes (paths that aren't UTF-8 reach git unchanged) and `how`.
GitOutput runGit(const FilePath& executable, const QList<QByteArray>& arguments, const FilePath& root, const GitRun& how = {});

// The environment git runs with, as "NAME=value" entries (exposed for tests).
QList<QByteArray> gitEnvironment();

} // namespace orwick
