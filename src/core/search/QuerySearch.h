#pragma once
// Runs a SearchQuery, or a colour tag, through the search walker: the test each entry meets,
// the roots of the query's scope, and the content look-up for text files.
//
// A query's text is found in a name or, with `contents`, in the text of a file (not a folder,
// not a known binary type, at most kContentLimit bytes, no NUL in its first 8 KiB); either is
// enough. The kind and date filters apply to both.

#include "search/SearchQuery.h"
#include "search/SearchWalker.h"

namespace orwick::QuerySearch {

inline constexpr qint64 kContentLimit = 10 * 1024 * 1024;

struct Options {
    bool showHidden = false;
    bool contents = true;
    bool makeItems = true;
    int threads = 0;
    qint64 limit = 0; // the most hits (0: all)
    QDateTime now = QDateTime::currentDateTime();
};

// The roots a query walks: its folder, or home and the drives.
std::vector<FilePath> roots(const SearchQuery& query);
SearchWalker::Test makeTest(const SearchQuery& query, const Options& options);

// Nothing runs for a query that is not runnable. Returns the number of hits.
qint64 run(const SearchQuery& query, const Options& options, const SearchWalker::Sink& sink, const CancelFlag& cancel);

// Whether a user.xdg.tags value carries `tag`, read as TagList reads it (commas or semicolons,
// spaces around names and letter case ignored, Grey is Gray).
bool tagsContain(QByteArrayView tags, const QString& tag);
// Every file and folder under `root` that carries the tag.
qint64 runTag(const QString& tag, const FilePath& root, bool showHidden, const SearchWalker::Sink& sink, const CancelFlag& cancel);

// Whether the file `name` in the open folder holds the text (the rules above).
bool fileContains(int folderFd, const QByteArray& name, const TextNeedle& needle, qint64 limit = kContentLimit);

} // namespace orwick::QuerySearch
