#pragma once
// One small icon per category, tinted with the category's colour: a folder shape for folders, a
// page with a folded corner and a mark for everything else. Each size is drawn when first shown.

#include "files/FileItem.h"

#include <QIcon>

namespace orwick {

QIcon categoryIcon(FileCategory category);
// A link gets a small arrow; a broken link a dimmed icon.
QIcon itemIcon(const FileItem& item);

} // namespace orwick
