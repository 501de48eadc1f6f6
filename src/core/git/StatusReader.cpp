#include "git/StatusReader.h"

#include "git/GitMessage.h"
#include "git/StatusParser.h"

namespace orwick {

Result<RepoStatus> readStatus(const FilePath& executable, const FilePath& root, const CancelFlag* cancel)
{
    // The output is parsed as it comes, and the look for a running operation is made while git
    // still writes: once git ends only the sort is left.
    StatusParser parser(root);
    std::optional<std::optional<QString>> operation;
    GitRun how;
    how.cancel = cancel;
    how.onOutput = [&](QByteArrayView piece) {
        parser.feed(piece);
        if (!operation)
            operation = operationInProgress(root);
    };
    const GitOutput result = runGit(executable, {"status", "--porcelain=v1", "-z", "-b", "--ignored"}, root, how);
    if (cancel && cancel->isCancelled())
        return failure(QStringLiteral("The status read was stopped."));
    if (result.status != 0)
        return failure(gitFailureMessage(result));
    RepoStatus status = parser.finish();
    status.operation = operation ? *operation : operationInProgress(root);
    return status;
}

} // namespace orwick
