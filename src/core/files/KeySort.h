#pragma once
// Sorting many keys that share long prefixes ("IMG_2024…", "report_…"): a three-way radix
// quicksort over the keys' units (Bentley and Sedgewick's multikey quicksort) reads each unit of
// a common prefix once per partition level, where a comparison sort reads the whole prefix again
// on every comparison. Equal keys end up ordered by index, so the sort is stable.

#include <span>
#include <string_view>
#include <vector>

namespace orwick {

// One key: a view of its units and the index it came from.
struct SortKeyRef {
    std::u16string_view units;
    int index = 0;
};

// Sorts `keys` by their units (a shorter key before the longer key it begins), ties by index.
void sortKeys(std::span<SortKeyRef> keys);

} // namespace orwick
