#pragma once
// Reading a search tool's output as it arrives. ripgrep (--null), grep (--null) and git grep (-z)
// all print one match as: the path, a NUL byte, the line number, ":" (a NUL for git grep), the
// line's text and a newline. The path ends at the NUL, so names holding ":", blanks or even
// newlines come through whole; text is kept as bytes (it need not be UTF-8) and cut at
// kMaxColumns characters. A record that doesn't follow the form, or names a path outside the
// searched folder, is skipped to its newline.
//
// One reader per run; not shared between threads.

#include "disktools/ContentSearch.h"

#include <optional>

namespace orwick::ContentSearch {

class OutputReader {
public:
    explicit OutputReader(FilePath folder) : m_folder(std::move(folder)) {}

    // Adds the complete records in `bytes` (and what was left over before) to `batch`: a match of
    // the same file as the batch's last entry joins it, any other starts a new entry.
    void read(QByteArrayView bytes, std::vector<FileMatches>& batch);
    // The output ended: a last record without its newline is taken too.
    void finish(std::vector<FileMatches>& batch);

    qint64 matchesRead() const { return m_matches; }

private:
    // Parses one record at m_offset; false when more bytes are needed.
    bool takeRecord(std::vector<FileMatches>& batch, bool atEnd);
    void add(QByteArrayView path, qint64 line, QByteArrayView text, std::vector<FileMatches>& batch);

    FilePath m_folder;
    QByteArray m_pending;
    qsizetype m_offset = 0;
    qint64 m_matches = 0;
};

// `text` cut to at most kMaxColumns characters, never inside a UTF-8 sequence.
QByteArrayView cutToColumns(QByteArrayView text);

// The tool's complaint in a sentence fit to show, when it failed for the search as a whole (a
// pattern that isn't a valid expression): none when it exited with 0 or 1 (grep-like tools say
// 1 when nothing matched), or when it only complained about single files it couldn't read.
std::optional<QString> failureMessage(int exitStatus, const QByteArray& errors);

} // namespace orwick::ContentSearch
