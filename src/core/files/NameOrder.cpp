#include "files/NameOrder.h"

#include "base/NaturalCompare.h"
#include "files/KeySort.h"

#include <algorithm>

namespace orwick {

void FoldedNames::append(QStringView name)
{
    appendNaturalFold(name, folded);
    offsets.push_back(int(folded.size()));
}

NameRanks rankNames(const FoldedNames& names, const CancelFlag* cancel)
{
    const size_t count = names.size();
    // Sort keys in one buffer, sorted as views into it.
    std::u16string keys;
    keys.reserve(size_t(names.folded.size()) + size_t(names.folded.size()) / 4);
    std::vector<int> keyOffsets{0};
    keyOffsets.reserve(count + 1);
    for (size_t i = 0; i < count; ++i) {
        appendNaturalSortKey(QStringView(names.folded.constData() + names.offsets[i], names.offsets[i + 1] - names.offsets[i]), keys);
        keyOffsets.push_back(int(keys.size()));
    }
    std::vector<SortKeyRef> entries(count);
    for (size_t i = 0; i < count; ++i)
        entries[i] = {std::u16string_view(keys).substr(size_t(keyOffsets[i]), size_t(keyOffsets[i + 1] - keyOffsets[i])), int(i)};
    if (cancel && cancel->isCancelled())
        return {};
    // Entries start in index order, so keys that never decrease are already sorted, ties by index.
    const bool sorted = std::is_sorted(entries.begin(), entries.end(), [](const SortKeyRef& a, const SortKeyRef& b) { return a.units < b.units; });
    if (!sorted)
        sortKeys(entries);
    if (cancel && cancel->isCancelled())
        return {};
    NameRanks ranks;
    ranks.rank.resize(count);
    ranks.order.resize(count);
    int current = 0;
    for (size_t k = 0; k < count; ++k) {
        if (k > 0 && entries[k - 1].units != entries[k].units)
            current = int(k);
        ranks.rank[size_t(entries[k].index)] = current;
        ranks.order[k] = entries[k].index;
    }
    return ranks;
}

} // namespace orwick
