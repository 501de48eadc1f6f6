#pragma once
// RepoStatus: one repository's state as `git status --porcelain=v1 -z -b --ignored` reports it —
// branch, ahead/behind, a running operation, the changed files and the ignored paths — plus the
// pure functions that read git's output into it. A plain value, compared field by field, so an
// unchanged status can be recognised and nothing redrawn.

#include "base/FilePath.h"
#include "git/ChangeKind.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <memory>
#include <optional>

namespace orwick {

// The badge letter ("M", "A", "D", "R", "U", "!"), its tooltip and the kind's name ("modified"…,
// changeKeyword() as text).
QString changeLetter(Change change);
QString changeTooltip(Change change);
QString changeName(Change change);
// The tooltip of a folder that holds changes.
QString changesBelowTooltip();

// The paths git ignores in one repository. A path counts as ignored when it, or a folder it is
// in (below the root), is in the set.
struct IgnoredPaths {
    FilePath root;
    std::shared_ptr<const QSet<FilePath>> paths = std::make_shared<const QSet<FilePath>>();

    bool contains(const FilePath& path) const;
    bool isEmpty() const { return paths->isEmpty(); }
    bool operator==(const IgnoredPaths& other) const
    {
        return root == other.root && (paths == other.paths || *paths == *other.paths);
    }
};

struct RepoStatus {
    struct File {
        QString path;        // relative to the root, as git printed it
        Change change = Change::modified;
        bool isStaged = false;
        bool hasUnstaged = false;
        QByteArray nativePath = {}; // the same path byte for byte, kept only when it isn't UTF-8; see pathOf()
        QByteArray renamedFrom = {};  // a renamed file's old path, relative to the root, as bytes; empty otherwise
        bool operator==(const File&) const = default;
    };

    FilePath root;                        // the folder that holds .git
    QString branch;                       // empty when unknown
    int ahead = 0;
    int behind = 0;
    std::optional<QString> operation;     // "Rebasing", "Merging", "Cherry-picking"
    QList<File> files;                    // sorted by path, naturally
    QHash<FilePath, Change> changedPaths; // absolute path → change, for a row's badge
    QSet<FilePath> foldersWithChanges;    // every folder between a change and the root (root excluded)
    IgnoredPaths ignored;

    bool operator==(const RepoStatus&) const = default;

    // The file's absolute path, its bytes as on disk: what actions on the file take.
    FilePath pathOf(const File& file) const;
    // What going back to the last commit touches for `file`: its own path and, for a rename, the
    // old path it came from (restored while the new one goes).
    QList<FilePath> pathsToDiscard(const File& file) const;
};

struct BranchLine {
    QString branch;
    int ahead = 0;
    int behind = 0;
};

// Reads a branch record ("## main...origin/main [ahead 2, behind 1]", "## No commits yet on main"),
// as parseBranchLine() (StatusRecords.h) does.
BranchLine parseBranch(const QString& line);

// Reads the NUL-separated porcelain v1 records of `git status -z -b --ignored` for the repository
// at `root`. Leaves `operation` unset. From git's bytes, a path that isn't UTF-8 keeps its bytes
// (changedPaths, ignored paths, File::nativePath); the text form decodes them first.
RepoStatus parseStatus(const QByteArray& output, const FilePath& root);
RepoStatus parseStatus(const QString& output, const FilePath& root);

// The path of the repository's git folder: `root/.git`, or where a `.git` file (worktree,
// submodule) points.
FilePath gitFolder(const FilePath& root);

// "Rebasing", "Merging" or "Cherry-picking" while such an operation is under way in the repository.
std::optional<QString> operationInProgress(const FilePath& root);

} // namespace orwick
