#pragma once
// Inline rename: a line editor over an item's name in any view of a pane (list, table, grid,
// columns). The name without its extension is selected; Return commits through the given
// callback, Esc cancels, and leaving the editor for another widget keeps the typed name.
// The editor stays through reloads of the folder (a new folder's own arrival, a change on
// disk), following its row as the rows are laid out again.

#include "base/FilePath.h"

#include <QRect>
#include <functional>

class QAbstractItemView;
class QWidget;

namespace orwick {

// Where in a row's rectangle the name is edited (the list's rows: right of the icon; a grid
// tile: under the picture).
using NameArea = std::function<QRect(const QRect& itemRect)>;

// Starts editing `url`'s name in `view` (whose rows are the pane's, possibly through a proxy);
// returns the editor (gone when editing ends), or null when the item isn't shown.
QWidget* startInlineRename(QAbstractItemView* view, const FilePath& url, NameArea nameArea,
                           std::function<void(const FilePath&, const QString&)> commit);

} // namespace orwick
