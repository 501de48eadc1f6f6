#pragma once
// ImageSets: the @1x, @2x and @3x files of a picture, for apps and web pages that pick the one
// matching the screen. Safe to run on several workers at once.
//
// - A raster picture is taken as @3x unless its name says "@2x" or "@1x" ("icon@2x.png"); then
//   only the smaller scales are made. Nothing is ever scaled up.
// - The files are named "icon@1x.png", "icon@2x.png", "icon@3x.png" beside the source. A source
//   named with its scale is not made again; one named without it gets its own scale as a copy
//   of its bytes ("icon.png" → "icon@3x.png" too).
// - Sizes are exact: scale k of a picture w × h taken at scale s is round(w·k/s) × round(h·k/s)
//   (at least 1 × 1), upright by its EXIF orientation.
// - An SVG is drawn at its own size for @1x and at twice and three times it, as PNG files.
// - A format Qt can't write (GIF…) gives PNG files.

#include "base/CancelFlag.h"
#include "base/FilePath.h"
#include "base/Result.h"
#include "fileops/FileOperations.h"

namespace orwick {

Result<QList<FileOperations::MadeFile>> imageSet(const FilePath& source, const CancelFlag& cancel);

// The size of scale `scale` of a picture of `size` taken at scale `ownScale` (rounded, ≥ 1 × 1).
QSize scaledSetSize(QSize size, int scale, int ownScale);

} // namespace orwick
