#pragma once
// Arrangement: how a pane turns its loaded items into the rows it shows — hidden and ignored
// items dropped, the fuzzy filter, a stable sort, folders first, optional day headings, and the
// row of every item. One pure function of its inputs, so it runs on any thread and is tested on
// its own.
//
// Preparing a load (folding names, ranking them in natural order, preparing them for the fuzzy
// filter) is the costly part, so it is a plain value of its own (PreparedItems) that the pane
// keeps per load: every re-arrangement of the same load (a keystroke in the filter, a new sort)
// reuses it. arrange() prepares on its own when it is not given one for these items.

#include "base/CancelFlag.h"
#include "base/FuzzyMatch.h"
#include "files/FileItem.h"

#include <QHash>
#include <QMetaType>
#include <QSet>
#include <functional>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

namespace orwick {

// The last two are the Trash listing's own: by when each item was deleted and by the folder it
// was deleted from (FileItem::deleted and trashedFrom).
enum class SortKey { name, modified, size, kind, dateDeleted, originalLocation };
inline bool isTrashSortKey(SortKey key) { return key == SortKey::dateDeleted || key == SortKey::originalLocation; }

// A sortable property value: a number or a text.
using SortValue = std::variant<double, QString>;

// What arranging needs of one load, made once and shared read-only between arrangements.
struct PreparedItems {
    FileItems items;             // the load it was made from (implicitly shared, not copied)
    std::vector<int> nameRank;   // position in natural name order; equal names share a rank
    std::vector<int> nameOrder;  // item indices in natural name order, equal names in load order
    std::vector<int> kindRank;   // the same for kind texts
    // Sort keys and flags copied out of the items, so sorting reads small, dense arrays.
    std::vector<qint64> modified;
    std::vector<qint64> size;    // an absent size counts as -1
    std::vector<uint8_t> isFolder;
    std::vector<uint8_t> isHidden;
    // Finds an item's index by path: open addressing over path hashes (-1 marks a free slot).
    std::vector<int> pathSlots;

    // The index of the item with this path, or -1.
    int indexOf(const FilePath& path) const;
    FuzzyCandidateList names;    // names ready for the filter

    // True when this was made from exactly `other` (the same shared list).
    bool isFor(const FileItems& other) const
    {
        return items.size() == other.size() && items.constData() == other.constData();
    }
};

// Returns nothing when cancelled midway.
std::shared_ptr<const PreparedItems> prepareItems(const FileItems& items, const CancelFlag* cancel = nullptr);

struct ArrangeInput {
    FileItems items;                  // as loaded
    // The same load prepared before (Arrangement::prepared); ignored when made from other items.
    std::shared_ptr<const PreparedItems> prepared;
    SortKey sortKey = SortKey::name;
    bool ascending = true;
    QString filter;                   // fuzzy filter on names; blank passes everything
    bool showHidden = true;           // false drops items whose isHidden is set
    bool groupByDate = false;
    // Paths git ignores, with the shown folder: an item is dropped when its path, or an ancestor
    // of it at least as long as `folder`, is in the set.
    std::shared_ptr<const QSet<FilePath>> ignored;
    FilePath folder;
    // Sort by this property instead of sortKey, with values looked up by path (called once per
    // shown item, on the arranging thread). Items with a value come first in both directions.
    std::optional<QString> propertySort;
    std::function<std::optional<SortValue>(const FilePath&)> propertyValue;
    // Measured sizes of folders by path ("Calculate Folder Sizes"): sorting by size uses them
    // for folders, which otherwise have no size.
    std::shared_ptr<const QHash<FilePath, qint64>> folderSizes;
    Timestamp now = 0;                // "today" for the day headings, in ms since the epoch
};

struct Heading {
    QString title;
    int count = 0;
    bool operator==(const Heading&) const = default;
};

// The row of each shown item by path, answered without a scan (cursor movement asks it).
class ItemPositions {
public:
    ItemPositions() = default;
    ItemPositions(std::shared_ptr<const PreparedItems> prepared, std::vector<int> rowOfItem)
        : m_prepared(std::move(prepared)), m_rowOfItem(std::move(rowOfItem)) {}

    // The row of the item with this path, or `missing` when it is not shown.
    int value(const FilePath& path, int missing = -1) const
    {
        const int index = m_prepared ? m_prepared->indexOf(path) : -1;
        return index < 0 || m_rowOfItem[size_t(index)] < 0 ? missing : m_rowOfItem[size_t(index)];
    }
    bool contains(const FilePath& path) const { return value(path) >= 0; }

private:
    std::shared_ptr<const PreparedItems> m_prepared;
    std::vector<int> m_rowOfItem; // by index in the loaded items; -1 when not shown
};

struct Arrangement {
    FileItems items;
    QHash<int, Heading> headings;    // row index where a group starts → its heading
    ItemPositions positions;         // row of each shown item
    std::vector<int> sourceRows;     // for each row, the item's index in the input items
    std::shared_ptr<const PreparedItems> prepared; // keep it to re-arrange this load quickly
};

// Arranges; returns nothing when cancelled midway.
std::optional<Arrangement> arrange(const ArrangeInput& input, const CancelFlag* cancel = nullptr);

// True when `item` is hidden by the ignored-paths rule.
bool isIgnored(const FilePath& item, const FilePath& folder, const QSet<FilePath>& ignored);

} // namespace orwick

Q_DECLARE_METATYPE(orwick::Heading)
