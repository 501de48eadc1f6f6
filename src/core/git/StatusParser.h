#pragma once
// StatusParser: reads the records of `git status --porcelain=v1 -z -b --ignored` (split by
// StatusRecords.h) into a RepoStatus as they arrive, so the status read parses while git still writes and only
// the final sort is left once git ends. Pieces may split a record anywhere; feeding the whole
// output at once or byte by byte gives the same status (parseStatus() in RepoStatus.h is one
// feed and finish).
//
// A path that isn't UTF-8 keeps its bytes (changedPaths, ignored paths, File::nativePath). One
// parser reads one output; not shared between threads.

#include "git/RepoStatus.h"
#include "git/StatusRecords.h"

#include <string>
#include <vector>

namespace orwick {

class StatusParser {
public:
    explicit StatusParser(const FilePath& root);
    StatusParser(const StatusParser&) = delete; // its reader calls back into this one
    StatusParser& operator=(const StatusParser&) = delete;

    // The next piece of git's output, in order.
    void feed(QByteArrayView piece);
    // The status of everything fed (a last record without its NUL counts too), files sorted
    // naturally by path; `operation` is left unset. The parser is spent afterwards.
    RepoStatus finish();

private:
    StatusRecordReader::Sink sink();
    void take(const StatusEntry& entry);

    RepoStatus m_status;
    QSet<FilePath> m_ignored;
    qsizetype m_rootLength = 0;
    StatusRecordReader m_reader;
    StatusRecordReader::Sink m_sink; // made once: the reader calls it for every record
    // The last file's path, to pass over the folders above it when the next file shares them.
    FilePath m_lastFile;
    qsizetype m_lastFolderLength = 0;
    // Each file's natural sort key, made as the file comes, in one buffer.
    QString m_folded;
    std::u16string m_keys;
    std::vector<size_t> m_keyEnds;
};

} // namespace orwick
