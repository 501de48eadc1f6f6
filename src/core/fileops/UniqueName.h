#pragma once
// The free-name rule every operation uses, and the volume test that decides rename or copy.

#include "base/FilePath.h"

namespace orwick {

// The first free path for `wanted`. Without the copy suffix: `wanted` itself when free, else
// "name 2.ext", "name 3.ext"… With it: "name copy.ext", "name copy 2.ext"… (the wanted path
// itself is never returned). A dangling link counts as taken.
FilePath uniqueURL(const FilePath& wanted, bool copySuffix);

// True when both paths lie on one volume (a move between them is a rename). `b` may not exist
// yet: its nearest existing ancestor is asked.
bool isSameVolume(const FilePath& a, const FilePath& b);

// True when something (even a dangling link) is at `path`.
bool pathExists(const FilePath& path);

} // namespace orwick
