#pragma once
// New bytes for an existing file (a note whose property or task changed), written so that it
// stays the same file to the user: same owner, group, mode and extended attributes, and hard
// links stay one file. Where that can be had with a temporary file in the same folder and a
// rename (the file has one name, and its owner and attributes can all be given to the new file)
// the write is atomic; otherwise the new bytes go into the file's own inode. A refusal is a
// sentence in the engine's shape ("Couldn’t change “a.md”: it is read-only.") and changes nothing.
//
// Used by ChangeRunner (rewrites and their undo) only: the engine is the one writer of users'
// files. Pure functions of the file system; safe on any thread.

#include "base/FilePath.h"
#include "base/Result.h"
#include "notes/NoteFile.h"

#include <QList>
#include <functional>

namespace orwick::filereplace {

// Writes `bytes` over the file at `path` (a link is followed), unless the file no longer matches
// `original` (contents) and `originalVersion`. Refused, with nothing changed, when the file is
// read-only (notefile::checkWritable). A file with one name is replaced through a temporary file in its
// folder that gets the file's owner and group, mode and every extended attribute before the
// rename. A file with several hard links, or one whose owner, attributes or folder don't allow
// that, is rewritten in place (space reserved first, then written, truncated and synced on the
// same inode; a failure midway puts the original bytes back). Either way the modification time
// is the time of the write. `beforeCommit` runs just before the swap (tests change the file there).
[[nodiscard]] Result<notefile::Fingerprint> replaceFile(const FilePath& path, const QByteArray& original,
                                                        const notefile::Fingerprint& originalVersion,
                                                        const QByteArray& bytes,
                                                        const std::function<void()>& beforeCommit = {});

// Many files' new bytes, each written as replaceFile() writes one (without `beforeCommit`), but
// with one flush of each disk for all of them instead of a sync per file: every temporary file
// is written first, then the disks are flushed (syncfs), then each one is renamed over its file
// after the last look at it. A file that has to be rewritten in place is written and synced on
// its own. One result per replacement, in order.
struct Replacement {
    FilePath path;
    QByteArray original;
    notefile::Fingerprint originalVersion;
    QByteArray bytes;
};
[[nodiscard]] QList<Result<notefile::Fingerprint>> replaceFiles(const QList<Replacement>& replacements);

// Puts a file's whole contents back (undo and redo): replaces its bytes with `bytes` only if it
// still holds exactly `expected`; refuses otherwise and changes nothing.
[[nodiscard]] Result<notefile::Fingerprint> swapBytes(const FilePath& path, const QByteArray& expected,
                                                      const QByteArray& bytes);

} // namespace orwick::filereplace
