// Preparing a load for arrangement: natural ranks of names and kinds, names for the filter.

#include "files/Arrangement.h"
#include "files/KeySort.h"
#include "files/NaturalCompare.h"

#include <algorithm>
#include <numeric>

namespace orwick {
namespace {

// Ranks texts (given as views into one folded buffer) in natural order; equal texts share a
// rank. `sortedOut`, when given, receives the indices in that order, equal texts by index.
std::vector<int> naturalRanks(const QString& folded, const std::vector<int>& offsets, const CancelFlag* cancel,
                              std::vector<int>* sortedOut = nullptr)
{
    const size_t count = offsets.size() - 1;
    // Sort keys in one buffer, sorted as views into it.
    std::u16string keys;
    keys.reserve(size_t(folded.size()) + size_t(folded.size()) / 4);
    std::vector<int> keyOffsets{0};
    keyOffsets.reserve(count + 1);
    for (size_t i = 0; i < count; ++i) {
        appendNaturalSortKey(QStringView(folded.constData() + offsets[i], offsets[i + 1] - offsets[i]), keys);
        keyOffsets.push_back(int(keys.size()));
    }
    std::vector<SortKeyRef> entries(count);
    for (size_t i = 0; i < count; ++i)
        entries[i] = {std::u16string_view(keys).substr(size_t(keyOffsets[i]), size_t(keyOffsets[i + 1] - keyOffsets[i])), int(i)};
    if (cancel && cancel->isCancelled())
        return std::vector<int>(count);
    sortKeys(entries);
    std::vector<int> rank(count);
    std::vector<int> order(count);
    if (cancel && cancel->isCancelled())
        return rank;
    int current = 0;
    for (size_t k = 0; k < count; ++k) {
        if (k > 0 && entries[k - 1].units != entries[k].units)
            current = int(k);
        rank[size_t(entries[k].index)] = current;
        order[k] = entries[k].index;
    }
    if (sortedOut)
        *sortedOut = std::move(order);
    return rank;
}

size_t slotCount(size_t items)
{
    size_t slots = 16;
    while (slots < items * 2)
        slots *= 2;
    return slots;
}

} // namespace

int PreparedItems::indexOf(const FilePath& path) const
{
    if (pathSlots.empty())
        return -1;
    const size_t mask = pathSlots.size() - 1;
    for (size_t slot = qHash(path) & mask;; slot = (slot + 1) & mask) {
        const int index = pathSlots[slot];
        if (index < 0)
            return -1;
        if (items[index].url == path)
            return index;
    }
}

std::shared_ptr<const PreparedItems> prepareItems(const FileItems& items, const CancelFlag* cancel)
{
    auto prepared = std::make_shared<PreparedItems>();
    prepared->items = items;
    const size_t count = size_t(items.size());

    qsizetype totalUnits = 0;
    for (const FileItem& item : items)
        totalUnits += item.name.size();

    prepared->modified.reserve(count);
    prepared->size.reserve(count);
    prepared->isFolder.reserve(count);
    prepared->isHidden.reserve(count);
    for (const FileItem& item : items) {
        prepared->modified.push_back(item.modified);
        prepared->size.push_back(item.size.value_or(-1));
        prepared->isFolder.push_back(item.isFolder);
        prepared->isHidden.push_back(item.isHidden);
    }

    // Paths: a table half full at most; a path listed twice keeps its first index.
    prepared->pathSlots.assign(slotCount(count), -1);
    const size_t mask = prepared->pathSlots.size() - 1;
    for (size_t i = 0; i < count; ++i) {
        const FilePath& url = items[qsizetype(i)].url;
        for (size_t slot = qHash(url) & mask;; slot = (slot + 1) & mask) {
            int& index = prepared->pathSlots[slot];
            if (index < 0) {
                index = int(i);
                break;
            }
            if (items[index].url == url)
                break;
        }
    }

    // Names: folded once into one buffer, then ranked.
    QString folded;
    folded.reserve(totalUnits + totalUnits / 8);
    std::vector<int> offsets{0};
    offsets.reserve(count + 1);
    prepared->names.reserve(qsizetype(count), totalUnits);
    for (size_t i = 0; i < count; ++i) {
        if ((i & 4095) == 0 && cancel && cancel->isCancelled())
            return nullptr;
        const QString& name = items[qsizetype(i)].name;
        appendNaturalFold(name, folded);
        offsets.push_back(int(folded.size()));
        prepared->names.append(name);
    }
    prepared->nameRank = naturalRanks(folded, offsets, cancel, &prepared->nameOrder);

    // Kinds repeat: rank the distinct texts, then look each item's up.
    QHash<QString, int> distinct;
    std::vector<int> kindIndex(count);
    QString foldedKinds;
    std::vector<int> kindOffsets{0};
    for (size_t i = 0; i < count; ++i) {
        const QString& kind = items[qsizetype(i)].kind;
        auto it = distinct.constFind(kind);
        if (it == distinct.constEnd()) {
            it = distinct.insert(kind, int(distinct.size()));
            appendNaturalFold(kind, foldedKinds);
            kindOffsets.push_back(int(foldedKinds.size()));
        }
        kindIndex[i] = *it;
    }
    const std::vector<int> distinctRank = naturalRanks(foldedKinds, kindOffsets, cancel);
    prepared->kindRank.resize(count);
    for (size_t i = 0; i < count; ++i)
        prepared->kindRank[i] = distinctRank[size_t(kindIndex[i])];

    if (cancel && cancel->isCancelled())
        return nullptr;
    return prepared;
}

} // namespace orwick
