#pragma once
// Where a working copy keeps git's files, found on disk without running git: the root that holds
// a folder, the git folder of a root, and an operation under way in it. Paths are absolute, as
// bytes. Needs no Qt: orwick-cli's status reads these before Qt would load
// (src/cli/StatusReport.h); RepositoryRoot.h and RepoStatus.h give them as FilePath and text.

#include <optional>
#include <string>
#include <string_view>

namespace orwick {

// The nearest folder, walking up from `folder` (itself first), that holds a `.git` entry (a
// folder, or the file of a worktree or submodule); none below "/".
std::optional<std::string> findGitRoot(std::string_view folder);

// `root/.git`, or where a `.git` file (worktree, submodule) points ("gitdir: <path>").
std::string gitFolderOf(std::string_view root);

// "Rebasing", "Merging" or "Cherry-picking" while such an operation is under way in the
// repository at `root`; empty otherwise.
std::string_view operationUnderWay(std::string_view root);

} // namespace orwick
