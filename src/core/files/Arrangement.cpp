#include "files/Arrangement.h"

#include "base/NaturalCompare.h"
#include "files/DateGroups.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace orwick {
namespace {

constexpr size_t kCancelCheckMask = 4095; // poll the flag every 4096 items

bool cancelled(const CancelFlag* cancel) { return cancel && cancel->isCancelled(); }

// Sorts rows by one 64-bit key per row. Descending swaps the operands, so ties keep load order
// in both directions.
void sortByKey(std::vector<int>& rows, bool ascending, auto keyOf)
{
    struct Keyed {
        qint64 key;
        int row;
    };
    std::vector<Keyed> keyed;
    keyed.reserve(rows.size());
    for (int row : rows)
        keyed.push_back({keyOf(row), row});
    if (ascending)
        std::sort(keyed.begin(), keyed.end(), [](const Keyed& a, const Keyed& b) { return a.key != b.key ? a.key < b.key : a.row < b.row; });
    else
        std::sort(keyed.begin(), keyed.end(), [](const Keyed& a, const Keyed& b) { return a.key != b.key ? a.key > b.key : a.row < b.row; });
    for (size_t k = 0; k < keyed.size(); ++k)
        rows[k] = keyed[k].row;
}

// Sorts rows by a value each may have: items with a value first in both directions, numbers
// before texts, numbers by value and texts naturally in the chosen direction; ties by name,
// ascending.
void sortByValue(std::vector<int>& rows, const ArrangeInput& input, const PreparedItems& prepared,
                 const std::function<std::optional<SortValue>(const FileItem&)>& valueOf)
{
    enum Class { number, text, none };
    struct Row {
        int row;
        Class cls = none;
        double number = 0;
        int textBegin = 0, textEnd = 0;
    };
    QString texts;
    std::vector<Row> keyed;
    keyed.reserve(rows.size());
    for (int row : rows) {
        Row r{row};
        if (const auto value = valueOf(input.items[row])) {
            if (const double* n = std::get_if<double>(&*value)) {
                if (!std::isnan(*n)) {
                    r.cls = number;
                    r.number = *n;
                }
            } else {
                r.cls = text;
                r.textBegin = int(texts.size());
                appendNaturalFold(std::get<QString>(*value), texts);
                r.textEnd = int(texts.size());
            }
        }
        keyed.push_back(r);
    }
    const bool ascending = input.ascending;
    auto before = [&](const Row& a, const Row& b) {
        if (a.cls != b.cls)
            return a.cls < b.cls;
        int c = 0;
        if (a.cls == number)
            c = a.number < b.number ? -1 : (a.number > b.number ? 1 : 0);
        else if (a.cls == text)
            c = naturalCompareFolded(QStringView(texts).sliced(a.textBegin, a.textEnd - a.textBegin),
                                     QStringView(texts).sliced(b.textBegin, b.textEnd - b.textBegin));
        if (c != 0)
            return ascending ? c < 0 : c > 0;
        const int na = prepared.nameRank[size_t(a.row)], nb = prepared.nameRank[size_t(b.row)];
        return na != nb ? na < nb : a.row < b.row;
    };
    std::sort(keyed.begin(), keyed.end(), before);
    for (size_t k = 0; k < keyed.size(); ++k)
        rows[k] = keyed[k].row;
}

// By a note property's value.
void sortByProperty(std::vector<int>& rows, const ArrangeInput& input, const PreparedItems& prepared)
{
    sortByValue(rows, input, prepared, [&input](const FileItem& item) { return input.propertyValue(item.url); });
}

// By the folder each item was deleted from, then by name; items whose origin isn't known last.
void sortByOrigin(std::vector<int>& rows, const ArrangeInput& input, const PreparedItems& prepared)
{
    sortByValue(rows, input, prepared, [](const FileItem& item) -> std::optional<SortValue> {
        if (item.trashedFrom.isEmpty())
            return std::nullopt;
        return SortValue(item.trashedFrom.parent().text());
    });
}

// The parent of `path` as a view of its bytes.
QByteArrayView parentBytes(const QByteArray& path)
{
    const qsizetype slash = path.lastIndexOf('/');
    return QByteArrayView(path).first(slash <= 0 ? 1 : slash);
}

} // namespace

bool isIgnored(const FilePath& item, const FilePath& folder, const QSet<FilePath>& ignored)
{
    if (ignored.contains(item))
        return true;
    const qsizetype minLength = folder.native().size();
    for (FilePath p = item; !p.isRoot();) {
        p = p.parent();
        if (p.native().size() < minLength)
            break;
        if (ignored.contains(p))
            return true;
    }
    return false;
}

std::optional<Arrangement> arrange(const ArrangeInput& input, const CancelFlag* cancel)
{
    const FileItems& items = input.items;
    std::shared_ptr<const PreparedItems> prepared =
        input.prepared && input.prepared->isFor(items) ? input.prepared : prepareItems(items, cancel);
    if (!prepared)
        return std::nullopt;

    // 1. Filter: hidden, fuzzy text, ignored paths.
    const size_t count = size_t(items.size());
    const FuzzyQuery query(input.filter);
    const QSet<FilePath>* ignored = input.ignored && !input.ignored->isEmpty() ? input.ignored.get() : nullptr;
    const bool folderIgnored = ignored && isIgnored(input.folder, input.folder, *ignored);
    std::vector<uint8_t> passes(count);
    size_t passing = 0;
    for (size_t i = 0; i < count; ++i) {
        if ((i & kCancelCheckMask) == 0 && cancelled(cancel))
            return std::nullopt;
        if (!input.showHidden && prepared->isHidden[i])
            continue;
        if (!query.matchesEverything() && !FuzzyMatch::score(query, prepared->names[qsizetype(i)]))
            continue;
        if (ignored) {
            // Items right in the folder share its answer for every ancestor.
            const FilePath& url = items[qsizetype(i)].url;
            const bool direct = parentBytes(url.native()) == QByteArrayView(input.folder.native());
            if (direct ? (folderIgnored || ignored->contains(url)) : isIgnored(url, input.folder, *ignored))
                continue;
        }
        passes[i] = 1;
        ++passing;
    }
    if (cancelled(cancel))
        return std::nullopt;

    // 2. Stable sort. By name, the prepared order is walked instead of sorting again.
    std::vector<int> rows;
    rows.reserve(passing);
    const bool byName = input.sortKey == SortKey::name && !(input.propertySort && input.propertyValue);
    if (byName && input.ascending) {
        for (int i : prepared->nameOrder)
            if (passes[size_t(i)])
                rows.push_back(i);
    } else if (byName) {
        // Runs of equal names, last run first, each run in load order.
        const std::vector<int>& order = prepared->nameOrder;
        for (size_t end = order.size(); end > 0;) {
            size_t begin = end - 1;
            const int rank = prepared->nameRank[size_t(order[begin])];
            while (begin > 0 && prepared->nameRank[size_t(order[begin - 1])] == rank)
                --begin;
            for (size_t k = begin; k < end; ++k)
                if (passes[size_t(order[k])])
                    rows.push_back(order[k]);
            end = begin;
        }
    } else {
        for (size_t i = 0; i < count; ++i)
            if (passes[i])
                rows.push_back(int(i));
        if (input.propertySort && input.propertyValue) {
            sortByProperty(rows, input, *prepared);
        } else if (input.sortKey == SortKey::originalLocation) {
            sortByOrigin(rows, input, *prepared);
        } else if (input.sortKey == SortKey::dateDeleted) {
            sortByKey(rows, input.ascending, [&](int r) { return items[qsizetype(r)].deleted; });
        } else {
            const std::vector<qint64>* keys = input.sortKey == SortKey::modified ? &prepared->modified : &prepared->size;
            const QHash<FilePath, qint64>* folderSizes =
                input.sortKey == SortKey::size && input.folderSizes && !input.folderSizes->isEmpty() ? input.folderSizes.get() : nullptr;
            if (input.sortKey == SortKey::kind)
                sortByKey(rows, input.ascending, [&](int r) { return qint64(prepared->kindRank[size_t(r)]); });
            else if (folderSizes)
                sortByKey(rows, input.ascending, [&](int r) {
                    const qint64 own = prepared->size[size_t(r)];
                    return own >= 0 || !prepared->isFolder[size_t(r)] ? own : folderSizes->value(items[qsizetype(r)].url, -1);
                });
            else
                sortByKey(rows, input.ascending, [&](int r) { return (*keys)[size_t(r)]; });
        }
    }
    if (cancelled(cancel))
        return std::nullopt;

    // 3. Folders first, in both directions.
    std::stable_partition(rows.begin(), rows.end(), [&](int r) { return prepared->isFolder[size_t(r)] != 0; });

    // 4. Day groups, newest first; each keeps the order above (so folders lead each group).
    Arrangement result;
    if (input.groupByDate) {
        DateGroups groups(input.now);
        std::vector<int> groupOf(count);
        for (int r : rows)
            groupOf[size_t(r)] = groups.groupOf(prepared->modified[size_t(r)]);
        std::stable_sort(rows.begin(), rows.end(), [&](int a, int b) { return groupOf[size_t(a)] < groupOf[size_t(b)]; });
        for (size_t k = 0; k < rows.size();) {
            const int group = groupOf[size_t(rows[k])];
            size_t end = k;
            while (end < rows.size() && groupOf[size_t(rows[end])] == group)
                ++end;
            result.headings.insert(int(k), Heading{groups.title(group), int(end - k)});
            k = end;
        }
    }
    if (cancelled(cancel))
        return std::nullopt;

    // 5. Rows and positions. Every item in the order it was loaded in (a folder read in name
    // order, shown by name) shares the loaded list instead of copying 100,000 items.
    std::vector<int> rowOfItem(count, -1);
    bool inLoadOrder = rows.size() == count;
    for (size_t k = 0; k < rows.size(); ++k) {
        rowOfItem[size_t(rows[k])] = int(k);
        inLoadOrder = inLoadOrder && rows[k] == int(k);
    }
    if (inLoadOrder) {
        result.items = items;
    } else {
        result.items.reserve(qsizetype(rows.size()));
        for (int row : rows)
            result.items.append(items[row]);
    }
    result.positions = ItemPositions(prepared, std::move(rowOfItem));
    result.sourceRows = std::move(rows);
    result.prepared = std::move(prepared);
    return result;
}

} // namespace orwick
