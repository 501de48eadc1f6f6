#include "git/StatusReader.h"

#include "git/GitMessage.h"

namespace orwick {

Result<RepoStatus> readStatus(const FilePath& executable, const FilePath& root, const CancelFlag* cancel)
{
    const GitOutput result = runCapturingErrors(
        executable, {QStringLiteral("status"), QStringLiteral("--porcelain=v1"), QStringLiteral("-z"), QStringLiteral("-b"),
                     QStringLiteral("--ignored")},
        root, cancel);
    if (cancel && cancel->isCancelled())
        return failure(QStringLiteral("The status read was stopped."));
    if (result.status != 0)
        return failure(gitFailureMessage(result));
    RepoStatus status = parseStatus(result.output, root);
    status.operation = operationInProgress(root);
    return status;
}

} // namespace orwick
