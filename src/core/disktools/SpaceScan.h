#pragma once
// SpaceScan: measures a folder tree by allocated bytes (blocks × 512), on Linux system calls:
// one descriptor per folder, getdents64 into a large buffer, statx relative to the descriptor.
//
// Symbolic links are never followed and add no bytes; a folder on another mounted file system
// counts as empty; unreadable folders count as empty, in silence. Hard links are not detected:
// each link counts its file again. A folder's own blocks count towards it, as du counts them.
// The top three levels are walked in parallel. Every function may run on any thread and stops
// soon after the CancelFlag is set.

#include "base/CancelFlag.h"
#include "disktools/SpaceNode.h"

#include <atomic>
#include <functional>
#include <memory>
#include <optional>

namespace orwick::SpaceScan {

// Progress and stop of one scan, shared by its workers.
struct Shared {
    explicit Shared(const CancelFlag& flag) : cancel(flag) {}
    const CancelFlag& cancel;
    std::atomic<qint64> scanned{0}; // entries seen so far; a panel samples it
    // Counts `entries`; false once the scan is cancelled.
    bool add(qint64 entries)
    {
        scanned.fetch_add(entries, std::memory_order_relaxed);
        return !cancel.isCancelled();
    }
};

// Measures `folder` with children kept (folders and files of 1 MB or more), totalled and
// ordered. Null when cancelled.
std::unique_ptr<SpaceNode> scan(const FilePath& folder, Shared& shared, int threads = 0);

// The allocated size of a folder tree, walked on the calling thread without keeping children;
// nothing when cancelled.
std::optional<qint64> measure(const FilePath& folder, const CancelFlag& cancel);

// Fills in every node's size bottom-up and orders children by size, largest first (stable).
qint64 total(SpaceNode& node);

} // namespace orwick::SpaceScan
