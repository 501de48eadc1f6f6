#include "disktools/ContentSearchResults.h"

#include <QRegularExpression>
#include <algorithm>

namespace orwick::ContentSearch {

void Results::add(std::vector<FileMatches>&& batch)
{
    bool startsMoved = false;
    for (FileMatches& file : batch) {
        const qint64 added = qint64(file.matches.size());
        const auto known = m_indexByPath.constFind(file.path);
        if (known != m_indexByPath.cend()) {
            auto& into = m_files[size_t(*known)].matches;
            into.insert(into.end(), std::make_move_iterator(file.matches.begin()), std::make_move_iterator(file.matches.end()));
            startsMoved = startsMoved || size_t(*known) + 1 < m_files.size();
        } else {
            m_indexByPath.insert(file.path, int(m_files.size()));
            m_starts.push_back(m_matchCount);
            m_files.push_back(std::move(file));
        }
        m_matchCount += added;
    }
    if (startsMoved) { // an earlier file grew: the later ones start further on
        qint64 start = 0;
        for (size_t i = 0; i < m_files.size(); ++i) {
            m_starts[i] = start;
            start += qint64(m_files[i].matches.size());
        }
    }
}

void Results::clear() { *this = Results(); }

Results::Position Results::position(qint64 index) const
{
    if (index < 0 || index >= m_matchCount)
        return {};
    const auto after = std::upper_bound(m_starts.begin(), m_starts.end(), index);
    const int file = int(after - m_starts.begin()) - 1;
    return {file, int(index - m_starts[size_t(file)])};
}

std::vector<std::pair<int, int>> matchedRanges(const QString& text, const QString& query, const Options& options)
{
    std::vector<std::pair<int, int>> ranges;
    if (query.isEmpty())
        return ranges;
    if (!options.regex) {
        const Qt::CaseSensitivity sensitivity = options.matchCase ? Qt::CaseSensitive : Qt::CaseInsensitive;
        for (qsizetype at = text.indexOf(query, 0, sensitivity); at >= 0; at = text.indexOf(query, at + query.size(), sensitivity))
            ranges.emplace_back(int(at), int(query.size()));
        return ranges;
    }
    QRegularExpression expression(query, options.matchCase ? QRegularExpression::NoPatternOption
                                                           : QRegularExpression::CaseInsensitiveOption);
    if (!expression.isValid())
        return ranges;
    for (const QRegularExpressionMatch& match : expression.globalMatch(text))
        if (match.capturedLength() > 0)
            ranges.emplace_back(int(match.capturedStart()), int(match.capturedLength()));
    return ranges;
}

} // namespace orwick::ContentSearch
