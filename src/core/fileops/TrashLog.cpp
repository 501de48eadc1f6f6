#include "fileops/TrashLog.h"

#include "fileops/UniqueName.h"
#include "platform/JsonFile.h"
#include "platform/XdgPaths.h"

#include <QJsonObject>

namespace orwick {

TrashLog::TrashLog(FilePath file)
    : m_file(file.isEmpty() ? xdg::orwickDataDir().child(QByteArrayView("trash-log.json")) : std::move(file))
{
    load();
}

void TrashLog::load()
{
    const auto document = readJsonFile(m_file);
    if (!document)
        return;
    const QJsonObject entries = document->object().value(QStringLiteral("entries")).toObject();
    for (auto it = entries.begin(); it != entries.end(); ++it) {
        const FilePath inTrash = FilePath::fromNative(it.key().toUtf8());
        const FilePath former = FilePath::fromNative(it.value().toString().toUtf8());
        if (!inTrash.isEmpty() && !former.isEmpty() && pathExists(inTrash))
            m_entries.insert(inTrash, former);
    }
}

std::optional<FilePath> TrashLog::formerPath(const FilePath& inTrash) const
{
    const auto found = m_entries.constFind(inTrash);
    if (found == m_entries.constEnd())
        return std::nullopt;
    return *found;
}

QList<FilePath> TrashLog::trashedItems() const
{
    QList<FilePath> items;
    for (auto it = m_entries.begin(); it != m_entries.end(); ++it)
        if (pathExists(it.key()))
            items.append(it.key());
    return items;
}

Status TrashLog::update(const QList<std::pair<FilePath, FilePath>>& added, const QList<FilePath>& removed)
{
    if (added.isEmpty() && removed.isEmpty())
        return {};
    for (const FilePath& path : removed)
        m_entries.remove(path);
    for (const auto& [inTrash, former] : added)
        m_entries.insert(inTrash, former);
    return save();
}

Status TrashLog::save() const
{
    QJsonObject entries;
    for (auto it = m_entries.begin(); it != m_entries.end(); ++it)
        if (isValidUtf8(it.key().native()) && isValidUtf8(it.value().native()))
            entries.insert(it.key().text(), it.value().text());
    return writeJsonFile(m_file, QJsonDocument(QJsonObject{{QStringLiteral("entries"), entries}}));
}

} // namespace orwick
