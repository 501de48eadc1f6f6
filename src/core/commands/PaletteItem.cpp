#include "commands/PaletteItem.h"

namespace orwick {

PaletteItem pathItem(const FilePath& path, PaletteItem::Kind kind)
{
    PaletteItem item;
    item.id = path.text();
    item.kind = kind;
    const bool isHome = path.abbreviated() == QLatin1StringView("~");
    item.title = isHome ? QStringLiteral("~") : path.isRoot() ? QStringLiteral("/") : path.fileName();
    if (!path.isRoot() && !isHome)
        item.subtitle = path.parent().abbreviated();
    item.symbol = kind == PaletteItem::Kind::folder ? QStringLiteral("folder") : QStringLiteral("doc");
    item.path = path;
    return item;
}

} // namespace orwick
