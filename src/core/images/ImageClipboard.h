#pragma once
// clipboardImage: the pixels "Copy Image" puts on the clipboard — the picture turned upright by
// its EXIF orientation, the first frame of an animation, scaled to at most
// kClipboardLongestSide pixels on its longest side so that a camera picture pastes quickly and
// a huge one never fills memory. A damaged picture fails with its name. Safe on any thread.

#include "base/FilePath.h"
#include "base/Result.h"

#include <QImage>

namespace orwick {

inline constexpr int kClipboardLongestSide = 4096;

[[nodiscard]] Result<QImage> clipboardImage(const FilePath& file);

} // namespace orwick
