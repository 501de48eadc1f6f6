#pragma once
// The natural order of many names at once: each name folded and turned into a flat sort key
// once, the keys sorted together (KeySort). Used to prepare a load for arranging and to read a
// large folder in the order a pane shows it. A list that already is in that order (a load read
// in name order) is recognised in one pass and not sorted again.

#include "base/CancelFlag.h"

#include <QString>
#include <vector>

namespace orwick {

// Names as views into one buffer of folded texts (appendNaturalFold): name i is
// folded[offsets[i], offsets[i + 1]).
struct FoldedNames {
    QString folded;
    std::vector<int> offsets{0};

    void append(QStringView name);
    size_t size() const { return offsets.size() - 1; }
};

struct NameRanks {
    std::vector<int> rank;  // position in natural order; equal names share the rank of the first
    std::vector<int> order; // indices in natural order, equal names by index
};

// Ranks `names` in natural order. When cancelled midway the result is empty.
NameRanks rankNames(const FoldedNames& names, const CancelFlag* cancel = nullptr);

} // namespace orwick
