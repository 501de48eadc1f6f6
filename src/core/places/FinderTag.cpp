#include "places/FinderTag.h"

namespace orwick {

const QList<FinderTag>& FinderTag::colors()
{
    static const QList<FinderTag> list{{QStringLiteral("Red"), 6},  {QStringLiteral("Orange"), 7}, {QStringLiteral("Yellow"), 5},
                                       {QStringLiteral("Green"), 2}, {QStringLiteral("Blue"), 4},   {QStringLiteral("Purple"), 3},
                                       {QStringLiteral("Gray"), 1}};
    return list;
}

std::optional<int> FinderTag::colorIndex(const QString& name)
{
    const QString trimmed = name.trimmed();
    if (trimmed.compare(QLatin1StringView("Grey"), Qt::CaseInsensitive) == 0)
        return 1;
    for (const FinderTag& tag : colors())
        if (tag.name.compare(trimmed, Qt::CaseInsensitive) == 0)
            return tag.color;
    return std::nullopt;
}

FinderTag FinderTag::named(const QString& name)
{
    if (const auto color = colorIndex(name))
        for (const FinderTag& tag : colors())
            if (tag.color == *color)
                return tag;
    return {name.trimmed(), 0};
}

bool FinderTag::sameName(const QString& a, const QString& b)
{
    const auto colorA = colorIndex(a);
    if (colorA)
        return colorA == colorIndex(b);
    return a.trimmed().compare(b.trimmed(), Qt::CaseInsensitive) == 0;
}

} // namespace orwick
