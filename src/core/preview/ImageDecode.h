#pragma once
// ImageDecode: a picture read for showing — turned upright by its EXIF orientation, in every
// format that carries one (images/UprightReader), and decoded straight to the size it is shown
// at where the format allows (JPEG, SVG), so a camera picture costs a fraction of its pixels.
// Its size is told upright too, as it is shown. A picture the format can only decode whole is refused when it
// holds more than PreviewLimits::maxPixels, with its size still told; one within it decodes
// even past Qt's default allocation limit (images/ImageRead raises it). A JPEG cut short counts
// as damaged, as the picture tools count it, rather than shown with a grey bottom. Safe on any
// thread.

#include "base/CancelFlag.h"
#include "base/FilePath.h"
#include "base/Result.h"
#include "preview/PreviewLimits.h"

#include <QImage>

namespace orwick::preview {

struct DecodedImage {
    QImage image;     // fits in the box asked for; never larger than the picture
    QSize size;       // the picture's own size, upright
    QString format;   // "png", "jpeg", …
};

struct ImageFailure {
    QString message;  // in the user's words
    QSize size;       // known when the header could be read
    QString format;
};

// Reads the picture at `path` to fit in `box`.
std::expected<DecodedImage, ImageFailure> decodeImage(const FilePath& path, QSize box, const PreviewLimits& limits,
                                                      const CancelFlag& cancel);

// The picture's own size and format from its header alone (cheap), or nothing.
std::optional<std::pair<QSize, QString>> imageSize(const FilePath& path);

} // namespace orwick::preview
