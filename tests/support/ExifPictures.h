#pragma once
// ExifPictures: picture files that carry an EXIF orientation where each format keeps it — a
// JPEG's APP1 segment, a PNG's eXIf chunk, an extended WebP's EXIF chunk — built byte by byte,
// so that no reader under test wrote them. And the PNG chunks they are made of.

#include <QByteArray>

namespace orwick::test {

// A number as four bytes, most significant first.
QByteArray bigEndian32(quint32 value);

// A PNG chunk of `type` holding `data`, with its length and checksum.
QByteArray pngChunk(const QByteArray& type, const QByteArray& data);

// An EXIF block (TIFF-structured, big-endian) with one tag: Orientation, `orientation` (1–8; 6
// turns the picture a quarter clockwise). Any number fits, for pictures that say nonsense.
QByteArray exifOrientationBlock(int orientation);

// `picture`, a JPEG, a PNG or a WebP of one frame (told by its first bytes), with `exif` stored
// in it; a lossless or lossy WebP becomes an extended one. Fails the test for other bytes.
QByteArray withExif(const QByteArray& picture, const QByteArray& exif);

} // namespace orwick::test
