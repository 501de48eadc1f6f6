#pragma once
// Pictures the image tests make: real files written by Qt's writers in a temporary folder, a
// JPEG given an EXIF orientation, a PNG that only claims a huge size or is huge and white, a
// two-frame GIF and WebP.

#include "base/FilePath.h"
#include "support/ExifPictures.h" // pngChunk, bigEndian32
#include "support/TempHome.h"

#include <QByteArray>
#include <QColor>
#include <QImage>

namespace orwick::test {

// The bytes of `image` in `format` ("png", "jpeg"…).
QByteArray encoded(const QImage& image, const QByteArray& format, int quality = -1);

// A picture whose left half is `left` and right half `right`.
QImage halves(QSize size, QColor left, QColor right);

// `jpeg` with an EXIF segment saying `orientation` (1–8; 6 turns it a quarter clockwise).
QByteArray withExifOrientation(const QByteArray& jpeg, int orientation);

// A PNG whose header says `size` and whose pixel data is missing: decoding it would fail, so a
// refusal on its size shows nothing was decoded.
QByteArray pngClaiming(QSize size);

// A real PNG of `side` × `side` white pixels that is small on disk (about 700 kB for 30,000),
// made byte by byte (Qt would need the whole picture in memory to write it): 1-bit grey, its rows
// deflated as runs. In HugePng.cpp.
QByteArray hugeWhitePng(int side);

// A 4 × 4 GIF of two frames, red then blue.
QByteArray twoFrameGif();

// A 4 × 4 animated WebP of two frames, red then blue (lossless).
QByteArray twoFrameWebp();

// A JPEG's compressed picture: everything from its start-of-scan marker on.
QByteArray jpegScan(const QByteArray& bytes);

// The picture in `bytes`, decoded (upright by its EXIF orientation).
QImage decoded(const QByteArray& bytes);

// True when the colours are within `tolerance` on each channel (lossy formats).
bool near(QColor a, QColor b, int tolerance = 24);

} // namespace orwick::test
