#include "git/StatusParser.h"

#include "base/NaturalCompare.h"
#include "files/KeySort.h"

#include <algorithm>

namespace orwick {

namespace {

Change changeOf(char x, char y)
{
    if (x == '?' && y == '?')
        return Change::untracked;
    if (x == 'U' || y == 'U' || (x == 'A' && y == 'A') || (x == 'D' && y == 'D'))
        return Change::conflicted;
    if (x == 'A')
        return Change::added;
    if (x == 'R' || x == 'C')
        return Change::renamed;
    if (x == 'D' || y == 'D')
        return Change::deleted;
    return Change::modified;
}

} // namespace

StatusParser::StatusParser(const FilePath& root) : m_rootLength(root.native().size())
{
    m_status.root = root;
    m_status.ignored.root = root;
    m_keyEnds.push_back(0);
}

void StatusParser::feed(QByteArrayView piece)
{
    // Sized ahead from the records in sight: a QHash computes every key's hash again each time it grows.
    const qsizetype coming = m_status.files.size() + piece.count('\0');
    if (coming > m_status.changedPaths.capacity()) {
        m_status.files.reserve(coming * 2);
        m_status.changedPaths.reserve(coming * 2);
    }
    qsizetype start = 0;
    if (!m_partial.isEmpty()) {
        const qsizetype end = piece.indexOf('\0');
        if (end < 0) {
            m_partial.append(piece);
            return;
        }
        m_partial.append(piece.first(end));
        take(m_partial);
        m_partial.clear();
        start = end + 1;
    }
    // The records in place, empty pieces dropped.
    const char* const bytes = piece.data();
    while (start < piece.size()) {
        const char* nul = static_cast<const char*>(memchr(bytes + start, '\0', size_t(piece.size() - start)));
        if (!nul) {
            m_partial = piece.sliced(start).toByteArray();
            return;
        }
        const qsizetype end = nul - bytes;
        if (end > start)
            take(QByteArrayView(bytes + start, end - start));
        start = end + 1;
    }
}

void StatusParser::take(QByteArrayView record)
{
    if (m_nextIsSource) { // where the last record's file was renamed or copied from
        m_nextIsSource = false;
        if (m_sourceIsRename)
            m_status.files.last().renamedFrom = record.toByteArray();
        return;
    }
    if (record.startsWith("## ")) {
        const BranchLine branch = parseBranch(QString::fromUtf8(record));
        m_status.branch = branch.branch;
        m_status.ahead = branch.ahead;
        m_status.behind = branch.behind;
        return;
    }
    if (record.size() < 4)
        return;
    const char x = record[0];
    const char y = record[1];
    const QByteArrayView path = record.sliced(3);
    const bool hasSource = x == 'R' || x == 'C';
    const FilePath file = m_status.root.child(path);
    if (!m_status.root.isAncestorOf(file)) {
        // git names paths below the root; a mark never goes above it. Its source goes unread.
        m_nextIsSource = hasSource;
        m_sourceIsRename = false;
        return;
    }
    if (x == '!' && y == '!') {
        m_ignored.insert(file);
        return;
    }
    m_nextIsSource = hasSource;
    m_sourceIsRename = x == 'R';
    const Change change = changeOf(x, y);
    QString text = QString::fromUtf8(path);
    // The bytes are kept only when the text doesn't give them back (pathOf() uses the text's UTF-8).
    QByteArray native = QUtf8StringView(path).isValidUtf8() ? QByteArray() : path.toByteArray();
    m_folded.clear();
    appendNaturalFold(text, m_folded);
    appendNaturalSortKey(m_folded, m_keys);
    m_keyEnds.push_back(m_keys.size());
    m_status.files.append({std::move(text), change, x != ' ' && x != '?', y != ' ', std::move(native), {}});
    m_status.changedPaths.insert(file, change);

    // git lists a folder's files together: when a file's folder is the last one's, its ancestors
    // are recorded already.
    const QByteArrayView folder = QByteArrayView(file.native()).first(std::max(file.native().lastIndexOf('/'), qsizetype(0)));
    if (folder == QByteArrayView(m_lastFile.native()).first(m_lastFolderLength))
        return;
    m_lastFile = file; // shares the bytes
    m_lastFolderLength = folder.size();
    // A folder already recorded has all its ancestors recorded too.
    for (FilePath above = file.parent(); above.native().size() > m_rootLength; above = above.parent()) {
        if (m_status.foldersWithChanges.contains(above))
            break;
        m_status.foldersWithChanges.insert(above);
    }
}

RepoStatus StatusParser::finish()
{
    if (!m_partial.isEmpty()) {
        take(m_partial);
        m_partial.clear();
    }
    m_status.ignored.paths = std::make_shared<const QSet<FilePath>>(std::move(m_ignored));

    // The files in the natural order of their paths: the keys are sorted as flat arrays (a tie
    // keeps git's order).
    QList<RepoStatus::File>& files = m_status.files;
    std::vector<SortKeyRef> entries(size_t(files.size()));
    const std::u16string_view keys(m_keys);
    for (size_t i = 0; i < entries.size(); ++i)
        entries[i] = {keys.substr(m_keyEnds[i], m_keyEnds[i + 1] - m_keyEnds[i]), int(i)};
    sortKeys(entries);
    QList<RepoStatus::File> sorted;
    sorted.reserve(files.size());
    for (const SortKeyRef& entry : entries)
        sorted.append(std::move(files[entry.index]));
    files = std::move(sorted);
    return std::move(m_status);
}

} // namespace orwick
