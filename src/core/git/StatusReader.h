#pragma once
// Reading one repository's status: runs `git status --porcelain=v1 -z -b --ignored` through the
// runner, parses its standard output and notes a running rebase, merge or cherry-pick. Blocks;
// call it from a background task.
//
// Only standard output is parsed: a warning git prints on standard error while it succeeds (an
// unreadable folder, GIT_TRACE output) leaves the branch and the files exactly as they are
// without it. A failing git gives its own first complaint as the failure (GitMessage.h).

#include "base/Result.h"
#include "git/GitRunner.h"
#include "git/RepoStatus.h"

namespace orwick {

// The status of the repository at `root`, or the sentence saying why git couldn't read it (not a
// repository, a corrupt index or HEAD, git that can't start). When `cancel` was set meanwhile the
// failure reads "The status read was stopped."; the caller drops it.
[[nodiscard]] Result<RepoStatus> readStatus(const FilePath& executable, const FilePath& root,
                                            const CancelFlag* cancel = nullptr);

} // namespace orwick
