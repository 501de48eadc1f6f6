#pragma once
// ContentSearchResults: the matches of one search as the panel shows them — files in the order
// they first appeared, each file's matches in output order — built up batch by batch as the
// tool prints, with the flat list of matches the arrow keys move through. A value; lives with
// its panel on the GUI thread.

#include "disktools/ContentSearch.h"

#include <QHash>

namespace orwick::ContentSearch {

class Results {
public:
    // Adds a batch; a file seen before gets the new matches after its old ones.
    void add(std::vector<FileMatches>&& batch);
    void clear();

    const std::vector<FileMatches>& files() const { return m_files; }
    qint64 matchCount() const { return m_matchCount; }
    bool isEmpty() const { return m_files.empty(); }

    // The flat list of (file, match) pairs: `index` 0 … matchCount() - 1.
    struct Position {
        int file = -1;
        int match = -1;
    };
    Position position(qint64 index) const;
    // The flat index at which file `file`'s matches start.
    qint64 firstIndexOf(int file) const { return m_starts[size_t(file)]; }

private:
    std::vector<FileMatches> m_files;
    std::vector<qint64> m_starts; // flat index of each file's first match
    QHash<QByteArray, int> m_indexByPath;
    qint64 m_matchCount = 0;
};

// Where `query` occurs in `text` as the search sees it: [start, length) pairs in UTF-16 units,
// for marking. A regular expression that Qt can't read marks nothing.
std::vector<std::pair<int, int>> matchedRanges(const QString& text, const QString& query, const Options& options);

} // namespace orwick::ContentSearch
