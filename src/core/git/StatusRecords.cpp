#include "git/StatusRecords.h"

#include <algorithm>
#include <climits>

namespace orwick {

namespace {

// The number after the first "<word>" that has digits right after it ("ahead 2"); 0 when there
// is none, or when it is too big to be a count.
int countAfter(std::string_view line, std::string_view word)
{
    for (size_t at = line.find(word); at != std::string_view::npos; at = line.find(word, at + 1)) {
        size_t end = at + word.size();
        long long value = 0;
        while (end < line.size() && line[end] >= '0' && line[end] <= '9')
            value = std::min<long long>(value * 10 + (line[end++] - '0'), (long long)INT_MAX + 1);
        if (end > at + word.size())
            return value > INT_MAX ? 0 : int(value);
    }
    return 0;
}

} // namespace

BranchInfo parseBranchLine(std::string_view line)
{
    std::string rest(line);
    static constexpr std::string_view noCommits = "No commits yet on ";
    for (size_t at = rest.find(noCommits); at != std::string::npos; at = rest.find(noCommits, at))
        rest.erase(at, noCommits.size());
    std::string_view words = rest;
    if (words.starts_with("## "))
        words.remove_prefix(3);
    const size_t first = words.find_first_not_of(' ');
    words = first == std::string_view::npos ? std::string_view() : words.substr(first);
    std::string_view word = words.substr(0, words.find(' '));
    word = word.substr(0, word.find("..."));
    return {std::string(word), countAfter(line, "ahead "), countAfter(line, "behind ")};
}

void StatusRecordReader::feed(std::string_view piece, const Sink& sink)
{
    if (m_carry.empty()) {
        const size_t used = take(piece, sink, false);
        m_carry.assign(piece.substr(used));
        return;
    }
    m_carry.append(piece);
    const size_t used = take(m_carry, sink, false);
    m_carry.erase(0, used);
}

void StatusRecordReader::finish(const Sink& sink)
{
    take(m_carry, sink, true);
    m_carry.clear();
}

size_t StatusRecordReader::take(std::string_view data, const Sink& sink, bool atEnd)
{
    size_t at = 0;
    // The end of the record that starts at `from`: its NUL, or the end of the output.
    const auto endOf = [&](size_t from) -> size_t {
        const size_t nul = data.find('\0', from);
        return nul != std::string_view::npos ? nul : atEnd ? data.size() : std::string_view::npos;
    };
    while (at < data.size()) {
        const size_t end = endOf(at);
        if (end == std::string_view::npos)
            return at; // the rest comes with the next piece
        const std::string_view record = data.substr(at, end - at);
        size_t next = std::min(end + 1, data.size());
        if (record.starts_with("## ")) {
            sink.branch(record);
        } else if (record.size() >= 4) {
            StatusEntry entry{record[0], record[1], record.substr(3), {}};
            if (entry.x == 'R' || entry.x == 'C') {
                const size_t sourceEnd = next < data.size() || !atEnd ? endOf(next) : data.size();
                if (sourceEnd == std::string_view::npos)
                    return at; // the entry is read again with its source
                entry.source = data.substr(next, sourceEnd - next);
                next = std::min(sourceEnd + 1, data.size());
            }
            sink.entry(entry);
        }
        at = next;
    }
    return at;
}

} // namespace orwick
