#include "ui/theme/TagColors.h"

#include "ui/theme/Theme.h"

#include <iterator>

namespace orwick::theme {

QColor tagColor(int colorIndex)
{
    // By index: none, gray, green, purple, blue, yellow, red, orange.
    static const QColor light[] = {QColor(), QColor(0x8e, 0x8e, 0x93), QColor(0x34, 0xa8, 0x53), QColor(0xa8, 0x52, 0xde),
                                   QColor(0x1f, 0x7a, 0xf0), QColor(0xf2, 0xbe, 0x00), QColor(0xee, 0x3b, 0x30), QColor(0xf5, 0x8a, 0x00)};
    static const QColor dark[] = {QColor(), QColor(0x98, 0x98, 0x9d), QColor(0x3f, 0xc2, 0x5e), QColor(0xbf, 0x5a, 0xf2),
                                  QColor(0x2f, 0x8c, 0xff), QColor(0xff, 0xd6, 0x0a), QColor(0xff, 0x45, 0x3a), QColor(0xff, 0x9f, 0x0a)};
    if (colorIndex <= 0 || colorIndex >= int(std::size(light)))
        return dimText();
    return isDark() ? dark[colorIndex] : light[colorIndex];
}

} // namespace orwick::theme
