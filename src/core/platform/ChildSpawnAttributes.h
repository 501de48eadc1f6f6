#pragma once
// initChildSpawnAttributes: the posix_spawn attributes a helper program (git, rg) starts with —
// an empty signal mask and every signal's default handler, whatever the spawning thread had, and
// a process group of its own, so that stopping the group also stops the programs it runs.

#include <spawn.h>

namespace orwick {

// Initialises `attributes` (the caller destroys them with posix_spawnattr_destroy).
void initChildSpawnAttributes(posix_spawnattr_t& attributes);

} // namespace orwick
