#pragma once
// SearchQuery: what a pane's search field asks for — a text found in names (and in the contents
// of text files), where to look, which kind of file and how recently changed. A plain value:
// copied into the walker's thread, compared whole (two search listings are equal when their
// queries are). The choices are stored as their case names ("below", "images", "week").
//
// Text matching is TextMatch's: case and accents folded, the text taken literally.

#include "base/TextMatch.h"
#include "files/FileItem.h"
#include "search/SavedSearch.h"

#include <QDateTime>
#include <QString>
#include <optional>

namespace orwick {

struct SearchQuery {
    // here: the folder's own items; below: the folder and everything under it; mac: the home
    // folder and the mounted drives ("Home and Drives").
    enum class Scope { here, below, mac };
    enum class Kind { any, folders, documents, images, media, code, pdfs };
    enum class Changed { any, today, week, month, year };

    QString text;
    Scope scope = Scope::below;
    FilePath folder;
    Kind kind = Kind::any;
    Changed changed = Changed::any;
    std::optional<QString> name; // the saved search's name when the query came from one

    bool operator==(const SearchQuery&) const = default;

    // Something to look for: a text, or a kind or date filter. A query that is not runnable is
    // never started.
    bool isRunnable() const;

    // The earliest modification time (ms since the epoch) that passes; nothing for `any`.
    // today: the start of today in local time; week: now − 7 days; month, year: the same day
    // one calendar month or year ago.
    static std::optional<Timestamp> since(Changed changed, const QDateTime& now);

    // The whole test on an item in memory (name, kind, date; not the contents).
    bool matches(const FileItem& item, const QDateTime& now = QDateTime::currentDateTime()) const;
    bool kindMatches(const FileItem& item) const { return kindMatches(kind, item.category, item.isFolder, item.url.extension()); }
    static bool kindMatches(Kind kind, FileCategory category, bool isFolder, const QString& lowerExtension);

    // "Search “tax”", or the saved search's name.
    QString title() const;
    // The note above the results: "Below Documents · Images · Changed this week".
    QString filterSummary() const;

    // Stored names and what people read.
    static QString scopeName(Scope scope);
    static QString kindName(Kind kind);
    static QString changedName(Changed changed);
    static Scope scopeFromName(const QString& name); // unknown: here
    static Kind kindFromName(const QString& name);   // unknown: any
    static Changed changedFromName(const QString& name); // unknown: any
    static QString scopeTitle(Scope scope);     // "This Folder", "Below", "Home and Drives"
    static QString kindTitle(Kind kind);        // "Any Kind", "Folders", "Documents"…
    static QString changedTitle(Changed changed); // "Any Date", "Today", "This Week"…

    // The line under a saved search's name in the sidebar: "“tax” · Below Documents · PDFs".
    static QString savedDetail(const SavedSearch& saved);

    // A saved search's query (unknown choices become the first of their list), and back.
    static SearchQuery fromSaved(const SavedSearch& saved);
    SavedSearch toSaved(const QString& name, const QString& id) const;
};

} // namespace orwick
