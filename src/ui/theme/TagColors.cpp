#include "ui/theme/TagColors.h"

#include "theme/ThemeColors.h"
#include "ui/theme/Theme.h"

namespace orwick::theme {

QColor tagColor(int colorIndex)
{
    const QStringList& keys = themekeys::tag();
    if (colorIndex <= 0 || colorIndex > keys.size())
        return dimText();
    // Every resolved theme holds the key (the default colour set gives it); dim text is the last resort.
    const QColor themed = color(keys.at(colorIndex - 1));
    return themed.isValid() ? themed : dimText();
}

} // namespace orwick::theme
