#include "fileops/TrashLog.h"

#include "files/StoredPath.h"
#include "fileops/UniqueName.h"
#include "platform/Trash.h"
#include "platform/XdgPaths.h"

#include <QJsonObject>

namespace orwick {

namespace {

const QString kEntries = QStringLiteral("entries");

bool hasTheShapeOfALog(const QJsonDocument& document)
{
    if (!document.isObject())
        return false;
    const QJsonValue entries = document.object().value(kEntries);
    return entries.isUndefined() || entries.isObject();
}

// Gone from a Trash folder that is there: emptied. A Trash on a disk that isn't mounted now
// leaves its entries alone.
bool isEmptied(const FilePath& inTrash) { return !pathExists(inTrash) && pathExists(inTrash.parent()); }

// A logged path as the log may use it: a relative one would be taken from the working folder, and
// one holding NUL would be acted on cut short there.
FilePath loggedPath(const QString& text)
{
    const FilePath path = pathFromStoredText(text);
    return path.native().startsWith('/') && !path.native().contains('\0') ? path : FilePath();
}

} // namespace

TrashLog::TrashLog(FilePath file)
    : m_store(file.isEmpty() ? xdg::orwickDataDir().child(QByteArrayView("trash-log.json")) : std::move(file),
              {QStringLiteral("its trash log"), QStringLiteral("Put Back goes by the Trash’s own records")},
              &hasTheShapeOfALog)
{
    if (const auto document = m_store.read())
        take(*document);
}

QHash<FilePath, FilePath> TrashLog::entriesIn(const QJsonDocument& document)
{
    QHash<FilePath, FilePath> entries;
    const QJsonObject object = document.object().value(kEntries).toObject();
    for (auto it = object.begin(); it != object.end(); ++it) {
        const FilePath inTrash = loggedPath(it.key());
        const FilePath former = loggedPath(it.value().toString());
        if (!inTrash.isEmpty() && !former.isEmpty())
            entries.insert(inTrash, former);
    }
    return entries;
}

void TrashLog::take(const QJsonDocument& document)
{
    QHash<FilePath, FilePath> entries = entriesIn(document);
    entries.removeIf([](QHash<FilePath, FilePath>::iterator entry) { return isEmptied(entry.key()); });
    m_entries = std::move(entries);
}

std::optional<FilePath> TrashLog::formerPath(const FilePath& inTrash) const
{
    const auto found = m_entries.constFind(inTrash);
    if (found == m_entries.constEnd() || !trash::isInTrustedTrash(inTrash))
        return std::nullopt;
    return *found;
}

QList<FilePath> TrashLog::trashedItems() const
{
    QList<FilePath> items;
    for (auto it = m_entries.begin(); it != m_entries.end(); ++it)
        if (pathExists(it.key()) && trash::isInTrustedTrash(it.key()))
            items.append(it.key());
    return items;
}

Status TrashLog::update(const QList<std::pair<FilePath, FilePath>>& added, const QList<FilePath>& removed)
{
    if (added.isEmpty() && removed.isEmpty() && m_unsavedAdded.isEmpty() && m_unsavedRemoved.isEmpty())
        return {};
    for (const FilePath& path : removed) {
        m_entries.remove(path);
        m_unsavedAdded.remove(path);
        m_unsavedRemoved.insert(path);
    }
    for (const auto& [inTrash, former] : added) {
        m_entries.insert(inTrash, former);
        m_unsavedAdded.insert(inTrash, former);
        m_unsavedRemoved.remove(inTrash);
    }
    const auto written = m_store.update([this](const std::optional<QJsonDocument>& onDisk) {
        QJsonObject entries = onDisk ? onDisk->object().value(kEntries).toObject() : QJsonObject();
        for (auto it = entries.begin(); it != entries.end();) {
            const FilePath inTrash = pathFromStoredText(it.key());
            if (m_unsavedRemoved.contains(inTrash) || isEmptied(inTrash))
                it = entries.erase(it);
            else
                ++it;
        }
        for (auto it = m_unsavedAdded.begin(); it != m_unsavedAdded.end(); ++it)
            entries.insert(storedPathText(it.key()), storedPathText(it.value()));
        return QJsonDocument(QJsonObject{{kEntries, entries}});
    });
    if (!written)
        return failure(written.error()); // kept here, saved with the next change
    take(*written);
    m_unsavedAdded.clear();
    m_unsavedRemoved.clear();
    return {};
}

} // namespace orwick
