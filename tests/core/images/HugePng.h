#pragma once
// A real PNG of a huge size that is small on disk, made byte by byte (Qt would need the whole
// picture in memory to write it): 1-bit grey, every pixel white, its rows deflated as runs.

#include <QByteArray>

namespace orwick::test {

// `side` × `side` white pixels; about 700 kB for 30,000 × 30,000.
QByteArray hugeWhitePng(int side);

} // namespace orwick::test
