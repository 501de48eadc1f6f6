#pragma once
// DiffPatch: the patch that stages, unstages or discards just some lines of one file's diff.
//
// The review panel shows a file's diff (UnifiedDiff.h) and lets the user pick lines, or a whole
// hunk. buildPatch() turns the pick into a patch for `git apply`:
//   - staging lines of the working tree's diff (`git diff`): PatchDirection::forward, applied
//     with `git apply --cached` — the patch's old side is the index as it is;
//   - unstaging lines of the staged diff (`git diff --cached`): PatchDirection::reverse, applied
//     with `git apply --cached --reverse` — the patch's new side is the index as it is;
//   - discarding lines of the working tree's diff: PatchDirection::reverse, applied with
//     `git apply --reverse` to the working tree.
// The side the patch is applied to stays exactly as the diff has it; on the other side, lines
// not picked are left as they were (a removed line not picked stays as context, an added one
// is left out). Hunks without a picked change are dropped and the rest renumbered. A line
// without a final newline that would no longer be last gets its newline, so the patch always
// describes a file git can write.
//
// A pick that covers every change of the file keeps git's own header (a rename, a new or
// deleted file, a mode change go with it); a partial pick changes the contents of one path only:
// the old name when staging, the new name when unstaging or discarding.
//
// Pure; safe on any thread.

#include "git/UnifiedDiff.h"

#include <QSet>

namespace orwick {

// One line of a file's diff: its hunk and its place among the hunk's lines.
struct DiffLinePosition {
    int hunk = 0;
    int line = 0;
    bool operator==(const DiffLinePosition&) const = default;
};
inline size_t qHash(const DiffLinePosition& position, size_t seed = 0)
{
    return qHashMulti(seed, position.hunk, position.line);
}
using DiffLineSelection = QSet<DiffLinePosition>;

enum class PatchDirection {
    forward, // applied as it is: staging (`git apply --cached`)
    reverse, // applied with --reverse: unstaging (with --cached) and discarding
};

// Every added and removed line of hunk `hunk`.
DiffLineSelection hunkSelection(const FileDiff& file, int hunk);
// Every added and removed line of the file.
DiffLineSelection wholeFileSelection(const FileDiff& file);
// True when `selection` picks at least one added or removed line.
bool selectsChanges(const FileDiff& file, const DiffLineSelection& selection);

// The patch for the picked lines of `file`, or empty when nothing picked is a change (context
// lines picked count for nothing), when the file is binary, or when a hunk it needs was cut short.
QByteArray buildPatch(const FileDiff& file, const DiffLineSelection& selection, PatchDirection direction);

} // namespace orwick
