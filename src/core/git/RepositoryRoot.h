#pragma once
// Finding the working copy a folder belongs to: the nearest folder, walking up, that holds a
// `.git` entry (a folder, or the file of a worktree or submodule). Reads the disk; Git memoises it.

#include "base/FilePath.h"

#include <optional>

namespace orwick {

// The repository root holding `folder`, or none below "/".
std::optional<FilePath> findRepositoryRoot(const FilePath& folder);

} // namespace orwick
