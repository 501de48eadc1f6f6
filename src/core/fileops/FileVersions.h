#pragma once
// FileVersions: the file work under the batch transforms (FileOperations::makeFiles and
// replaceInPlace), done on their workers.
//
// - A made file is written under a hidden temporary name in its folder and synced, then placed
//   at the first free name from where it wants to be, never replacing anything, so a reader
//   never sees half of it and two made files never take one name.
// - A file rewritten in place keeps being the same file to the user (owner, group, mode,
//   extended attributes, and its other hard links), and its old version goes to the Trash as
//   that file, so the old bytes survive a crash and can be put back. A file with one name is
//   replaced through a temporary file and a rename; one with several names is written through
//   its own inode. A full disk leaves the file as it was and no temporary file behind.
// - Undo and redo swap the version in place with the one in the Trash, only while the file
//   still holds the version they expect (by digest), so a change made meanwhile is never lost.
//
// Failures are sentences in the engine's shape ("Couldn’t change “a.jpg”: it is read-only.").
// Pure functions of the file system; safe on any thread.

#include "base/FilePath.h"
#include "base/Result.h"
#include "notes/NoteFile.h"

#include <QByteArray>
#include <memory>
#include <optional>

struct XXH3_state_s;

namespace orwick::fileversions {

// A digest of contents, to know later, in this process, whether a file still holds them
// (XXH3-128: fast, not for adversaries, never stored).
QByteArray digestOf(QByteArrayView bytes);
// The digest of what the open file holds, read from its start; nothing when it can't be read.
std::optional<QByteArray> digestOfFile(int fd);
// A digest built piece by piece; the same bytes in any pieces give digestOf's digest.
class Digester {
public:
    Digester();
    ~Digester();
    Digester(const Digester&) = delete;
    Digester& operator=(const Digester&) = delete;
    void add(QByteArrayView bytes);
    [[nodiscard]] QByteArray result() const;

private:
    struct FreeState {
        void operator()(XXH3_state_s* state) const;
    };
    std::unique_ptr<XXH3_state_s, FreeState> m_state;
};

// Writes `bytes` under a hidden temporary name in the folder of `wanted`, with the mode a new
// file gets, synced to the disk. Returns the temporary path; nothing is left on failure.
[[nodiscard]] Result<FilePath> writeTemporary(const FilePath& wanted, const QByteArray& bytes);
// Renames `temporary` to `wanted`, or to the first free name from it ("photo 2.webp") when that
// is taken (even by a program racing for it); never replaces. Returns the name it took.
// Both fail with a reason that names the file ("“a.webp” couldn’t be made (the disk is full)").
[[nodiscard]] Result<FilePath> placeTemporary(const FilePath& temporary, const FilePath& wanted);

// A file as found before its transform runs: where it really lives (a link is followed) and the
// version a transform reads, so that a change made meanwhile is noticed before writing.
struct Found {
    FilePath target;
    notefile::Fingerprint version;
};
// Nothing (not an error) when the file is gone; a refusal when it isn't a regular file, is
// read-only (notefile::checkWritable), or lies in a folder where nothing can be made.
[[nodiscard]] std::optional<Result<Found>> findForReplace(const FilePath& file);

// One file replaced: the Trash place of its old version and both versions' digests. No place
// when the new bytes were the old ones, and nothing was written.
struct Replaced {
    FilePath target;
    FilePath kept;
    QByteArray digestBefore;
    QByteArray digestAfter;
};
// Replaces the contents of `found` with `bytes`, keeping its old version in the Trash, unless it
// changed since it was found.
[[nodiscard]] Result<Replaced> replaceKeepingOld(const Found& found, const QByteArray& bytes);

// Puts the version lying in the Trash at `kept` in place of the file at `target`, and the one
// in place into the Trash at `kept`, when `target` holds contents of digest `expected`.
[[nodiscard]] Status swapWithKept(const FilePath& target, const FilePath& kept, const QByteArray& expected);

} // namespace orwick::fileversions
