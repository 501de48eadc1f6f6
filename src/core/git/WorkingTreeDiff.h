#pragma once
// The diff between the index and the working tree of one file ("diff", "--no-color", "--",
// path): what is left to stage of a file that already has staged changes. Lines are staged
// from this diff, so a patch built from it applies to the index as it is; the diff against the
// last commit would also hold the staged lines and no longer apply. Blocks; call it from a
// background task.

#include "git/GitRepository.h"

namespace orwick {

[[nodiscard]] Result<GitDiff> workingTreeDiff(const std::optional<FilePath>& executable, const FilePath& root,
                                              const FilePath& file);

} // namespace orwick
