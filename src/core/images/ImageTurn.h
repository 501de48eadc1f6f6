#pragma once
// ImageTurn: a picture turned a quarter left or right, or mirrored, as the new bytes that replace
// it in place (FileOperations::replaceInPlace). Pure functions of the file, safe to run on several
// workers at once.
//
// How each kind of picture is turned:
// - JPEG: without loss. Only its EXIF Orientation changes — the new turn composed with the one it
//   had (a photo shown turned right, 6, turned right again becomes 3) — and an XMP
//   tiff:Orientation, when there is one, follows. The compressed picture data stays byte for byte
//   the same. A JPEG whose metadata exiv2 can't write is decoded and encoded again at quality 95
//   instead, its metadata kept as a resize keeps it.
// - PNG, WebP, AVIF: the upright pixels are turned and written again in the same format — PNG and
//   a lossless WebP stay lossless, a lossy WebP or an AVIF is written at quality 95 — and the
//   metadata goes with them (withMetadataOf): Orientation 1, the stored size swapped for a
//   quarter turn. A picture that an orientation showed turned looks turned by exactly the asked
//   quarter from how it looked, never twice: the pixels are read upright by their orientation
//   (UprightReader), as Orwick and other viewers show them, and with the orientation at 1
//   afterwards every viewer shows the result alike.
// - Refused, with the file's name: a file that isn't a picture, a picture of a format Orwick can't write (GIF, BMP, SVG…), one
//   of several frames (only the first would remain), one whose name says another format than its
//   bytes, and one that is damaged or cut short.

#include "base/CancelFlag.h"
#include "base/FilePath.h"
#include "base/Result.h"

#include <QByteArray>
#include <QImage>
#include <QString>

namespace orwick {

enum class PictureTurn { left, right, flipHorizontal, flipVertical };

// "Rotate Left", "Rotate Right", "Flip Horizontal", "Flip Vertical".
QString turnTitle(PictureTurn turn);
// The symbol its command and toast show: "rotate.left", "rotate.right",
// "arrow.left.and.right.righttriangle.left.righttriangle.right", "arrow.up.and.down.righttriangle.up.righttriangle.down".
QString turnSymbol(PictureTurn turn);

// The EXIF orientation (1–8) of a picture shown as `orientation` says once it is turned by
// `turn`; an orientation outside 1–8 counts as 1 (upright).
int turnedOrientation(int orientation, PictureTurn turn);

// `image`'s pixels turned by `turn`.
QImage turnedImage(const QImage& image, PictureTurn turn);

// The picture's new bytes, turned as the header says. Cancelled: an empty failure.
[[nodiscard]] Result<QByteArray> turnedBytes(const FilePath& file, PictureTurn turn, const CancelFlag& cancel);

} // namespace orwick
