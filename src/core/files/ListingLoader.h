#pragma once
// Loading a Listing (Trash, recents, screenshots, a colour tag, a search, the drives) into
// FileItems; a tag or a search goes through the search walker and comes back whole here (a pane
// streams its search results itself).
// Pure and thread-safe: call it from a background task.

#include "base/CancelFlag.h"
#include "files/DirectoryLoader.h"
#include "files/Listing.h"

namespace orwick::ListingLoader {

// Hidden items (any hidden path component) are left out unless `showHidden`. `feedback`
// counts the items read where the source is read folder by folder (the Trash); a listing hands
// out no first batch.
ListingResult load(const Listing& listing, bool showHidden, const CancelFlag* cancel = nullptr, LoadFeedback* feedback = nullptr);

// The most screenshots a listing shows, newest first.
inline constexpr int kScreenshotLimit = 500;
// Files used longer ago than this are not recent.
inline constexpr qint64 kRecentSeconds = 2592000;

} // namespace orwick::ListingLoader
