#pragma once
// A path's last name and the folder part before it, as views of the path's own bytes: for code
// that looks at thousands of paths and shouldn't make a FilePath or a string of each part.

#include "base/FilePath.h"

namespace orwick {

// Where a path's name starts: just after its last "/".
inline qsizetype nameStart(const FilePath& path) { return path.native().lastIndexOf('/') + 1; }
// The path's name.
inline QByteArrayView nameOf(const FilePath& path) { return QByteArrayView(path.native()).sliced(nameStart(path)); }
// The folder part with its closing "/" ("/" for an item of the root).
inline QByteArrayView folderPartOf(const FilePath& path) { return QByteArrayView(path.native()).first(nameStart(path)); }

} // namespace orwick
