#pragma once
// What "Compare" compares: the two items selected in the active pane when there are exactly two
// (two folders, or two files), else the folders of the active pane and the other pane, left one
// first (the pane further left or higher in the grid).

#include "base/FilePath.h"

#include <optional>
#include <utility>

namespace orwick {

class WindowState;

std::optional<std::pair<FilePath, FilePath>> compareTargets(const WindowState& window);

// Why Compare is dimmed.
inline constexpr const char* kCompareNote = "Select two items, or open a second pane";

} // namespace orwick
