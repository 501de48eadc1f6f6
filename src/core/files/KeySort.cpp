#include "files/KeySort.h"

#include <algorithm>
#include <utility>

namespace orwick {
namespace {

constexpr size_t kSmall = 12; // below this, insertion sort wins

// The unit at `depth`, shifted by one so that a key that has ended (0) sorts first.
inline int unitAt(const SortKeyRef& key, size_t depth)
{
    return depth < key.units.size() ? int(key.units[depth]) + 1 : 0;
}

inline bool lessFrom(const SortKeyRef& a, const SortKeyRef& b, size_t depth)
{
    const int c = a.units.substr(std::min(depth, a.units.size())).compare(b.units.substr(std::min(depth, b.units.size())));
    return c != 0 ? c < 0 : a.index < b.index;
}

void insertionSort(SortKeyRef* keys, size_t count, size_t depth)
{
    for (size_t i = 1; i < count; ++i)
        for (size_t j = i; j > 0 && lessFrom(keys[j], keys[j - 1], depth); --j)
            std::swap(keys[j], keys[j - 1]);
}

int medianOfThree(int a, int b, int c)
{
    if (a > b)
        std::swap(a, b);
    return c < a ? a : (c > b ? b : c);
}

void multikeySort(SortKeyRef* keys, size_t count, size_t depth)
{
    while (count > 1) {
        if (count < kSmall) {
            insertionSort(keys, count, depth);
            return;
        }
        const int pivot = medianOfThree(unitAt(keys[0], depth), unitAt(keys[count / 2], depth), unitAt(keys[count - 1], depth));
        // Three-way partition on the unit at `depth`: [0, less) < pivot, [less, greater) == pivot.
        size_t less = 0, i = 0, greater = count;
        while (i < greater) {
            const int unit = unitAt(keys[i], depth);
            if (unit < pivot)
                std::swap(keys[less++], keys[i++]);
            else if (unit > pivot)
                std::swap(keys[i], keys[--greater]);
            else
                ++i;
        }
        multikeySort(keys, less, depth);
        multikeySort(keys + greater, count - greater, depth);
        if (pivot == 0) { // every key of the middle part has ended: they are equal
            std::sort(keys + less, keys + greater, [](const SortKeyRef& a, const SortKeyRef& b) { return a.index < b.index; });
            return;
        }
        keys += less;
        count = greater - less;
        ++depth;
    }
}

} // namespace

void sortKeys(std::span<SortKeyRef> keys) { multikeySort(keys.data(), keys.size(), 0); }

} // namespace orwick
