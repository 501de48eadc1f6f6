#pragma once
// FileHead: the first bytes of a file, read in chunks that stop early when the load is
// cancelled, with the file's whole size, so a loader never reads more than it shows.

#include "base/CancelFlag.h"
#include "base/FilePath.h"
#include "base/Result.h"

#include <QByteArray>

namespace orwick::preview {

struct FileHead {
    QByteArray bytes;   // at most the asked number
    qint64 size = 0;    // the whole file's size
    bool isWhole() const { return bytes.size() >= size; }
};

// Reads up to `limit` bytes from the start of the regular file at `path` (links followed).
// Fails with a sentence when it can't be opened or read, or isn't a regular file; a cancelled
// read returns what it had.
[[nodiscard]] Result<FileHead> readHead(const FilePath& path, qint64 limit, const CancelFlag& cancel);

// "Showing the first 512 kB of 4.2 GB".
QString firstPartNote(qint64 shown, qint64 whole);

} // namespace orwick::preview
