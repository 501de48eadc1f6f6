#pragma once
// ImageConvert: a picture converted to another format and/or resized, as new bytes for the
// engine (FileOperations::makeFiles beside the source, replaceInPlace over it). Pure functions
// of the source file and the options, safe to run on several workers at once.
//
// - The picture is read upright (EXIF orientation honoured) and, when resized, decoded no larger
//   than needed (ImageRead). The source's metadata goes with it (withMetadataOf), with an
//   Orientation of 1, so it looks the same everywhere and keeps its camera, date and place.
// - Of an animation (GIF, WebP) only the first frame is converted: isAnimated() tells the
//   caller so it can say it.
// - Transparent pixels become white in formats without transparency (JPEG).
// - Keeping the format of a source Qt can't write (GIF, BMP…) makes a PNG instead.
// - Names: "photo.jpg" converted to WebP → "photo.webp"; resized, "photo (1600 px).jpg",
//   "photo (50%).jpg", "photo (800x600).jpg" (converted and resized: "photo (1600 px).webp").
//   The engine makes a taken name free ("photo 2.webp").

#include "base/CancelFlag.h"
#include "base/FilePath.h"
#include "base/Result.h"
#include "fileops/FileOperations.h"

#include <QByteArray>
#include <QSize>

namespace orwick {

struct ImageResize {
    // longest: the longer side becomes `longest` (never enlarged); percent: both sides scaled
    // by `percent`; exact: exactly `exact`, the aspect ratio not kept.
    enum class Kind { none, longest, percent, exact };
    Kind kind = Kind::none;
    int longest = 0;
    int percent = 100;
    QSize exact;
};

struct ConvertOptions {
    QByteArray format;  // empty: the source's own
    int quality = -1;   // 0–100 for lossy formats; -1: the writer's default
    ImageResize resize;
};

// "Convert to WebP" when a format is given, else "Resize".
QString convertVerb(const ConvertOptions& options);

// The upright size a picture of `size` gets (at least 1 × 1).
QSize resizedSize(QSize size, const ImageResize& resize);

// One new file beside the source: its name with the new suffix (and size), its bytes.
Result<QList<FileOperations::MadeFile>> convertImage(const FilePath& source, const ConvertOptions& options,
                                                     const CancelFlag& cancel);

// The same picture's new bytes, for replacing it in place. Refused when the result's format
// isn't the one the name says (a "photo.jpg" holding WebP would mislead every program).
Result<QByteArray> convertedBytes(const FilePath& source, const ConvertOptions& options, const CancelFlag& cancel);

// The picture holds more than one frame (an animated GIF or WebP): only the first is converted.
bool isAnimated(const FilePath& file);

// Encodes `image` as `format` at `quality` (-1: the writer's default); transparency is put on
// white for formats without it.
Result<QByteArray> encodeImage(const QImage& image, const QByteArray& format, int quality);

} // namespace orwick
