#pragma once
// FolderDiff: what differs between two folders, and the plan that brings them into line.
//
// compare() walks both sides (each with the directory reader, both at once), takes the union
// of their relative paths in ascending byte order and classes each: only on the left, only on
// the right, changed or the same. Something only on one side whose folder is itself only on that
// side is not listed apart but counted in that folder's entry. File pairs of different sizes are
// changed; equal sizes up to kLargestRead are read side by side in kChunk pieces and compared
// byte for byte; larger ones are the same when their modification times are. Symbolic links are
// compared as links (their targets), never followed. A pair that can't be read, or that changed
// while being read, counts as changed. Unreadable folders are left out with all they hold.
// compare() and plan() are pure; compare() may run on any thread and stops early when cancelled.

#include "base/CancelFlag.h"
#include "base/FilePath.h"
#include "fileops/FileChange.h"

#include <QList>
#include <functional>
#include <optional>
#include <vector>

namespace orwick::FolderDiff {

enum class Status { onlyLeft, onlyRight, changed, same };
inline constexpr Status kStatuses[] = {Status::onlyLeft, Status::onlyRight, Status::changed, Status::same};
// "onlyLeft", "onlyRight", "changed", "same": the filter's raw values.
QString rawValue(Status status);

struct Entry {
    QByteArray path; // relative to both roots, "/"-separated
    Status status = Status::same;
    bool isFolder = false;
    std::optional<qint64> leftSize;
    std::optional<qint64> rightSize;
    qint64 files = 0; // a folder on one side only: the files it holds, at any depth
    QString pathText() const { return visibleName(path); }
    bool operator==(const Entry&) const = default;
};

struct Result {
    std::vector<Entry> entries; // ascending by path
    bool isPartial = false;     // a side had more files than the limit
    qint64 count(Status status) const;
    bool hasDifferences() const;
};

inline constexpr qint64 kPanelLimit = 50000;
inline constexpr qint64 kLargestRead = 67108864; // 64 MiB
inline constexpr qint64 kChunk = 1048576;        // 1 MiB

// Why two folders can't be compared (one is the other, or lies inside it); none when they can.
std::optional<QString> problemWith(const FilePath& left, const FilePath& right);

Result compare(const FilePath& left, const FilePath& right, qint64 limit, const CancelFlag& cancel);

struct SyncMode {
    enum class Kind { copyMissing, mirror, bothWays };
    Kind kind = Kind::copyMissing;
    bool toRight = true; // copyMissing and mirror: the side that changes is the right one
    static SyncMode copyMissing(bool toRight) { return {Kind::copyMissing, toRight}; }
    static SyncMode mirror(bool toRight) { return {Kind::mirror, toRight}; }
    static SyncMode bothWays() { return {Kind::bothWays, true}; }
    bool operator==(const SyncMode&) const = default;
};

// The copies and trash moves one sync makes, handed to FileOperations::sync as one step.
struct SyncPlan {
    QList<FileMove> copies;   // from one side to the same relative path on the other
    QList<FilePath> replacing; // destinations of copies that replace what is there (to the Trash first)
    QList<FilePath> toTrash;  // extra items of a mirror's target side
    bool isEmpty() const { return copies.isEmpty() && toTrash.isEmpty(); }
};

// A location's modification time in nanoseconds; none when it can't be read.
using ModifiedTime = std::function<std::optional<qint64>(const FilePath&)>;

// "Both ways, newer file wins" leaves a changed pair alone when neither is newer (equal times,
// or a time that can't be read).
SyncPlan plan(const Result& result, const FilePath& left, const FilePath& right, SyncMode mode, const ModifiedTime& modified);

// "Copy what's missing to Backup", "Both ways, newer file wins", "Mirror (extra files go to the Trash)".
QString syncTitle(SyncMode mode, const FilePath& left, const FilePath& right);
// The confirmation: what the plan does, ending ". Undo puts everything back."
QString confirmation(SyncMode mode, const SyncPlan& plan, const FilePath& left, const FilePath& right);

// "No differences: every file matches", or the counts ("2 only on the left · 1 changed").
QString summary(const Result& result);
// A row's detail: "12 KB", "12 KB → 14 KB, contents differ", "folder, 12 files".
QString entryDetail(const Entry& entry);
// " (first 50,000 files)" for a partial result, else "".
QString partialNote(const Result& result, qint64 limit = kPanelLimit);

} // namespace orwick::FolderDiff
