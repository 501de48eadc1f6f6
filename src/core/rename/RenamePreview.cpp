#include "rename/RenamePreview.h"

#include "fileops/OperationTexts.h"
#include "platform/DirectoryReader.h"
#include "rename/FolderNames.h"

#include <QHash>
#include <QSet>

namespace orwick {

namespace {

// Longest name the kernel takes (NAME_MAX).
constexpr qsizetype kLongestName = 255;

QDateTime modifiedDate(const FilePath& item)
{
    const auto st = statPath(item);
    return st ? QDateTime::fromMSecsSinceEpoch(st->modifiedMs()) : QDateTime();
}

// True when `target` names the item itself (a change of letter case on a case-insensitive disk).
bool isItself(const FilePath& item, const EntryStat& target)
{
    const auto st = statPath(item);
    return st && st->device == target.device && st->inode == target.inode;
}

// True when `target` is held by another item than `item`.
bool isTaken(const FolderNames& names, const FilePath& item, const FilePath& target)
{
    switch (names.holds(nameOf(target))) {
    case FolderNames::Answer::held:
        return true;
    case FolderNames::Answer::free:
        return false;
    case FolderNames::Answer::unknown:
        break;
    }
    const auto taken = statPath(target);
    return taken && !isItself(item, *taken);
}

} // namespace

QString nameProblem(QByteArrayView newName)
{
    if (newName.contains('/'))
        return QStringLiteral("Can't contain “/”");
    if (newName.contains('\0'))
        return QStringLiteral("Can't contain a NUL character");
    if (displayName(newName).trimmed().isEmpty())
        return QStringLiteral("Needs a name: this one is empty or only blanks");
    if (newName == "." || newName == "..")
        return QStringLiteral("Can't be “.” or “..”");
    if (newName.size() > kLongestName)
        return QStringLiteral("Too long: %1 bytes, a name can have at most 255").arg(newName.size());
    return {};
}

QString RenamePreview::summary() const
{
    const bool anyChange = changing > 0 || problems > 0;
    if (!anyChange)
        return QStringLiteral("Nothing changes yet");
    QString text = QStringLiteral("%1 of %2 will change").arg(changing).arg(entries.size());
    if (problems > 0)
        text += QStringLiteral(", %1 can't be renamed").arg(problems);
    return text;
}

QList<FileMove> RenamePreview::renames() const
{
    QList<FileMove> moves;
    for (const BatchRenameEntry& entry : entries)
        if (entry.willRename())
            moves.append({entry.url, entry.target()});
    return moves;
}

BatchRenameEntry quickEntry(const BatchRenamer& renamer, const FilePath& item, int index, int count)
{
    BatchRenameEntry entry{item, item.fileNameBytes(), {}};
    const QDateTime modified = renamer.needsDates() ? modifiedDate(item) : QDateTime();
    if (const auto name = renamer.newName(item, index, count, modified))
        entry.newName = *name;
    if (entry.changes())
        entry.problem = nameProblem(entry.newName);
    return entry;
}

RenamePreview previewRenames(const BatchRenamer& renamer, const QList<FilePath>& items, const CancelToken& cancel,
                             FolderNamesCache* folderNames)
{
    RenamePreview preview;
    preview.ruleProblem = renamer.problem();
    preview.entries.reserve(items.size());
    const int count = int(items.size());
    for (int i = 0; i < count; ++i) {
        if (cancel && cancel->isCancelled()) {
            preview.cancelled = true;
            return preview;
        }
        preview.entries.push_back(quickEntry(renamer, items[i], i, count));
    }

    // Two items may not end with one name in one folder; unchanged items keep theirs.
    std::vector<FilePath> targets(preview.entries.size());
    QHash<FilePath, int> finalNames;
    finalNames.reserve(count);
    for (qsizetype i = 0; i < qsizetype(preview.entries.size()); ++i) {
        const BatchRenameEntry& entry = preview.entries[i];
        if (entry.changes() && entry.problem.isEmpty())
            targets[i] = entry.target();
        ++finalNames[targets[i].isEmpty() ? entry.url : targets[i]];
    }
    QSet<FilePath> renamed;
    renamed.reserve(count);
    for (const FilePath& item : items)
        renamed.insert(item);
    // A name taken by an item that stays is looked up in its folder's names, read once, or asked
    // of the disk where that is cheaper or the folder can't say (see FolderNames).
    FolderNamesCache ownNames;
    FolderNamesCache& folders = folderNames ? *folderNames : ownNames;
    folders.expect(items);
    for (qsizetype i = 0; i < qsizetype(preview.entries.size()); ++i) {
        BatchRenameEntry& entry = preview.entries[i];
        if (cancel && cancel->isCancelled()) {
            preview.cancelled = true;
            return preview;
        }
        if (!entry.changes())
            continue;
        if (const FilePath& target = targets[i]; !target.isEmpty()) {
            if (finalNames.value(target) > 1)
                entry.problem = QStringLiteral("Same name as another");
            else if (!renamed.contains(target) && isTaken(folders.around(target), entry.url, target))
                entry.problem = quoted(visibleName(entry.newName)) + QStringLiteral(" already exists in this folder.");
        }
        if (entry.problem.isEmpty())
            ++preview.changing;
        else
            ++preview.problems;
    }
    return preview;
}

QString batchRenameTitle(qsizetype count) { return QStringLiteral("Rename %1 items").arg(count); }

} // namespace orwick
