#pragma once
// Folder loading: every entry of one folder as FileItems, in one pass (getdents64, then statx
// relative to the folder), split across the cores for large folders. Pure and thread-safe:
// call it from a background task.

#include "async/CancelFlag.h"
#include "files/Listing.h"

namespace orwick::DirectoryLoader {

// Hidden entries (dot-names and the .hidden file's names) are left out unless `showHidden`.
// An unreadable folder gives the error "Can't open this folder". A cancelled load returns
// whatever it had; the caller drops it.
ListingResult load(const FilePath& folder, bool showHidden, const CancelFlag* cancel = nullptr);

} // namespace orwick::DirectoryLoader
