#include "rename/RenamePreview.h"

#include "fileops/OperationTexts.h"
#include "platform/DirectoryReader.h"
#include "rename/FolderNames.h"

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

// True when a name holds a visible ASCII character: it is then neither empty nor only blanks,
// which is known without making text of it.
bool hasVisibleAscii(QByteArrayView name)
{
    for (const char c : name)
        if (c > ' ' && c < 0x7f)
            return true;
    return false;
}

} // namespace

QString nameProblem(QByteArrayView newName)
{
    if (newName.contains('/'))
        return QStringLiteral("Can't contain “/”");
    if (newName.contains('\0'))
        return QStringLiteral("Can't contain a NUL character");
    if (!hasVisibleAscii(newName) && displayName(newName).trimmed().isEmpty())
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
    moves.reserve(changing);
    for (const BatchRenameEntry& entry : entries)
        if (entry.willRename())
            moves.append({entry.url, entry.target});
    return moves;
}

namespace {

// How many entries end with each path (their new one, or their own when they stay): an
// open-addressed table of entry indexes (+1; 0 is an empty slot) keyed by that path, looked at
// in place, so that thousands of entries cost two allocations. The entries' targets must stay
// as they are while it is asked.
class FinalPaths {
public:
    explicit FinalPaths(const std::vector<BatchRenameEntry>& entries) : m_entries(entries), m_counts(entries.size(), 0)
    {
        size_t slots = 16;
        while (slots < 2 * entries.size())
            slots *= 2;
        m_slots.assign(slots, 0);
        for (size_t i = 0; i < entries.size(); ++i) {
            quint32& slot = m_slots[slotOf(pathOf(entries[i]))];
            if (slot == 0)
                slot = quint32(i + 1);
            ++m_counts[slot - 1];
        }
    }

    int count(QByteArrayView path) const
    {
        const quint32 entry = m_slots[slotOf(path)];
        return entry == 0 ? 0 : m_counts[entry - 1];
    }

private:
    static QByteArrayView pathOf(const BatchRenameEntry& entry)
    {
        return entry.target.isEmpty() ? entry.url.native() : entry.target.native();
    }

    size_t slotOf(QByteArrayView path) const
    {
        const size_t mask = m_slots.size() - 1;
        for (size_t slot = nameHash(path) & mask;; slot = (slot + 1) & mask) {
            const quint32 entry = m_slots[slot];
            if (entry == 0 || pathOf(m_entries[entry - 1]) == path)
                return slot;
        }
    }

    const std::vector<BatchRenameEntry>& m_entries;
    std::vector<int> m_counts; // by the first entry of each path
    std::vector<quint32> m_slots;
};

// The entry of `item`, which lies in `folder`: the items of one folder share that path, so a
// batch makes one path for each new name and none for the folders.
BatchRenameEntry entryIn(const FilePath& folder, const BatchRenamer& renamer, const FilePath& item, int index,
                         int count)
{
    BatchRenameEntry entry{item, {}, {}, {}};
    const QDateTime modified = renamer.needsDates() ? modifiedDate(item) : QDateTime();
    if (auto name = renamer.newName(item, index, count, modified))
        entry.newName = std::move(*name);
    else
        entry.newName = item.fileNameBytes();
    if (!entry.changes())
        return entry;
    entry.problem = nameProblem(entry.newName);
    if (entry.problem.isEmpty())
        entry.target = folder.child(QByteArrayView(entry.newName));
    return entry;
}

} // namespace

BatchRenameEntry quickEntry(const BatchRenamer& renamer, const FilePath& item, int index, int count)
{
    return entryIn(item.parent(), renamer, item, index, count);
}

RenamePreview previewRenames(const BatchRenamer& renamer, const QList<FilePath>& items, const CancelToken& cancel,
                             FolderNamesCache* folderNames)
{
    RenamePreview preview;
    preview.ruleProblem = renamer.problem();
    preview.entries.reserve(items.size());
    const int count = int(items.size());
    FilePath folder;
    QByteArrayView folderPart; // of the item that last made `folder`
    for (int i = 0; i < count; ++i) {
        if (cancel && cancel->isCancelled()) {
            preview.cancelled = true;
            return preview;
        }
        const FilePath& item = items[i];
        if (folder.isEmpty() || folderPartOf(item) != folderPart) {
            folder = item.parent();
            folderPart = folderPartOf(item);
        }
        preview.entries.push_back(entryIn(folder, renamer, item, i, count));
    }

    // Two items may not end with one name in one folder; unchanged items keep theirs.
    const FinalPaths finalPaths(preview.entries);
    // Whether a name that is taken is one of the items (which moves away), asked only when a name
    // is found taken.
    QSet<QByteArrayView> renamed;
    const auto isRenamed = [&](const FilePath& path) {
        if (renamed.isEmpty()) {
            renamed.reserve(count);
            for (const FilePath& item : items)
                renamed.insert(QByteArrayView(item.native()));
        }
        return renamed.contains(QByteArrayView(path.native()));
    };
    // A name taken by an item that stays is looked up in its folder's names, read once, or asked
    // of the disk where that is cheaper or the folder can't say (see FolderNames).
    FolderNamesCache ownNames;
    FolderNamesCache& folders = folderNames ? *folderNames : ownNames;
    folders.expect(items);
    // An entry that can't be renamed goes nowhere; dropped once finalPaths no longer looks at it.
    const auto dropTargetsOfProblems = [&] {
        for (BatchRenameEntry& entry : preview.entries)
            if (!entry.problem.isEmpty())
                entry.target = {};
    };
    for (BatchRenameEntry& entry : preview.entries) {
        if (cancel && cancel->isCancelled()) {
            preview.cancelled = true;
            dropTargetsOfProblems();
            return preview;
        }
        if (!entry.changes())
            continue;
        if (const FilePath& target = entry.target; !target.isEmpty()) {
            if (finalPaths.count(target.native()) > 1)
                entry.problem = QStringLiteral("Same name as another");
            else if (isTaken(folders.around(target), entry.url, target) && !isRenamed(target))
                entry.problem = quoted(visibleName(entry.newName)) + QStringLiteral(" already exists in this folder.");
        }
        if (entry.problem.isEmpty())
            ++preview.changing;
        else
            ++preview.problems;
    }
    dropTargetsOfProblems();
    return preview;
}

QString batchRenameTitle(qsizetype count) { return QStringLiteral("Rename %1 items").arg(count); }

} // namespace orwick
