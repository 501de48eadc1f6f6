#pragma once
// UnifiedDiff: git's unified diff (`git diff`, `git diff --cached`, `git show --patch`) read into
// files, hunks and lines, keeping every byte: a line's text is exactly what follows its "+", "-"
// or " " up to the line feed (a CRLF file's lines keep their "\r"), and names that aren't UTF-8
// stay bytes. What the review panel draws and what DiffPatch builds patches from.
//
// Pure and total: any input reads without failing; what isn't a diff (git's warnings, a truncated
// tail) is passed over, and a hunk cut short keeps the lines it has (and is marked so, because a
// patch built from it would not apply). Safe on any thread.

#include <QByteArray>
#include <QByteArrayView>
#include <QList>

namespace orwick {

struct DiffLine {
    enum class Kind : char { context = ' ', added = '+', removed = '-' };
    Kind kind = Kind::context;
    QByteArray text;            // without the leading marker and the line feed
    bool hasNewline = true;     // false when "\ No newline at end of file" follows it
    bool operator==(const DiffLine&) const = default;
};

struct DiffHunk {
    int oldStart = 0;           // as in "@@ -oldStart,oldCount +newStart,newCount @@"
    int oldCount = 0;
    int newStart = 0;
    int newCount = 0;
    QByteArray section;         // what follows the second "@@" (the function git names), trimmed
    QList<DiffLine> lines;
    bool isComplete = true;     // false when the diff ended before the counts were met

    QByteArray headerLine() const; // "@@ -1,3 +1,4 @@ section"
    bool operator==(const DiffHunk&) const = default;
};

struct FileDiff {
    QList<QByteArray> header;   // the lines from "diff --git" up to the first hunk, as git wrote them
    QByteArray oldName;         // the "--- " side without "a/" (unquoted); empty for a new file
    QByteArray newName;         // the "+++ " side without "b/" (unquoted); empty for a deleted file
    QByteArray oldMarker;       // the "--- " line's rest as git wrote it ("a/x", "/dev/null", "\"a/t\\tb\"")
    QByteArray newMarker;       // the "+++ " line's rest as git wrote it
    bool isNew = false;
    bool isDeleted = false;
    bool isRename = false;
    bool isBinary = false;      // "Binary files … differ": no lines to show or pick
    QList<DiffHunk> hunks;

    // The name to show: the new side's, or the old one's for a deleted file.
    QByteArray displayName() const { return newName.isEmpty() ? oldName : newName; }
    int lineCount() const;      // lines in all hunks together
    bool operator==(const FileDiff&) const = default;
};

// Reads every file of a unified diff.
QList<FileDiff> parseUnifiedDiff(QByteArrayView diff);

// A path as git writes it after "a/" or "b/": plain, or in double quotes with C escapes
// ("\t", "\n", "\"", "\\", octal bytes). Returns the bytes of the name.
QByteArray unquoteGitPath(QByteArrayView written);

} // namespace orwick
