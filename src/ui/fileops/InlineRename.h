#pragma once
// Inline rename: a line editor over an item's row in the list view. The name without its
// extension is selected; Return commits through the given callback, Esc or leaving cancels.

#include "files/FilePath.h"

#include <functional>

class QWidget;

namespace orwick {

class FileListView;

// Starts editing `url`'s name in `view`; returns the editor (gone when editing ends), or null
// when the item isn't shown.
QWidget* startInlineRename(FileListView* view, const FilePath& url, std::function<void(const FilePath&, const QString&)> commit);

} // namespace orwick
