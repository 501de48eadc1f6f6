#pragma once
// DiffText: the text diff of two files, as a plain unified diff ("--- ", "+++ ", "@@ … @@",
// "+", "-", " " lines) whose lines the compare panel colours by kind. Lines are matched by
// Myers' shortest edit script after the common start and end are set aside; a middle too far
// apart to match within kMaxEdits is shown as removed and added whole. Files larger than
// kMaxBytes are compared over their first kMaxBytes, and a note line says so. Pure functions.

#include "base/FilePath.h"

#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

namespace orwick::DiffText {

enum class Kind { file, hunk, added, removed, context, note };

// The kind of one line of a unified diff.
Kind kind(QStringView line);

inline constexpr int kContextLines = 3;
inline constexpr int kMaxEdits = 1000;
inline constexpr qint64 kMaxBytes = 2 * 1024 * 1024;

struct Diff {
    QString diff;         // the unified diff; empty when the texts are equal
    QString emptyMessage; // shown when `diff` is empty
};

// The unified diff of two texts given as lines (without their newlines).
QString unified(const QStringList& left, const QStringList& right, const QString& leftName, const QString& rightName,
                int context = kContextLines);

// The diff of two files: none when either isn't text (holds a NUL byte in its first part) or
// can't be read.
std::optional<Diff> diffFiles(const FilePath& left, const FilePath& right);

// One line pair of the side-by-side view: a line of either side or none, and whether it
// differs. `changed` pairs carry the ranges [start, length) of the words that differ in each.
struct Row {
    std::optional<int> left;  // 0-based line numbers
    std::optional<int> right;
    bool differs = false;
};
std::vector<Row> sideBySide(const QStringList& left, const QStringList& right);
using Ranges = std::vector<std::pair<int, int>>;
// The words (runs of letters and digits, or single other characters) of two changed lines that
// are not common to both, as ranges in each.
std::pair<Ranges, Ranges> changedWords(const QString& left, const QString& right);

// Splits a text into lines the way the diff counts them (a last line without a newline counts).
QStringList linesOf(const QString& text);

} // namespace orwick::DiffText
