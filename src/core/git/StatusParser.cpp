#include "git/StatusParser.h"

#include "base/NaturalCompare.h"
#include "files/KeySort.h"

#include <algorithm>

namespace orwick {

StatusParser::StatusParser(const FilePath& root) : m_rootLength(root.native().size()), m_sink(sink())
{
    m_status.root = root;
    m_status.ignored.root = root;
    m_keyEnds.push_back(0);
}

StatusRecordReader::Sink StatusParser::sink()
{
    return {[this](std::string_view line) {
                const BranchInfo branch = parseBranchLine(line);
                m_status.branch = QString::fromStdString(branch.branch);
                m_status.ahead = branch.ahead;
                m_status.behind = branch.behind;
            },
            [this](const StatusEntry& entry) { take(entry); }};
}

void StatusParser::feed(QByteArrayView piece)
{
    // Sized ahead from the records in sight: a QHash computes every key's hash again each time it grows.
    const qsizetype coming = m_status.files.size() + piece.count('\0');
    if (coming > m_status.changedPaths.capacity()) {
        m_status.files.reserve(coming * 2);
        m_status.changedPaths.reserve(coming * 2);
    }
    m_reader.feed(std::string_view(piece.data(), size_t(piece.size())), m_sink);
}

void StatusParser::take(const StatusEntry& entry)
{
    const QByteArrayView path(entry.path.data(), qsizetype(entry.path.size()));
    const FilePath file = m_status.root.child(path);
    if (!m_status.root.isAncestorOf(file))
        return; // git names paths below the root; a mark never goes above it
    if (entry.x == '!' && entry.y == '!') {
        m_ignored.insert(file);
        return;
    }
    const Change change = changeOf(entry.x, entry.y);
    QString text = QString::fromUtf8(path);
    // The bytes are kept only when the text doesn't give them back (pathOf() uses the text's UTF-8).
    QByteArray native = QUtf8StringView(path).isValidUtf8() ? QByteArray() : path.toByteArray();
    m_folded.clear();
    appendNaturalFold(text, m_folded);
    appendNaturalSortKey(m_folded, m_keys);
    m_keyEnds.push_back(m_keys.size());
    QByteArray renamedFrom = entry.x == 'R' ? QByteArray(entry.source.data(), qsizetype(entry.source.size())) : QByteArray();
    m_status.files.append({std::move(text), change, isStagedChange(entry.x), isUnstagedChange(entry.y), std::move(native),
                           std::move(renamedFrom)});
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
    m_reader.finish(m_sink);
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
