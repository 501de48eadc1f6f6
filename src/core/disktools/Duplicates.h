#pragma once
// Duplicates: finds files whose contents are byte-for-byte the same under one folder.
//
// Three stages, so that most files are never read: files are filed by exact size; files that
// share a size have their first 64 KiB hashed; heads that agree on files larger than that are
// hashed whole. SHA-256 throughout. Hard links of one file (same device and inode) are one file.
// Hidden entries, package contents, the skipped build folders, symbolic links and other mounted
// file systems are never entered. find() is pure and may run on any thread; it stops early when
// the CancelFlag is set and reports its progress through atomic counters a panel samples.

#include "base/CancelFlag.h"
#include "base/FilePath.h"

#include <QString>
#include <array>
#include <atomic>
#include <functional>
#include <vector>

namespace orwick::Duplicates {

struct File {
    FilePath url;
    qint64 modifiedNs = 0; // content modification time; 0 when the file system gives none
    bool operator==(const File&) const = default;
};

struct Group {
    qint64 size = 0;         // every member's size in bytes
    std::vector<File> files; // two or more: oldest first, then by path
    qint64 wastedBytes() const { return size * qint64(files.size() - 1); }
    // Unique per group and stable while the group is unchanged.
    QString id() const;
};

struct Scan {
    std::vector<Group> groups; // largest waste first
    qint64 files = 0;          // regular files the walk looked at
    bool isPartial = false;    // the walk stopped at the file limit
};

// Folder names whose contents are never entered, at any depth (exact, case-sensitive).
inline constexpr std::array<const char*, 11> skippedFolders{
    "node_modules", ".git", "build", "DerivedData", "Pods", ".build", "target", "dist", ".next", "vendor",
    "__pycache__"};

inline constexpr qint64 defaultMinimumSize = 100000;
inline constexpr qint64 fileLimit = 300000;
inline constexpr qint64 headBytes = 65536;
inline constexpr qint64 readChunk = 1048576;

enum class Stage { walking, comparingHeads, comparingWholeFiles, done };

// Written by the search, read by whoever shows progress (about ten times a second).
struct Progress {
    std::atomic<Stage> stage{Stage::walking};
    std::atomic<qint64> filesSeen{0};   // regular files walked so far
    std::atomic<qint64> filesHashed{0}; // files hashed in the current stage
    std::atomic<qint64> filesToHash{0}; // files the current stage hashes
};

struct Options {
    qint64 minimumSize = defaultMinimumSize;
    qint64 limit = fileLimit;
    int threads = 0; // 0: one per core
    // Called on the searching thread as each hashing stage begins (progress display, tests).
    std::function<void(Stage)> stageStarted;
};

// The search. A cancelled search returns what it had; its caller drops it.
Scan find(const FilePath& folder, const Options& options, const CancelFlag& cancel, Progress* progress = nullptr);

// The member the tick rule keeps: the first not named like a copy, else the first (oldest).
const File& suggestedKeep(const Group& group);

// "a copy.txt", "a copy 2.txt", "Copy of a.txt", "a (2).txt" are named like copies.
bool isNamedLikeCopy(const FilePath& path);

// The footer line: the principle before a result, then the groups, the waste and the count.
QString summary(const Scan* scan);

// The groups in their shown order: by waste, largest first; equal waste by first path, descending.
void orderGroups(std::vector<Group>& groups);

} // namespace orwick::Duplicates
