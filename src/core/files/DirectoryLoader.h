#pragma once
// Folder loading: every entry of one folder as FileItems, in one pass (getdents64, then statx
// relative to the folder), split across the cores for large folders. Pure and thread-safe:
// call it from a background task.
//
// A long load can say how far it got while it runs (LoadFeedback): a live count of the items
// read, and for a large folder its first batch of items as soon as they are read, so that a
// pane shows rows long before the whole folder is in.

#include "base/CancelFlag.h"
#include "files/Listing.h"

#include <atomic>
#include <functional>

namespace orwick {

// What a load reports while it runs; each part is optional. Called and written on the loading
// thread: the receiver forwards what it needs to its own thread.
struct LoadFeedback {
    // Items read so far, raised in steps of a few hundred (a pane samples it for its count).
    std::atomic<qint64> itemsRead{0};
    // A folder of more than kFirstBatchSize entries hands its first kFirstBatchSize items here
    // (in directory order, whatever the load's Order) before reading the rest; the full result
    // still holds them.
    std::function<void(FileItems)> firstBatch;
};

} // namespace orwick

namespace orwick::DirectoryLoader {

// The size of a large folder's first batch: enough to fill any screen, quick to read and sort.
inline constexpr qsizetype kFirstBatchSize = 2000;

// The order of the items in the result: as the folder lists them, or in natural name order
// (the order a pane shows by default, so that arranging them by name has nothing to move; the
// order is worked out from the names beside the reading, on a thread of its own).
enum class Order { asListed, byName };

// Hidden entries (dot-names and the .hidden file's names) are left out unless `showHidden`.
// An unreadable folder gives the error "Can't open this folder". A cancelled load returns
// whatever it had; the caller drops it.
ListingResult load(const FilePath& folder, bool showHidden, const CancelFlag* cancel = nullptr, LoadFeedback* feedback = nullptr,
                   Order order = Order::asListed);

} // namespace orwick::DirectoryLoader
