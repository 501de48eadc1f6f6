#pragma once
// ProjectFinder: gathers the git repositories under a folder (the home folder) for the palette's
// projects mode. A bounded, cancellable walk meant for a background task: it goes breadth first
// to a fixed depth, reads at most a fixed number of folders, never follows links, and skips
// hidden folders and build output. A folder that holds ".git" (a folder, or a file as in
// worktrees and submodules) is a repository; the walk does not look inside it.

#include "base/CancelFlag.h"
#include "base/FilePath.h"

#include <vector>

namespace orwick {

struct ProjectSearch {
    std::vector<FilePath> repositories; // in the order found: shallower first, then by name
    bool isPartial = false;             // a bound was reached or the walk was cancelled
};

struct ProjectWalkLimits {
    int maxDepth = 5;         // levels of folders below the root that are read
    int maxFolders = 20'000;  // folders read in all
};

ProjectSearch findProjects(const FilePath& root, const CancelFlag& cancel, ProjectWalkLimits limits = {});

// Folders a project walk never enters: hidden ones and the output of build tools.
bool isSkippedByProjectWalk(QByteArrayView name);

} // namespace orwick
