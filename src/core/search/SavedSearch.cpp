#include "search/SavedSearch.h"

namespace orwick {

QJsonObject SavedSearch::toJson() const
{
    return QJsonObject{{QStringLiteral("id"), id},         {QStringLiteral("name"), name},
                       {QStringLiteral("text"), text},     {QStringLiteral("scope"), scope},
                       {QStringLiteral("folderPath"), folderPath}, {QStringLiteral("kind"), kind},
                       {QStringLiteral("changed"), changed}};
}

std::optional<SavedSearch> SavedSearch::fromJson(const QJsonObject& object)
{
    SavedSearch saved;
    saved.id = object.value(QStringLiteral("id")).toString();
    if (saved.id.isEmpty())
        return std::nullopt;
    saved.name = object.value(QStringLiteral("name")).toString();
    saved.text = object.value(QStringLiteral("text")).toString();
    saved.scope = object.value(QStringLiteral("scope")).toString();
    saved.folderPath = object.value(QStringLiteral("folderPath")).toString();
    saved.kind = object.value(QStringLiteral("kind")).toString();
    saved.changed = object.value(QStringLiteral("changed")).toString();
    return saved;
}

} // namespace orwick
