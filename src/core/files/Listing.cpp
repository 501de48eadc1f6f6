#include "files/Listing.h"

namespace orwick {

std::optional<Listing> Listing::fromName(const QString& name)
{
    if (name == QLatin1StringView("trash"))
        return of(Kind::trash);
    if (name == QLatin1StringView("recents"))
        return of(Kind::recents);
    if (name == QLatin1StringView("screenshots"))
        return of(Kind::screenshots);
    if (name == QLatin1StringView("drives"))
        return of(Kind::thisMac);
    if (name.startsWith(QLatin1StringView("tag:")) && name.size() > 4)
        return tag(name.mid(4));
    return std::nullopt;
}

QString Listing::title() const
{
    switch (kind) {
    case Kind::search: return query.title();
    case Kind::tag: return tagName;
    case Kind::recents: return QStringLiteral("Recents");
    case Kind::trash: return QStringLiteral("Trash");
    case Kind::screenshots: return QStringLiteral("Screenshots");
    case Kind::thisMac: return QStringLiteral("This Computer");
    }
    return {};
}

QString emptyText::nothingMatches(const QString& text)
{
    return QStringLiteral("Nothing matches “") + text + QStringLiteral("”");
}

QString emptyText::forSource(const std::optional<Listing>& listing)
{
    if (!listing)
        return folder;
    switch (listing->kind) {
    case Listing::Kind::recents: return recents;
    case Listing::Kind::trash: return trash;
    case Listing::Kind::search: return nothingMatches(listing->query.text.trimmed());
    default: return QStringLiteral("Nothing here");
    }
}

} // namespace orwick
