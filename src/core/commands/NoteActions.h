#pragma once
// The actions behind the note commands of the catalogue. Each acts on the window's active pane
// and reports failures through the window's messages.

#include "base/Result.h"
#include "state/WindowState.h"

#include <QDate>

namespace orwick::actions {

// Shows today's daily note — where the folder's Obsidian vault settings put it, else
// "yyyy-MM-dd.md" in the shown folder — selected in its folder, creating it (from the vault's
// template, when it has one) when it isn't there yet.
void openTodaysNote(WindowState& window);

// The daily note of `date` near `folder`, created when missing; its path, or why it couldn't be.
[[nodiscard]] Result<FilePath> ensureDailyNote(const FilePath& folder, QDate date);

} // namespace orwick::actions
