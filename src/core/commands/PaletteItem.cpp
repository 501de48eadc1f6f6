#include "commands/PaletteItem.h"

namespace orwick {

PaletteItem pathItem(const FilePath& path, PaletteItem::Kind kind)
{
    PaletteItem item;
    item.id = path.text();
    item.kind = kind;
    const bool isHome = path.abbreviated() == QLatin1StringView("~");
    // Names may hold control characters (a newline, a tab); rows show them as visible pictures.
    item.title = isHome ? QStringLiteral("~") : path.isRoot() ? QStringLiteral("/") : visibleName(path.fileNameBytes());
    if (!path.isRoot() && !isHome)
        item.subtitle = visibleName(path.parent().abbreviated().toUtf8());
    item.symbol = kind == PaletteItem::Kind::folder ? QStringLiteral("folder") : QStringLiteral("doc");
    item.path = path;
    return item;
}

} // namespace orwick
