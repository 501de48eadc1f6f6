#pragma once
// BuildJunk: finds the folders that build tools and package managers regenerate (dependency
// folders, build output, caches) under a folder, by a fixed rule table of folder names and the
// marker files that must lie beside them. A match is never searched inside; ".git" and
// "Library" are never entered; another mounted file system is never entered. Results come in
// walk order. Pure; runs on any thread and stops when the CancelFlag is set.

#include "base/CancelFlag.h"
#include "base/FilePath.h"

#include <QString>
#include <vector>

namespace orwick::BuildJunk {

struct Found {
    FilePath url;
    QString kind; // the rule's label: "npm", "Rust", "Python"…
    bool operator==(const Found&) const = default;
};

struct Rule {
    const char* folderName;        // exact, letter case included
    const char* kind;
    std::vector<const char*> markers; // any one beside the folder; none: the name alone matches
};

const std::vector<Rule>& rules();

// True when the folder `name` inside the open folder `parentFd` is one of the rules' build
// folders (its marker file lies beside it). Searches leave these out.
bool isBuildFolder(const QByteArray& name, int parentFd);

inline constexpr int searchDepth = 7;

std::vector<Found> find(const FilePath& folder, int depth, const CancelFlag& cancel);

// The allocated size of each found folder (measured on all cores), in the same order; 0 for a
// folder that could not be measured or when cancelled.
std::vector<qint64> measureAll(const std::vector<Found>& found, const CancelFlag& cancel);

// Xcode's central build folder under the home folder (never found by the walk; offered apart).
FilePath xcodeDerivedData();

} // namespace orwick::BuildJunk
