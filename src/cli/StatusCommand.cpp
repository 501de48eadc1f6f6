// orwick-cli status DIR in the programs with Qt: says what is wrong with DIR, its repository or
// git, and otherwise writes the report StatusReport.h describes (orwick-cli itself answers the
// plain case before Qt loads).

#include "cli/CliCommand.h"
#include "cli/CliPaths.h"
#include "cli/StatusReport.h"
#include "git/GitMessage.h"
#include "git/RepositoryRoot.h"

namespace orwick::cli {
namespace {

int status(const Arguments& arguments)
{
    if (arguments.size() != 1)
        return usageError(QStringLiteral("usage: orwick-cli status DIR"));
    if (const auto problem = problemWith(arguments.first(), Expect::folder)) {
        err() << *problem << Qt::endl;
        return 1;
    }
    const FilePath folder = pathArgument(arguments.first());
    const auto& executable = gitExecutable();
    if (!executable) {
        err() << gitMissingMessage() << Qt::endl;
        return 1;
    }
    const auto root = findRepositoryRoot(folder);
    if (!root) {
        err() << folder.text() << ": not inside a git repository" << Qt::endl;
        return 1;
    }
    out().flush(); // the report is written past the stream
    if (const auto failure = reportStatus(executable->native().toStdString(), root->native().toStdString())) {
        const GitOutput result{failure->status, {},
                               failure->startError != 0 ? gitStartFailure(failure->startError)
                                                        : QString::fromUtf8(failure->errors.data(), qsizetype(failure->errors.size())),
                               {}};
        err() << root->text() << ": " << gitFailureMessage(result) << Qt::endl;
        return 1;
    }
    return 0;
}

const CliRegistration registration({QStringLiteral("status"), QStringLiteral("status DIR"),
                                     QStringLiteral("git status of the repository holding DIR"), status});

} // namespace
} // namespace orwick::cli
