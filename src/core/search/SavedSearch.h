#pragma once
// SavedSearch: a search kept in the sidebar ("saved smart folder"). Every field is text, so a
// stored search still reads after the query's choices change; SearchQuery::fromSaved turns it
// back into a query (an unknown choice becomes the first of its list).

#include <QJsonObject>
#include <QString>
#include <optional>

namespace orwick {

struct SavedSearch {
    QString id;         // a UUID, without braces
    QString name;
    QString text;
    QString scope;      // "here", "below", "mac"
    QString folderPath; // the folder the search started from, as a path
    QString kind;       // "any", "folders", "documents", "images", "media", "code", "pdfs"
    QString changed;    // "any", "today", "week", "month", "year"

    QJsonObject toJson() const;
    // Nothing when the value is not an object or has no id.
    static std::optional<SavedSearch> fromJson(const QJsonObject& object);

    bool operator==(const SavedSearch&) const = default;
};

} // namespace orwick
