#include "rename/RenamePreview.h"

#include "fileops/OperationTexts.h"
#include "platform/DirectoryReader.h"

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

RenamePreview previewRenames(const BatchRenamer& renamer, const QList<FilePath>& items, const CancelToken& cancel)
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
    QHash<FilePath, int> finalNames;
    finalNames.reserve(count);
    for (const BatchRenameEntry& entry : preview.entries)
        ++finalNames[entry.problem.isEmpty() ? entry.target() : entry.url];
    const QSet<FilePath> renamed(items.begin(), items.end());
    for (BatchRenameEntry& entry : preview.entries) {
        if (cancel && cancel->isCancelled()) {
            preview.cancelled = true;
            return preview;
        }
        if (!entry.changes())
            continue;
        if (entry.problem.isEmpty()) {
            const FilePath target = entry.target();
            if (finalNames.value(target) > 1) {
                entry.problem = QStringLiteral("Same name as another");
            } else if (!renamed.contains(target)) {
                if (const auto taken = statPath(target); taken && !isItself(entry.url, *taken))
                    entry.problem = quoted(visibleName(entry.newName)) + QStringLiteral(" already exists in this folder.");
            }
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
