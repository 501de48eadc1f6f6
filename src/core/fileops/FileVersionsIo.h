#pragma once
// The small file steps under FileVersions (made files, replacements, and the swaps of undo and
// redo): writing, temporary files beside a path, and streamed copies. Safe on any thread.

#include "base/FilePath.h"
#include "base/Result.h"
#include "platform/UniqueFd.h"

#include <QByteArray>
#include <QString>
#include <fcntl.h>
#include <sys/stat.h>
#include <utility>

namespace orwick::fileversions::io {

inline constexpr int kOpenFlags = O_CLOEXEC | O_NOCTTY;

// The reason in a "Couldn’t change" sentence for a write that failed with `error` (errno).
QString writeReason(int error);
// Writes all of `bytes` at the start of the open file; false with `error` set on failure.
bool writeAll(int fd, QByteArrayView bytes, int* error);
// A new file at a temporary name beside `path`, made exclusively with `mode` (less the umask);
// the descriptor is not open (errno kept) on failure.
std::pair<UniqueFd, FilePath> makeTemporary(const FilePath& path, QByteArrayView purpose, mode_t mode);
// Writes `size` bytes of `from` (from its start) over the open file `to` from its start, then
// cuts `to` to that length and syncs it. 0 or the errno of the failure.
int copyOver(int from, qint64 size, int to);
// A copy of the open file `from` (status `st`) at a temporary name beside `near`, with its mode
// and extended attributes, synced. Nothing is left on failure.
[[nodiscard]] Result<FilePath> copyAside(int from, const struct stat& st, const FilePath& near, QByteArrayView purpose);

} // namespace orwick::fileversions::io
