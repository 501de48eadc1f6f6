#include "search/SearchQuery.h"

#include <QSet>
#include <QStringList>

namespace orwick {

namespace {

// Office and e-book formats the MIME tree files under neither text nor PDF.
bool isOfficeDocument(const QString& ext)
{
    static const QSet<QString> set{"doc", "docx", "odt", "ott", "rtf", "xls", "xlsx", "ods", "ppt", "pptx", "odp",
                                   "odg", "pages", "numbers", "key", "epub", "djvu", "tex", "md", "markdown"};
    return set.contains(ext);
}

} // namespace

bool SearchQuery::isRunnable() const
{
    return !text.trimmed().isEmpty() || kind != Kind::any || changed != Changed::any;
}

std::optional<Timestamp> SearchQuery::since(Changed changed, const QDateTime& now)
{
    const QDateTime local = now.toLocalTime();
    switch (changed) {
    case Changed::any: return std::nullopt;
    case Changed::today: return QDateTime(local.date(), QTime(0, 0)).toMSecsSinceEpoch();
    case Changed::week: return local.addDays(-7).toMSecsSinceEpoch();
    case Changed::month: return local.addMonths(-1).toMSecsSinceEpoch();
    case Changed::year: return local.addYears(-1).toMSecsSinceEpoch();
    }
    return std::nullopt;
}

bool SearchQuery::kindMatches(Kind kind, FileCategory category, bool isFolder, const QString& ext)
{
    switch (kind) {
    case Kind::any: return true;
    case Kind::folders: return isFolder;
    case Kind::documents:
        return !isFolder && (category == FileCategory::text || category == FileCategory::pdf || category == FileCategory::data || isOfficeDocument(ext));
    case Kind::images: return !isFolder && category == FileCategory::image;
    case Kind::media: return !isFolder && (category == FileCategory::video || category == FileCategory::audio);
    case Kind::code: return !isFolder && category == FileCategory::code;
    case Kind::pdfs: return !isFolder && category == FileCategory::pdf;
    }
    return false;
}

bool SearchQuery::matches(const FileItem& item, const QDateTime& now) const
{
    if (!kindMatches(item))
        return false;
    if (const auto earliest = since(changed, now); earliest && item.modified < *earliest)
        return false;
    return TextNeedle(text).inName(item.url.fileNameBytes());
}

QString SearchQuery::title() const
{
    if (name && !name->isEmpty())
        return *name;
    if (text.trimmed().isEmpty())
        return QStringLiteral("Search");
    return QStringLiteral("Search “") + text.trimmed() + QStringLiteral("”");
}

QString SearchQuery::filterSummary() const
{
    QStringList parts;
    switch (scope) {
    case Scope::here: parts << QStringLiteral("In ") + (folder.isRoot() ? QStringLiteral("/") : folder.fileName()); break;
    case Scope::below: parts << QStringLiteral("Below ") + (folder.isRoot() ? QStringLiteral("/") : folder.fileName()); break;
    case Scope::mac: parts << scopeTitle(scope); break;
    }
    if (kind != Kind::any)
        parts << kindTitle(kind);
    if (changed != Changed::any)
        parts << QStringLiteral("Changed ") + changedTitle(changed).toLower();
    return parts.join(QStringLiteral(" · "));
}

QString SearchQuery::scopeName(Scope scope)
{
    switch (scope) {
    case Scope::here: return QStringLiteral("here");
    case Scope::below: return QStringLiteral("below");
    case Scope::mac: return QStringLiteral("mac");
    }
    return {};
}

QString SearchQuery::kindName(Kind kind)
{
    switch (kind) {
    case Kind::any: return QStringLiteral("any");
    case Kind::folders: return QStringLiteral("folders");
    case Kind::documents: return QStringLiteral("documents");
    case Kind::images: return QStringLiteral("images");
    case Kind::media: return QStringLiteral("media");
    case Kind::code: return QStringLiteral("code");
    case Kind::pdfs: return QStringLiteral("pdfs");
    }
    return {};
}

QString SearchQuery::changedName(Changed changed)
{
    switch (changed) {
    case Changed::any: return QStringLiteral("any");
    case Changed::today: return QStringLiteral("today");
    case Changed::week: return QStringLiteral("week");
    case Changed::month: return QStringLiteral("month");
    case Changed::year: return QStringLiteral("year");
    }
    return {};
}

SearchQuery::Scope SearchQuery::scopeFromName(const QString& name)
{
    for (Scope s : {Scope::here, Scope::below, Scope::mac})
        if (scopeName(s) == name)
            return s;
    return Scope::here;
}

SearchQuery::Kind SearchQuery::kindFromName(const QString& name)
{
    for (Kind k : {Kind::any, Kind::folders, Kind::documents, Kind::images, Kind::media, Kind::code, Kind::pdfs})
        if (kindName(k) == name)
            return k;
    return Kind::any;
}

SearchQuery::Changed SearchQuery::changedFromName(const QString& name)
{
    for (Changed c : {Changed::any, Changed::today, Changed::week, Changed::month, Changed::year})
        if (changedName(c) == name)
            return c;
    return Changed::any;
}

QString SearchQuery::scopeTitle(Scope scope)
{
    switch (scope) {
    case Scope::here: return QStringLiteral("This Folder");
    case Scope::below: return QStringLiteral("Below");
    case Scope::mac: return QStringLiteral("Home and Drives");
    }
    return {};
}

QString SearchQuery::kindTitle(Kind kind)
{
    switch (kind) {
    case Kind::any: return QStringLiteral("Any Kind");
    case Kind::folders: return QStringLiteral("Folders");
    case Kind::documents: return QStringLiteral("Documents");
    case Kind::images: return QStringLiteral("Images");
    case Kind::media: return QStringLiteral("Music and Videos");
    case Kind::code: return QStringLiteral("Code");
    case Kind::pdfs: return QStringLiteral("PDFs");
    }
    return {};
}

QString SearchQuery::changedTitle(Changed changed)
{
    switch (changed) {
    case Changed::any: return QStringLiteral("Any Date");
    case Changed::today: return QStringLiteral("Today");
    case Changed::week: return QStringLiteral("This Week");
    case Changed::month: return QStringLiteral("This Month");
    case Changed::year: return QStringLiteral("This Year");
    }
    return {};
}

QString SearchQuery::savedDetail(const SavedSearch& saved)
{
    const SearchQuery query = fromSaved(saved);
    const QString text = query.text.trimmed();
    return text.isEmpty() ? query.filterSummary() : QStringLiteral("“") + text + QStringLiteral("” · ") + query.filterSummary();
}

SearchQuery SearchQuery::fromSaved(const SavedSearch& saved)
{
    SearchQuery query;
    query.text = saved.text;
    query.scope = scopeFromName(saved.scope);
    query.folder = saved.folderPath.isEmpty() ? FilePath() : FilePath::fromText(saved.folderPath);
    query.kind = kindFromName(saved.kind);
    query.changed = changedFromName(saved.changed);
    query.name = saved.name;
    return query;
}

SavedSearch SearchQuery::toSaved(const QString& savedName, const QString& id) const
{
    return {id, savedName, text, scopeName(scope), folder.text(), kindName(kind), changedName(changed)};
}

} // namespace orwick
