#pragma once
// The palette's git commands that are single actions on the current folder's repository —
// Stash Changes, Apply Latest Stash, Fetch, Pull and Push. Each runs in the background through
// GitActions (the pane's status line shows its busy label meanwhile) and says how it went in a
// toast: git's words on failure, a short note on success. A pull refused because both sides
// moved says so and offers Rebase and Merge (WindowState::requestChoice), then pulls that way.

#include "state/WindowState.h"

namespace orwick::actions {

// True when git is there and the active pane shows a folder inside a repository.
bool inGitRepository(const WindowState& window);

void gitStash(WindowState& window);
void gitApplyLatestStash(WindowState& window);
void gitFetch(WindowState& window);
void gitPull(WindowState& window);
void gitPush(WindowState& window);

} // namespace orwick::actions
