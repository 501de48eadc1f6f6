#pragma once
// ActiveRepository: where a git sheet ("Review Changes", "Stashes", "Switch Branch", "History")
// opens — the repository holding the active pane's folder. Finding it and making room for the
// new sheet are one step, so that every git sheet opens, or declines to, in the same way.

#include "base/FilePath.h"

#include <optional>

class QWidget;

namespace orwick {

class Git;
class WindowState;

struct ActiveRepository {
    Git* git = nullptr; // never null in a found repository
    FilePath root;
};

// The repository of the active pane's folder, after closing the sheet open over `parent` so the
// new one can take its place. Nothing is closed and nullopt comes back when git is not running,
// there is no active pane, it shows no folder, or the folder is in no repository.
std::optional<ActiveRepository> takeActiveRepository(const WindowState& window, QWidget* parent);

} // namespace orwick
