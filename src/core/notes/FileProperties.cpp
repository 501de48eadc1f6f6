#include "notes/FileProperties.h"

#include "notes/PropertyEditCommand.h"

#include <QUndoStack>
#include <sys/stat.h>

namespace orwick {

using notefile::Change;

namespace {

bool isDirectory(const FilePath& path)
{
    struct stat st;
    return ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

// A note's whole bytes for undo, when it is small enough to keep.
std::optional<QByteArray> noteSnapshot(const FilePath& path)
{
    constexpr qsizetype kLargestKept = 1 << 20;
    const auto file = notefile::readFile(path);
    if (!file || file->bytes.size() > kLargestKept)
        return std::nullopt;
    return file->bytes;
}

} // namespace

QString summarizeFailures(const QStringList& failures, qsizetype total)
{
    if (failures.isEmpty())
        return {};
    if (failures.size() == 1)
        return failures.first();
    return QStringLiteral("%1 of %2 items couldn’t be changed. %3").arg(failures.size()).arg(total).arg(failures.first());
}

FileProperties::FileProperties(QObject* parent, FilePath columnsFile)
    : QObject(parent)
    , m_columnsPath(std::move(columnsFile))
    , m_columns(ColumnsFile::read(m_columnsPath))
{
}

FileProperties::~FileProperties()
{
    for (const auto& slot : std::as_const(m_loads))
        slot->cancel();
}

std::optional<PropertyValue> FileProperties::value(const FilePath& path, const QString& key) const
{
    const auto found = m_values.constFind(path);
    if (found == m_values.constEnd() || !found->contains(key))
        return std::nullopt;
    return found->value(key);
}

void FileProperties::bump()
{
    ++m_revision;
    Q_EMIT valuesChanged();
}

void FileProperties::load(const FileItems& items)
{
    if (items.isEmpty())
        return;
    const FilePath folder = items.first().url.parent();
    std::shared_ptr<TaskSlot>& slot = m_loads[folder];
    if (!slot)
        slot = std::make_shared<TaskSlot>();
    const TaskSlot::Ticket ticket = slot->start();
    QList<notefile::Target> targets;
    targets.reserve(items.size());
    for (const FileItem& item : items)
        targets.append({item.url, item.isFolder});
    const quint64 startedAt = m_writeSerial;
    std::weak_ptr<TaskSlot> weakSlot = slot;
    runInBackground(
        this, [targets, token = ticket.token] { return notefile::readAll(targets, token.get()); },
        [this, weakSlot, ticket, startedAt](std::optional<QList<notefile::Loaded>> loaded) {
            const auto slot = weakSlot.lock();
            if (!slot || !slot->isCurrent(ticket) || !loaded)
                return;
            slot->finish(ticket);
            // A file written while the load ran keeps what was written.
            loaded->removeIf([&](const notefile::Loaded& entry) { return m_writtenAt.value(entry.path) > startedAt; });
            apply(*loaded);
        });
}

void FileProperties::cancelLoad(const FilePath& folder)
{
    if (const auto slot = m_loads.value(folder))
        slot->cancel();
}

bool FileProperties::isLoading() const
{
    return std::any_of(m_loads.begin(), m_loads.end(), [](const auto& slot) { return slot->isRunning(); });
}

void FileProperties::apply(const QList<notefile::Loaded>& loaded)
{
    for (const notefile::Loaded& entry : loaded) {
        if (entry.values.isEmpty())
            m_values.remove(entry.path);
        else
            m_values.insert(entry.path, entry.values);
        if (entry.fingerprint)
            m_versions.insert(entry.path, *entry.fingerprint);
        else
            m_versions.remove(entry.path);
    }
    bump();
}

PropertyMap FileProperties::currentProperties(const FilePath& path)
{
    if (!m_values.contains(path) && !m_versions.contains(path))
        apply({notefile::read(path, isDirectory(path))});
    return m_values.value(path);
}

FileProperties::EditOutcome FileProperties::applyEdits(const QList<FileEdit>& edits, bool forward)
{
    EditOutcome outcome;
    QList<notefile::Loaded> reread;
    for (FileEdit edit : edits) {
        const bool folder = isDirectory(edit.path);
        // Undo and redo: the note's text as it was, when nothing else changed it meanwhile.
        const bool swapped = edit.noteBefore && edit.noteAfter
            && notefile::swapNoteBytes(edit.path, forward ? *edit.noteBefore : *edit.noteAfter,
                                       forward ? *edit.noteAfter : *edit.noteBefore)
                   .has_value();
        if (!swapped) {
            const bool firstWrite = !edit.noteBefore && !folder && notefile::isNote(edit.path);
            const std::optional<QByteArray> before = firstWrite ? noteSnapshot(edit.path) : std::nullopt;
            notefile::WriteOptions options;
            if (m_versions.contains(edit.path))
                options.expected = m_versions.value(edit.path);
            const auto written = notefile::write(edit.path, folder, forward ? edit.forward : edit.backward, options);
            if (!written) {
                outcome.failures.append(written.error());
                // Show what the file holds now, so that a second try starts from it.
                reread.append(notefile::read(edit.path, folder));
                continue;
            }
            if (before) {
                edit.noteBefore = before;
                edit.noteAfter = noteSnapshot(edit.path);
            }
        }
        outcome.written.append(edit);
        m_writtenAt.insert(edit.path, ++m_writeSerial);
        // What is on disk now is what the views show.
        reread.append(notefile::read(edit.path, folder));
    }
    if (!reread.isEmpty())
        apply(reread);
    return outcome;
}

Status FileProperties::commit(const QString& title, const QList<FileEdit>& edits, const FilePath& folder,
                              const std::optional<FolderColumns>& columnsAfter, QUndoStack* undo)
{
    const EditOutcome outcome = applyEdits(edits, true);
    std::optional<FolderColumns> columnsBefore;
    if (columnsAfter) {
        if (m_columns.folders.contains(folder))
            columnsBefore = m_columns.folders.value(folder);
        restoreColumns(folder, columnsAfter);
    }
    if (undo && (!outcome.written.isEmpty() || columnsAfter))
        undo->push(new PropertyEditCommand(this, title, outcome.written, folder, columnsBefore, columnsAfter));
    if (!outcome.failures.isEmpty())
        return failure(summarizeFailures(outcome.failures, edits.size()));
    return {};
}

FolderColumns FileProperties::columns(const FilePath& folder) const { return m_columns.folders.value(folder); }

Status FileProperties::setColumns(const FilePath& folder, const FolderColumns& columns)
{
    m_columns.folders.insert(folder, columns);
    Q_EMIT columnsChanged(folder);
    return m_columns.write(m_columnsPath);
}

void FileProperties::restoreColumns(const FilePath& folder, const std::optional<FolderColumns>& columns)
{
    if (columns)
        m_columns.folders.insert(folder, *columns);
    else
        m_columns.folders.remove(folder);
    Q_EMIT columnsChanged(folder);
    if (const Status saved = m_columns.write(m_columnsPath); !saved)
        Q_EMIT writeFailed(saved.error());
}

PropertyType FileProperties::type(const QString& key, const FilePath& folder, const FileItems& items) const
{
    const FolderColumns columns = this->columns(folder);
    if (columns.types.contains(key))
        return columns.types.value(key);
    QList<PropertyValue> values;
    for (const FileItem& item : items)
        if (const auto value = this->value(item.url, key))
            values.append(*value);
    return guessPropertyType(values);
}

QStringList FileProperties::options(const QString& key, const FilePath& folder, const FileItems& items) const
{
    QStringList result = columns(folder).options.value(key);
    for (const FileItem& item : items)
        if (const auto value = this->value(item.url, key))
            for (const QString& option : value->list())
                if (!result.contains(option))
                    result.append(option);
    return result;
}

QList<PropertyColumn> FileProperties::shownColumns(const FilePath& folder, const FileItems& items) const
{
    const FolderColumns settings = columns(folder);
    QList<PropertyColumn> result;
    for (const QString& key : settings.shown)
        result.append({key, type(key, folder, items), options(key, folder, items), settings.optionColors.value(key)});
    return result;
}

QStringList FileProperties::keys(const FileItems& items) const
{
    QSet<QString> keys;
    for (const FileItem& item : items)
        for (const QString& key : m_values.value(item.url).keys())
            keys.insert(key);
    QStringList sorted(keys.begin(), keys.end());
    std::sort(sorted.begin(), sorted.end());
    return sorted;
}

FileItems FileProperties::filtered(const FileItems& items, const FilePath& folder) const
{
    const QList<PropertyFilter> filters = columns(folder).filters;
    if (filters.isEmpty())
        return items;
    QList<PropertyType> types;
    for (const PropertyFilter& filter : filters)
        types.append(type(filter.key, folder, items));
    FileItems kept;
    for (const FileItem& item : items) {
        bool passes = true;
        for (qsizetype i = 0; i < filters.size() && passes; ++i)
            passes = filters[i].matches(value(item.url, filters[i].key), types[i]);
        if (passes)
            kept.append(item);
    }
    return kept;
}

std::function<std::optional<SortValue>(const FilePath&)> FileProperties::sortValues(const QString& key,
                                                                                     PropertyType type) const
{
    auto keys = std::make_shared<QHash<FilePath, SortValue>>();
    for (auto it = m_values.begin(); it != m_values.end(); ++it)
        if (it->contains(key))
            keys->insert(it.key(), it->value(key).sortKey(type));
    return [keys](const FilePath& path) -> std::optional<SortValue> {
        const auto found = keys->constFind(path);
        if (found == keys->constEnd())
            return std::nullopt;
        return *found;
    };
}

} // namespace orwick
