#include "files/Arrangement.h"

#include "files/NaturalCompare.h"

#include <algorithm>
#include <numeric>

namespace orwick {

std::optional<Arrangement> arrange(const ArrangeInput& input, const CancelFlag* cancel)
{
    const FileItems& items = input.items;
    std::vector<int> order(size_t(items.size()));
    std::iota(order.begin(), order.end(), 0);

    // Keys are made once per item, so a comparison never re-folds a name.
    std::vector<NaturalKey> keys;
    if (input.sortKey == SortKey::name || input.sortKey == SortKey::kind) {
        keys.reserve(order.size());
        for (const FileItem& item : items)
            keys.push_back(naturalKey(input.sortKey == SortKey::name ? item.name : item.kind));
    }
    if (cancel && cancel->isCancelled())
        return std::nullopt;

    auto before = [&](int a, int b) {
        switch (input.sortKey) {
        case SortKey::name:
        case SortKey::kind: return naturalCompare(keys[size_t(a)], keys[size_t(b)]) < 0;
        case SortKey::modified: return items[a].modified < items[b].modified;
        case SortKey::size: return items[a].size.value_or(-1) < items[b].size.value_or(-1);
        }
        return false;
    };
    // Descending swaps the operands; ties keep load order either way.
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return input.ascending ? before(a, b) : before(b, a); });
    std::stable_partition(order.begin(), order.end(), [&](int i) { return items[i].isFolder; });

    Arrangement result;
    result.items.reserve(items.size());
    for (int i : order)
        result.items.append(items[i]);
    return result;
}

} // namespace orwick
