#include "notes/FileProperties.h"

#include "fileops/FileOperations.h"
#include "fileops/OperationTexts.h"
#include "notes/FolderColumnsCommand.h"

#include "platform/Xattr.h"

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

// The new bytes of one file's edit: its note text, or its properties attribute. A note the store
// read in another version than the one on disk now is refused: the change was asked of what the
// user saw.
ChangeRunner::Rewrite rewriting(const FilePath& path, const QList<Change>& changes, bool note,
                                std::optional<notefile::Fingerprint> seen)
{
    if (!note)
        return [path, changes](const QByteArray& value) { return notefile::changedAttribute(value, changes, path); };
    return [path, changes, seen](const QByteArray& bytes) -> Result<QByteArray> {
        if (seen && notefile::fingerprint(path) != seen)
            return failure(notefile::changedOnDiskMessage(path));
        return notefile::changedNoteBytes(bytes, changes, path);
    };
}

} // namespace

FileProperties::FileProperties(QObject* parent, FilePath columnsFile, FileOperations* operations)
    : QObject(parent)
    , m_columnsPath(std::move(columnsFile))
    , m_columns(ColumnsFile::read(m_columnsPath))
    , m_operations(operations ? operations : &FileOperations::shared())
{
    connect(m_operations, &FileOperations::contentsChanged, this, &FileProperties::refresh);
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
    for (const FileItem& item : items) {
        const auto known = m_versions.constFind(item.url);
        targets.append({item.url, item.isFolder, known != m_versions.constEnd() ? std::optional(*known) : std::nullopt});
    }
    const quint64 startedAt = m_writeSerial;
    std::weak_ptr<TaskSlot> weakSlot = slot;
    runInBackground(
        this, [targets, token = ticket.token] { return notefile::readAll(targets, token.get()); },
        [this, weakSlot, ticket, startedAt, targets](std::optional<QList<notefile::Loaded>> loaded) {
            const auto slot = weakSlot.lock();
            if (!slot || !slot->isCurrent(ticket) || !loaded)
                return;
            slot->finish(ticket);
            // A file written while the load ran keeps what was written.
            loaded->removeIf([&](const notefile::Loaded& entry) { return m_writtenAt.value(entry.path) > startedAt; });
            applyRead(*loaded, targets);
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

bool FileProperties::isSettled() const { return !isLoading() && m_jobs == 0 && m_refreshes == 0; }

void FileProperties::refresh(const QList<FilePath>& files)
{
    for (const FilePath& file : files) {
        // Until it is read again, no version is expected of it.
        m_versions.remove(file);
        m_writtenAt.insert(file, ++m_writeSerial);
    }
    ++m_refreshes;
    // Which files are folders is asked on the worker too: a stat of each of thousands of files
    // would hold the window up.
    runInBackground(
        this,
        [files] {
            QList<notefile::Target> targets;
            targets.reserve(files.size());
            for (const FilePath& file : files)
                targets.append({file, isDirectory(file), std::nullopt});
            return std::pair(*notefile::readAll(targets), targets);
        },
        [this](const std::pair<QList<notefile::Loaded>, QList<notefile::Target>>& read) {
            --m_refreshes;
            applyRead(read.first, read.second);
        });
}

void FileProperties::apply(const QList<notefile::Loaded>& loaded)
{
    bool changed = false;
    for (const notefile::Loaded& entry : loaded) {
        const auto before = m_values.constFind(entry.path);
        if (entry.values.isEmpty()) {
            changed |= before != m_values.constEnd();
            m_values.remove(entry.path);
        } else if (before == m_values.constEnd() || *before != entry.values) {
            changed = true;
            m_values.insert(entry.path, entry.values);
        }
        if (entry.fingerprint)
            m_versions.insert(entry.path, *entry.fingerprint);
        else
            m_versions.remove(entry.path);
    }
    // A folder read again after each reload of its listing mostly finds what was there: the
    // views are not redrawn for that.
    if (changed)
        bump();
    else
        ++m_revision;
}

void FileProperties::applyRead(const QList<notefile::Loaded>& loaded, const QList<notefile::Target>& targets)
{
    for (const notefile::Target& target : targets)
        m_folders.insert(target.path, target.isFolder);
    apply(loaded);
}

bool FileProperties::isFolder(const FilePath& path) const
{
    const auto known = m_folders.constFind(path);
    return known != m_folders.constEnd() ? *known : isDirectory(path);
}

PropertyMap FileProperties::currentProperties(const FilePath& path)
{
    if (!m_folders.contains(path) && !m_values.contains(path) && !m_versions.contains(path)) {
        const bool folder = isDirectory(path);
        applyRead({notefile::read(path, folder)}, {{path, folder, std::nullopt}});
    }
    return m_values.value(path);
}

Status FileProperties::commit(const QString& actionName, const QString& verb, const QList<FileEdit>& edits,
                              const FilePath& folder, const std::optional<FolderColumns>& columnsAfter, QUndoStack* undo)
{
    if (edits.isEmpty() && !columnsAfter)
        return {};
    std::function<void(bool)> alongside;
    if (columnsAfter) {
        std::optional<FolderColumns> columnsBefore;
        if (m_columns.folders.contains(folder))
            columnsBefore = m_columns.folders.value(folder);
        restoreColumns(folder, columnsAfter);
        alongside = [store = QPointer<FileProperties>(this), folder, columnsBefore, columnsAfter](bool forward) {
            if (store)
                store->restoreColumns(folder, forward ? columnsAfter : columnsBefore);
        };
    }
    if (edits.isEmpty()) {
        if (undo && alongside)
            undo->push(new FolderColumnsCommand(actionName, std::move(alongside)));
        return {};
    }
    QList<FileOperations::Rewrite> rewrites;
    QList<FilePath> paths;
    for (const FileEdit& edit : edits) {
        const bool note = notefile::isNote(edit.path) && !isFolder(edit.path);
        // A file that a job of this store is changing may be in a version not read yet.
        const auto seen = note && !m_changing.contains(edit.path) ? std::optional(m_versions.value(edit.path))
                                                                  : std::nullopt;
        const bool known = m_versions.contains(edit.path);
        rewrites.append({edit.path, rewriting(edit.path, edit.changes, note, known ? seen : std::nullopt),
                         note ? QByteArray() : QByteArray(xattr::properties)});
        paths.append(edit.path);
        ++m_changing[edit.path];
    }
    FileOperations::RewriteTexts texts;
    texts.title = actionName + QStringLiteral(" (") + itemCount(edits.size()) + u')';
    texts.actionName = actionName;
    texts.done = verb;
    ++m_jobs;
    m_operations->rewriteFiles(
        std::move(rewrites), texts, undo,
        [store = QPointer<FileProperties>(this), paths](const QList<FilePath>&) {
            if (!store)
                return;
            --store->m_jobs;
            for (const FilePath& path : paths)
                if (--store->m_changing[path] <= 0)
                    store->m_changing.remove(path);
        },
        std::move(alongside));
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

namespace {

// What a folder's items carry under one key: their values (for a type guess) and, after the
// folder's stored options, every further option their lists name, in item order.
struct KeyGathering {
    QList<PropertyValue> values;
    QStringList options;
    QSet<QString> seen;
};

// Gathers every key of `keys` in one pass over the items: one look-up of each item's properties
// however many columns are shown (a 2,000-note table asks this after every change).
QList<KeyGathering> gather(const QHash<FilePath, PropertyMap>& values, const FileItems& items, const QStringList& keys,
                           const FolderColumns& columns)
{
    QList<KeyGathering> result(keys.size());
    for (qsizetype k = 0; k < keys.size(); ++k) {
        result[k].options = columns.options.value(keys[k]);
        result[k].seen = QSet<QString>(result[k].options.begin(), result[k].options.end());
    }
    for (const FileItem& item : items) {
        const auto properties = values.constFind(item.url);
        if (properties == values.constEnd())
            continue;
        for (qsizetype k = 0; k < keys.size(); ++k) {
            const auto value = properties->constFind(keys[k]);
            if (value == properties->constEnd())
                continue;
            KeyGathering& gathering = result[k];
            gathering.values.append(*value);
            for (const QString& option : value->list())
                if (!gathering.seen.contains(option)) {
                    gathering.seen.insert(option);
                    gathering.options.append(option);
                }
        }
    }
    return result;
}

PropertyType typeOf(const QString& key, const FolderColumns& columns, const KeyGathering& gathering)
{
    return columns.types.contains(key) ? columns.types.value(key) : guessPropertyType(gathering.values);
}

} // namespace

PropertyType FileProperties::type(const QString& key, const FilePath& folder, const FileItems& items) const
{
    const FolderColumns columns = this->columns(folder);
    if (columns.types.contains(key))
        return columns.types.value(key);
    return typeOf(key, columns, gather(m_values, items, {key}, columns).first());
}

QStringList FileProperties::options(const QString& key, const FilePath& folder, const FileItems& items) const
{
    return gather(m_values, items, {key}, columns(folder)).first().options;
}

QList<PropertyColumn> FileProperties::shownColumns(const FilePath& folder, const FileItems& items) const
{
    const FolderColumns settings = columns(folder);
    if (m_shown && m_shown->revision == m_revision && m_shown->folder == folder && m_shown->settings == settings
        && m_shown->items.constData() == items.constData() && m_shown->items.size() == items.size())
        return m_shown->columns;
    const QList<KeyGathering> gathered = gather(m_values, items, settings.shown, settings);
    QList<PropertyColumn> result;
    result.reserve(settings.shown.size());
    for (qsizetype k = 0; k < settings.shown.size(); ++k) {
        const QString& key = settings.shown[k];
        result.append({key, typeOf(key, settings, gathered[k]), gathered[k].options, settings.optionColors.value(key)});
    }
    m_shown = ShownColumns{folder, settings, items, m_revision, result};
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

#include "moc_FileProperties.cpp"
