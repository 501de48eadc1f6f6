#pragma once
// StatusRecords: the records of `git status --porcelain=v1 -z -b`, split as they arrive. Each
// record ends in a NUL: the branch record ("## main...origin/main [ahead 2]"), then one "XY path"
// per file, where a renamed or copied file ("R " or "C ") is followed by one more record naming
// where it came from. Pieces may split a record anywhere; the reader keeps what hasn't ended yet.
// Needs no Qt: the window's parser (StatusParser.h) and orwick-cli's status before Qt loads
// (src/cli/StatusReport.h) both read through it.

#include <functional>
#include <string>
#include <string_view>

namespace orwick {

// One file's record. The views point into the piece being read: valid during the call only.
struct StatusEntry {
    char x = ' ';            // the index's letter ("!" for an ignored path, "?" for an untracked one)
    char y = ' ';            // the working tree's letter
    std::string_view path;   // relative to the repository's root, as git printed it
    std::string_view source; // where a renamed or copied file came from; empty otherwise
};

// The branch record's words: "## main...origin/main [ahead 2, behind 1]" gives "main", 2 and 1;
// "## No commits yet on main" gives "main"; "## HEAD (no branch)" gives "HEAD".
struct BranchInfo {
    std::string branch;
    int ahead = 0;
    int behind = 0;
};
BranchInfo parseBranchLine(std::string_view line);

class StatusRecordReader {
public:
    struct Sink {
        std::function<void(std::string_view line)> branch; // the whole record, "## " included
        std::function<void(const StatusEntry& entry)> entry;
    };

    // The next piece of git's output, in order: hands every record it completes to `sink`.
    void feed(std::string_view piece, const Sink& sink);
    // The end of the output: a last record without its NUL counts too (a rename without its
    // source gets an empty one).
    void finish(const Sink& sink);

private:
    // Hands over the records `data` holds; returns how many bytes they took.
    size_t take(std::string_view data, const Sink& sink, bool atEnd);

    std::string m_carry; // the start of a record (or a rename and its source) not ended yet
};

} // namespace orwick
