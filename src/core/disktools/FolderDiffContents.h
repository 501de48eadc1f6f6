#pragma once
// The byte comparisons of a folder comparison, run while the entries are still being made.
// Internal to FolderDiff.
//
// The merge of the two sides hands each file pair of equal kind here (add) in path order, so the
// files of one folder come together; a folder's pairs are published as one run as soon as the
// merge leaves that folder, and the workers (work, on any number of threads) take runs as they
// come, so the cores compare bytes while the merge goes on. Each run opens its folder on both
// sides once and each file by its name in them, sparing the kernel a walk down the whole path per
// file. A worker writes only the sizes and status of its own pairs' entries; `entries` must have
// room reserved for every entry the merge will make, so that they never move meanwhile.

#include "base/CancelFlag.h"
#include "disktools/FolderDiff.h"
#include "disktools/FolderDiffWalk.h"

#include <atomic>
#include <vector>

namespace orwick::FolderDiff {

class ContentChecks {
public:
    // `leftRoot` and `rightRoot`: open descriptors of the two roots; `pairs`: the most pairs
    // add() will be given.
    ContentChecks(const Side& left, std::vector<Entry>& entries, int leftRoot, int rightRoot, size_t pairs, const CancelFlag& cancel);

    // From the merging thread only: the entry `entry` is the pair at `left`'s path.
    void add(size_t entry, const SideItem& left);
    // From the merging thread, once: no more pairs come.
    void finish();
    // Compares published runs until every pair is done (or the comparison is cancelled).
    void work();

private:
    struct Run {
        size_t begin; // in m_pairs
        size_t end;
        quint32 nameStart; // where the names begin in these paths
    };
    struct Pair {
        size_t entry;
        const SideItem* left;
    };
    static constexpr quint64 kFinished = quint64(1) << 63;

    QByteArrayView folderOf(const SideItem& item) const;
    void publish();
    void check(const Run& run);

    const Side& m_left;
    std::vector<Entry>& m_entries;
    int m_leftRoot;
    int m_rightRoot;
    const CancelFlag& m_cancel;
    std::vector<Pair> m_pairs; // room for every pair: never moves
    std::vector<Run> m_runs;   // likewise
    size_t m_runStart = 0;     // the first pair of the run still growing
    std::atomic<quint64> m_published{0}; // runs ready to take, | kFinished at the end
    std::atomic<size_t> m_nextRun{0};
};

} // namespace orwick::FolderDiff
