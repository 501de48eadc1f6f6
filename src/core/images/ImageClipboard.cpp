#include "images/ImageClipboard.h"

#include "images/ImageRead.h"
#include "images/LongestSide.h"

namespace orwick {

Result<QImage> clipboardImage(const FilePath& file)
{
    auto picture = readPicture(file, longestSideAtMost(kClipboardLongestSide), CancelFlag());
    if (!picture)
        return failure(picture.error());
    return std::move(picture->image);
}

} // namespace orwick
