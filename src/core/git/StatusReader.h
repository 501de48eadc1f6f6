#pragma once
// Reading one repository's status: runs `git status --porcelain=v1 -z -b --ignored` through the
// runner, parses it and notes a running rebase, merge or cherry-pick. Blocks; call it from a
// background task.

#include "git/GitRunner.h"
#include "git/RepoStatus.h"

namespace orwick {

// The status of the repository at `root`; none when git fails (not a repository, a corrupt
// index, git missing) or when `cancel` was set meanwhile.
std::optional<RepoStatus> readStatus(const FilePath& executable, const FilePath& root, const CancelFlag* cancel = nullptr);

} // namespace orwick
