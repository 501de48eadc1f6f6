#pragma once
// Listing: a pane source that is not one folder's contents, and what loading one gives.

#include "files/FileItem.h"
#include "search/SearchQuery.h"

#include <QString>
#include <optional>

namespace orwick {

struct Listing {
    enum class Kind { search, tag, recents, trash, screenshots, thisMac };
    Kind kind = Kind::recents;
    QString tagName;   // for `tag`
    SearchQuery query; // for `search`

    static Listing tag(const QString& name) { return {Kind::tag, name, {}}; }
    static Listing search(const SearchQuery& query) { return {Kind::search, {}, query}; }
    static Listing of(Kind kind) { return {kind, {}, {}}; }

    bool operator==(const Listing&) const = default;

    // Parses "trash", "recents", "screenshots", "drives" and "tag:NAME".
    static std::optional<Listing> fromName(const QString& name);
    QString title() const; // "Trash", "Recents", "This Computer", the tag's name…
};

// One load's outcome: the items, or the sentence that says why there are none.
struct ListingResult {
    FileItems items;
    std::optional<QString> error;
    qint64 durationMs = 0;
};

namespace emptyText {
inline const QString folder = QStringLiteral("This folder is empty");
inline const QString recents = QStringLiteral("Nothing opened lately");
inline const QString trash = QStringLiteral("The Trash is empty");
inline const QString cantOpen = QStringLiteral("Can't open this folder");
// A folder on a network mount whose server did not answer in time, or is gone.
inline const QString notAnswering = QStringLiteral("The server isn’t answering. Reload to try again.");
inline const QString serverGone = QStringLiteral("Can't open this folder: the server can’t be reached. Reload to try again, or connect again.");
// "Nothing matches “text”"
QString nothingMatches(const QString& text);
// The text a successful load with no items shows for this source (a folder when no listing).
QString forSource(const std::optional<Listing>& listing);
} // namespace emptyText

} // namespace orwick
