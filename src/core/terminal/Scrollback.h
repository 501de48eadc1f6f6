#pragma once
// Scrollback: the lines that scrolled off the top of a terminal screen, oldest first, at most
// `capacity` of them; a line pushed to a full scrollback drops the oldest. Lines are kept
// without their trailing plain blanks, except a line the terminal wrapped at the right edge
// (isWrapped: its text goes on in the next line), whose blanks are part of that text. Lines are numbered for good: the oldest line ever
// pushed is number 0, so a number keeps meaning the same line while newer lines arrive (a
// selection holds numbers); firstNumber() tells which numbers are still kept.
//
// A ring of line buffers that are reused, so a flood of output allocates only while it fills.

#include "terminal/TerminalCell.h"

#include <cstddef>
#include <cstdint>

namespace orwick {

class Scrollback {
public:
    static constexpr int kDefaultCapacity = 10'000;
    explicit Scrollback(int capacity = kDefaultCapacity) : m_capacity(capacity) {}

    int capacity() const { return m_capacity; }
    int size() const { return int(m_count); }
    bool isEmpty() const { return m_count == 0; }
    // The number of the oldest kept line, and one past the newest.
    int64_t firstNumber() const { return m_pushed - int64_t(m_count); }
    int64_t endNumber() const { return m_pushed; }

    // The line at `index`, 0 being the oldest kept.
    const TerminalLine& at(int index) const { return m_lines[(m_start + size_t(index)) % m_lines.size()]; }
    const TerminalLine& newest() const { return at(size() - 1); }
    // The line at `index` was wrapped by the terminal: the next line continues it.
    bool isWrapped(int index) const { return m_wrapped[(m_start + size_t(index)) % m_lines.size()]; }

    void push(const TerminalCell* cells, int count, bool wrapped = false);
    // Takes the newest line back (a screen that grew taller); false when there is none.
    bool popNewest(TerminalLine& into);
    void clear();

private:
    int m_capacity;
    std::vector<TerminalLine> m_lines;
    std::vector<char> m_wrapped; // beside m_lines, slot for slot
    size_t m_start = 0;
    size_t m_count = 0;
    int64_t m_pushed = 0;
};

} // namespace orwick
