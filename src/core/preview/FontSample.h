#pragma once
// FontSample: a font file shown as lines of text drawn in it — its name, the alphabet, digits
// and a pangram — without installing it anywhere (the font is read into a QRawFont, used only
// for this picture). Safe on any thread where the platform draws text off the GUI thread.

#include "base/CancelFlag.h"
#include "base/FilePath.h"
#include "base/Result.h"

#include <QColor>
#include <QImage>

namespace orwick::preview {

struct FontSample {
    QString family;
    QString style;
    QImage image;
};

// Reads at most `maxBytes` of the file; a file that isn't a font Qt can read fails with a
// sentence. The sample is `width` pixels wide, drawn in `ink`.
[[nodiscard]] Result<FontSample> drawFontSample(const FilePath& path, qint64 maxBytes, int width, QColor ink,
                                                const CancelFlag& cancel);

} // namespace orwick::preview
