#pragma once
// NameIndexFile: the name index kept between runs, so that a start doesn't walk the home folder
// again before the palette can find files. A binary file, "name-index.bin" in Orwick's data
// folder: a header (magic, version, counts, when the names were last walked, a checksum of the
// rest) and the table's columns (parents, name offsets, name lengths, folder flags, the name
// bytes), little-endian.
//
// Writing is atomic (a temporary file renamed over the old one) and meant for a background
// task. Reading checks everything — sizes, the checksum, every parent and name — so a damaged or
// foreign file never becomes a table: it is set aside as "name-index.damaged.bin" (replacing an
// older one; the index is only a cache) and reading answers nothing, as for a missing file.

#include "base/Result.h"
#include "search/NameTable.h"

#include <optional>

namespace orwick::NameIndexFile {

FilePath defaultPath(); // $XDG_DATA_HOME/Orwick/name-index.bin
FilePath damagedPath(const FilePath& file);

struct Contents {
    NameTable table;
    qint64 walkedAtMs = 0; // when the names were last walked in full (ms since the epoch)
};

std::optional<Contents> read(const FilePath& file);
[[nodiscard]] Status write(const FilePath& file, const NameTable& table, qint64 walkedAtMs);

} // namespace orwick::NameIndexFile
