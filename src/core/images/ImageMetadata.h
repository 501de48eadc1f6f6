#pragma once
// ImageMetadata: what a photo says about itself (camera, when, where) and taking that away,
// through exiv2. Pure functions, safe to call from several workers at once on different files:
// exiv2 is made ready once (its XMP toolkit given a lock, its log kept off standard error) before
// any first use. Nothing throws out of here; exiv2's errors become a sentence naming the file.
//
// Stripping works on the file's bytes in memory and hands back the new bytes, so the caller (the
// engine's replaceInPlace) writes them atomically and keeps the old ones for undo. Only the
// metadata segments are rewritten: a JPEG's compressed picture data stays byte for byte the same.
//
// What "everything" removes: EXIF (with its thumbnail and maker notes), XMP, IPTC and the comment.
// It keeps two things, on purpose:
//   - the ICC colour profile: it says how to show the colours, not who or where, and without it a
//     wide-gamut photo looks washed out;
//   - EXIF's Orientation when it turns the picture (any value but 1): without it a photo taken
//     upright shows on its side. It is the only EXIF tag left.
// What "location" removes, leaving all else: every GPS tag (the EXIF GPS block and XMP's
// exif:GPS*), and the written place (IPTC and XMP city, sub-location, state, country, the IPTC
// extension's location created and shown), which tells where as well as coordinates do.

#include "base/CancelFlag.h"
#include "base/FilePath.h"
#include "base/Result.h"

#include <QDateTime>
#include <QPointF>
#include <QSize>
#include <QStringList>
#include <optional>

namespace orwick {

struct PhotoFacts {
    QString camera;                  // "Canon EOS 5D Mark IV", the make left out when the model holds it
    QDateTime taken;                 // when the photo was taken (invalid: not said)
    std::optional<QPointF> location; // x: latitude, y: longitude, decimal degrees, south and west negative
    QStringList groups;              // what is there, of "EXIF", "XMP", "IPTC", "ICC", "Comment", in that order

    bool operator==(const PhotoFacts&) const = default;
};

enum class MetadataStrip { everything, location };

// The facts of a picture exiv2 can read; a file that isn't one fails with its name.
[[nodiscard]] Result<PhotoFacts> readPhotoFacts(const FilePath& file);
// True when the file is a picture whose metadata can be removed here: JPEG, PNG or WebP (by its
// content). Not TIFF, whose XMP exiv2 0.27 keeps, nor camera raw files, whose metadata is part
// of how they are developed.
bool canStripMetadata(const FilePath& file);
// The file's bytes with the metadata removed as `what` says.
[[nodiscard]] Result<QByteArray> strippedBytes(const FilePath& file, MetadataStrip what, const CancelFlag& cancel);

// `converted`, a new picture made from `source` (resized or converted, and turned upright), with
// the source's metadata put on it: EXIF, XMP, IPTC and the comment, so the camera, the date and
// the place stay with the photo. What described the old pixels is made true of the new ones:
// Orientation becomes 1, the stored pixel size becomes `size`, the embedded thumbnail goes.
// `converted` as it was when the source has no metadata, or either picture isn't a JPEG, PNG or
// WebP; an error only when exiv2 fails on pictures it should handle.
[[nodiscard]] Result<QByteArray> withMetadataOf(const FilePath& source, const QByteArray& converted, QSize size);

// The same on bytes already read; `name` is what the sentences call the picture.
[[nodiscard]] Result<PhotoFacts> photoFactsOf(const QByteArray& bytes, const QString& name);
[[nodiscard]] Result<QByteArray> strippedBytesOf(const QByteArray& bytes, MetadataStrip what, const QString& name,
                                                 const CancelFlag& cancel);

} // namespace orwick
