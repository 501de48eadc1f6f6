#include "git/WorkingTreeDiff.h"

#include "git/GitMessage.h"
#include "git/GitOutputParse.h"
#include "git/GitRunner.h"

namespace orwick {

Result<GitDiff> workingTreeDiff(const std::optional<FilePath>& executable, const FilePath& root, const FilePath& file)
{
    if (!executable)
        return failure(gitMissingMessage());
    const QByteArray path = root.isAncestorOf(file) ? file.native().sliced(root.isRoot() ? 1 : root.native().size() + 1)
                                                    : file.native();
    GitRun how;
    how.keepBytes = true;
    how.literalPathspecs = true;
    const GitOutput result = runGit(*executable, {"diff", "--no-color", "--", path}, root, how);
    if (result.status != 0)
        return failure(tidyGitOutput(result));
    return readDiff(result.bytes);
}

} // namespace orwick
