// FileProperties's changes of keys and options across a folder's items: setting a key on files,
// renaming or deleting it, renaming, deleting, moving and colouring an option. Each builds every
// touched file's changes and commits them, with the folder's settings as they become, as one
// job and undo step of the file operations engine (whose undo gives back each file's bytes).

#include "notes/FileProperties.h"

namespace orwick {

using notefile::Change;

QList<FileProperties::FileEdit> FileProperties::settingEdits(const QString& key, const std::optional<PropertyValue>& value,
                                                             const QList<FilePath>& paths)
{
    QList<FileEdit> edits;
    for (const FilePath& path : paths) {
        const PropertyMap before = currentProperties(path);
        if (value ? before.contains(key) && before.value(key) == *value : !before.contains(key))
            continue;
        edits.append({path, {Change{key, value, {}}}});
    }
    return edits;
}

namespace {
QString settingVerb(const QString& key, bool removes)
{
    return (removes ? QStringLiteral("Removed %1 from") : QStringLiteral("Set %1 on")).arg(key);
}
} // namespace

Status FileProperties::set(const QString& key, const std::optional<PropertyValue>& value, const QList<FilePath>& paths,
                           QUndoStack* undo)
{
    return commit(QStringLiteral("Set ") + key, settingVerb(key, !value), settingEdits(key, value, paths), {}, std::nullopt, undo);
}

Status FileProperties::set(const QString& key, const std::optional<PropertyValue>& value, const QList<FilePath>& paths,
                           const FilePath& folder, const FolderColumns& columnsAfter, QUndoStack* undo)
{
    const QList<FileEdit> edits = settingEdits(key, value, paths);
    if (edits.isEmpty())
        return {};
    const bool changesSettings = columns(folder) != columnsAfter;
    return commit(QStringLiteral("Set ") + key, settingVerb(key, !value), edits, folder,
                  changesSettings ? std::optional(columnsAfter) : std::nullopt, undo);
}

Status FileProperties::rename(const QString& key, const QString& newKey, const FilePath& folder, const FileItems& items,
                              QUndoStack* undo)
{
    if (newKey.trimmed().isEmpty())
        return failure(QStringLiteral("A property needs a name."));
    if (newKey == key)
        return {};
    QList<FileEdit> edits;
    for (const FileItem& item : items) {
        const PropertyMap before = currentProperties(item.url);
        if (!before.contains(key))
            continue;
        FileEdit edit{item.url, {}};
        if (before.contains(newKey))
            edit.changes.append(Change{newKey, std::nullopt, {}});
        edit.changes.append(Change{key, std::nullopt, newKey});
        edits.append(edit);
    }
    FolderColumns columns = this->columns(folder);
    columns.renameKey(key, newKey);
    return commit(QStringLiteral("Rename ") + key, QStringLiteral("Renamed %1 to %2 in").arg(key, newKey), edits, folder,
                  columns, undo);
}

Status FileProperties::remove(const QString& key, const FilePath& folder, const FileItems& items, QUndoStack* undo)
{
    QList<FileEdit> edits;
    for (const FileItem& item : items) {
        const PropertyMap before = currentProperties(item.url);
        if (before.contains(key))
            edits.append({item.url, {Change{key, std::nullopt, {}}}});
    }
    FolderColumns columns = this->columns(folder);
    columns.removeKey(key);
    return commit(QStringLiteral("Delete ") + key, QStringLiteral("Deleted %1 from").arg(key), edits, folder, columns, undo);
}

QList<FileProperties::FileEdit> FileProperties::optionEdits(const QString& key, const QString& option,
                                                            const std::optional<QString>& replacement,
                                                            const FileItems& items)
{
    QList<FileEdit> edits;
    for (const FileItem& item : items) {
        const PropertyMap before = currentProperties(item.url);
        const auto value = before.constFind(key);
        if (value == before.constEnd())
            continue;
        std::optional<PropertyValue> after;
        if (value->isList() && value->listPayload().contains(option)) {
            QStringList list = value->listPayload();
            for (QString& entry : list)
                if (entry == option && replacement)
                    entry = *replacement;
            list.removeAll(option);
            list.removeDuplicates();
            after = PropertyValue::ofList(list);
        } else if (!value->isList() && value->text() == option) {
            if (replacement)
                after = PropertyValue::ofText(*replacement);
        } else {
            continue;
        }
        edits.append({item.url, {Change{key, after, {}}}});
    }
    return edits;
}

Status FileProperties::renameOption(const QString& key, const QString& from, const QString& to, const FilePath& folder,
                                    const FileItems& items, QUndoStack* undo)
{
    if (to.trimmed().isEmpty())
        return failure(QStringLiteral("An option needs a name."));
    if (to == from)
        return {};
    FolderColumns columns = this->columns(folder);
    columns.renameOption(key, from, to);
    return commit(QStringLiteral("Rename ") + from, QStringLiteral("Renamed %1 to %2 in").arg(from, to),
                  optionEdits(key, from, to, items), folder, columns, undo);
}

Status FileProperties::deleteOption(const QString& option, const QString& key, const FilePath& folder,
                                    const FileItems& items, QUndoStack* undo)
{
    FolderColumns columns = this->columns(folder);
    columns.renameOption(key, option, std::nullopt);
    return commit(QStringLiteral("Delete ") + option, QStringLiteral("Deleted %1 from").arg(option),
                  optionEdits(key, option, std::nullopt, items), folder, columns, undo);
}

void FileProperties::moveOption(const QString& option, const QString& key, const std::optional<QString>& before,
                                const FilePath& folder, const FileItems& items, QUndoStack* undo)
{
    QStringList order = options(key, folder, items);
    if (!order.removeOne(option))
        return;
    const qsizetype at = before ? order.indexOf(*before) : -1;
    order.insert(at < 0 ? order.size() : at, option);
    FolderColumns columns = this->columns(folder);
    if (columns.options.value(key) == order)
        return;
    columns.options.insert(key, order);
    (void)commit(QStringLiteral("Move ") + option, {}, {}, folder, columns, undo);
}

void FileProperties::setColor(std::optional<int> index, const QString& option, const QString& key,
                              const FilePath& folder, QUndoStack* undo)
{
    FolderColumns columns = this->columns(folder);
    QMap<QString, int>& colors = columns.optionColors[key];
    if (index)
        colors.insert(option, *index);
    else
        colors.remove(option);
    if (colors.isEmpty())
        columns.optionColors.remove(key);
    if (columns == this->columns(folder))
        return;
    (void)commit(QStringLiteral("Color ") + option, {}, {}, folder, columns, undo);
}

} // namespace orwick
