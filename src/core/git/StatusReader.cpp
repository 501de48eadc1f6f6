#include "git/StatusReader.h"

#include "git/GitMessage.h"

namespace orwick {

Result<RepoStatus> readStatus(const FilePath& executable, const FilePath& root, const CancelFlag* cancel)
{
    GitRun how;
    how.keepBytes = true; // names that aren't UTF-8 keep their bytes
    how.cancel = cancel;
    const GitOutput result = runGit(executable, {"status", "--porcelain=v1", "-z", "-b", "--ignored"}, root, how);
    if (cancel && cancel->isCancelled())
        return failure(QStringLiteral("The status read was stopped."));
    if (result.status != 0)
        return failure(gitFailureMessage(result));
    RepoStatus status = parseStatus(result.bytes, root);
    status.operation = operationInProgress(root);
    return status;
}

} // namespace orwick
