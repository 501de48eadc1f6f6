#include "git/StatusReader.h"

namespace orwick {

std::optional<RepoStatus> readStatus(const FilePath& executable, const FilePath& root, const CancelFlag* cancel)
{
    const GitOutput result = runCapturingErrors(
        executable, {QStringLiteral("status"), QStringLiteral("--porcelain=v1"), QStringLiteral("-z"), QStringLiteral("-b"),
                     QStringLiteral("--ignored")},
        root, cancel);
    if (result.status != 0 || (cancel && cancel->isCancelled()))
        return std::nullopt;
    RepoStatus status = parseStatus(result.output, root);
    status.operation = operationInProgress(root);
    return status;
}

} // namespace orwick
