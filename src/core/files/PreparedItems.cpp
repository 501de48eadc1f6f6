// Preparing a load for arrangement: natural ranks of names and kinds, names for the filter.

#include "files/Arrangement.h"
#include "files/NameOrder.h"

#include <algorithm>
#include <optional>
#include <thread>

namespace orwick {
namespace {

// From this many items on, the names are prepared on a thread of their own.
constexpr size_t kSecondThreadFrom = 20000;

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

    // Names: folded once into one buffer, then ranked. The larger part of the work, so a large
    // load has it done on a second thread while this one does the rest.
    auto prepareNames = [&]() {
        FoldedNames names;
        names.folded.reserve(totalUnits + totalUnits / 8);
        names.offsets.reserve(count + 1);
        prepared->names.reserve(qsizetype(count), totalUnits);
        for (size_t i = 0; i < count; ++i) {
            if ((i & 4095) == 0 && cancel && cancel->isCancelled())
                return;
            const QString& name = items[qsizetype(i)].name;
            names.append(name);
            prepared->names.append(name);
        }
        NameRanks nameRanks = rankNames(names, cancel);
        prepared->nameRank = std::move(nameRanks.rank);
        prepared->nameOrder = std::move(nameRanks.order);
    };
    std::optional<std::thread> namesThread;
    if (count >= kSecondThreadFrom)
        namesThread.emplace(prepareNames);

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

    // Kinds repeat: rank the distinct texts, then look each item's up.
    QHash<QString, int> distinct;
    std::vector<int> kindIndex(count);
    FoldedNames kinds;
    for (size_t i = 0; i < count; ++i) {
        const QString& kind = items[qsizetype(i)].kind;
        auto it = distinct.constFind(kind);
        if (it == distinct.constEnd()) {
            it = distinct.insert(kind, int(distinct.size()));
            kinds.append(kind);
        }
        kindIndex[i] = *it;
    }
    const std::vector<int> distinctRank = rankNames(kinds, cancel).rank;
    prepared->kindRank.resize(count);
    for (size_t i = 0; i < count && !distinctRank.empty(); ++i)
        prepared->kindRank[i] = distinctRank[size_t(kindIndex[i])];

    if (namesThread)
        namesThread->join();
    else
        prepareNames();
    if (cancel && cancel->isCancelled())
        return nullptr;
    return prepared;
}

} // namespace orwick
