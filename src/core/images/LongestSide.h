#pragma once
// longestSideAtMost: the size rule for readPicture (ImageRead.h) of the tools that need a
// picture no larger than a bound — text recognition, PDF pages, the clipboard. A picture
// larger than `longest` on its longer side is read scaled down to it, keeping its shape;
// a smaller one is read at its own size, never enlarged.

#include <QSize>
#include <algorithm>
#include <functional>

namespace orwick {

inline std::function<QSize(QSize)> longestSideAtMost(int longest)
{
    return [longest](QSize size) {
        if (std::max(size.width(), size.height()) <= longest)
            return size;
        return size.scaled(longest, longest, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
    };
}

} // namespace orwick
