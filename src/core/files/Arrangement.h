#pragma once
// Arrangement: how a pane turns its loaded items into the rows it shows — filter, stable sort,
// folders first, optional day headings. One pure function of its inputs, so it runs on any
// thread and is tested on its own.

#include "async/CancelFlag.h"
#include "files/FileItem.h"

#include <QHash>
#include <QSet>
#include <functional>
#include <optional>
#include <variant>

namespace orwick {

enum class SortKey { name, modified, size, kind };

// A sortable property value: a number or a text.
using SortValue = std::variant<double, QString>;

struct ArrangeInput {
    FileItems items;                  // as loaded
    SortKey sortKey = SortKey::name;
    bool ascending = true;
    QString filter;                   // fuzzy filter on names; blank passes everything
    bool groupByDate = false;
    // Paths git ignores, with the shown folder: hidden when set (see the ignored-paths rule).
    std::shared_ptr<const QSet<FilePath>> ignored;
    FilePath folder;
    // Sort by this property instead of sortKey, with values looked up by path.
    std::optional<QString> propertySort;
    std::function<std::optional<SortValue>(const FilePath&)> propertyValue;
    Timestamp now = 0;                // "today" for the day headings, in ms since the epoch
};

struct Heading {
    QString title;
    int count = 0;
    bool operator==(const Heading&) const = default;
};

struct Arrangement {
    FileItems items;
    QHash<int, Heading> headings;    // row index where a group starts → its heading
};

// Arranges; returns nothing when cancelled midway.
std::optional<Arrangement> arrange(const ArrangeInput& input, const CancelFlag* cancel = nullptr);

} // namespace orwick
