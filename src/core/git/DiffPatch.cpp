#include "git/DiffPatch.h"

#include <algorithm>

namespace orwick {

namespace {

using Kind = DiffLine::Kind;

bool isChange(const DiffLine& line) { return line.kind != Kind::context; }

// Where a hunk side begins, as a line number even when the side is empty: git writes an empty
// side's start as the line before it ("@@ -0,0 +1,3 @@").
int firstLine(int start, int count) { return count == 0 ? start + 1 : start; }
int startOf(int firstLine, int count) { return count == 0 ? firstLine - 1 : firstLine; }

// The lines of one hunk as the patch has them: the picked changes, the rest made to match the
// side the patch is applied to.
QList<DiffLine> reshape(const DiffHunk& hunk, int hunkIndex, const DiffLineSelection& selection,
                        PatchDirection direction)
{
    // Forward keeps the old side as it is (removed lines not picked stay); reverse the new side.
    const Kind kept = direction == PatchDirection::forward ? Kind::removed : Kind::added;
    QList<DiffLine> lines;
    lines.reserve(hunk.lines.size());
    for (int i = 0; i < hunk.lines.size(); ++i) {
        DiffLine line = hunk.lines[i];
        if (isChange(line) && !selection.contains({hunkIndex, i})) {
            if (line.kind != kept)
                continue;
            line.kind = Kind::context;
        }
        lines.append(std::move(line));
    }
    return lines;
}

// The side the patch makes (new when forward, old when reverse) may end up with a line that
// lacks its newline but is no longer last. Such a line gets its newline there: a changed line
// simply has one; a context line becomes a removal as it is and an addition with the newline
// (or the other way round when reversed), since the side applied to must stay as it is.
void giveNewlinesToInnerLines(QList<DiffLine>& lines, PatchDirection direction)
{
    const bool forward = direction == PatchDirection::forward;
    const Kind made = forward ? Kind::added : Kind::removed;
    auto onMadeSide = [&](const DiffLine& line) { return line.kind == Kind::context || line.kind == made; };
    qsizetype last = lines.size() - 1;
    while (last >= 0 && !onMadeSide(lines[last]))
        --last;
    for (qsizetype i = 0; i < last; ++i) {
        DiffLine& line = lines[i];
        if (line.hasNewline || !onMadeSide(line))
            continue;
        if (line.kind == made) {
            line.hasNewline = true;
            continue;
        }
        DiffLine removed = line;
        DiffLine added = line;
        removed.kind = Kind::removed;
        added.kind = Kind::added;
        (forward ? added : removed).hasNewline = true;
        lines[i] = removed;
        lines.insert(i + 1, added);
        ++i;
        ++last;
    }
}

// A "--- "/"+++ " name with its side's prefix letter set to `side` ('a' or 'b'), keeping quotes
// and git's trailing tab.
QByteArray withSide(QByteArray marker, char side)
{
    const qsizetype at = marker.startsWith('"') ? 1 : 0;
    if (marker.size() > at + 1 && marker[at + 1] == '/')
        marker[at] = side;
    return marker;
}

QByteArray withoutTab(QByteArray marker)
{
    if (marker.endsWith('\t'))
        marker.chop(1);
    return marker;
}

// The header of a patch that changes the contents of one path only, named by `marker`.
QByteArray contentsHeader(const QByteArray& marker)
{
    const QByteArray oldSide = withSide(marker, 'a');
    const QByteArray newSide = withSide(marker, 'b');
    return "diff --git " + withoutTab(oldSide) + ' ' + withoutTab(newSide) + "\n--- " + oldSide + "\n+++ " + newSide
        + '\n';
}

QByteArray fileHeader(const FileDiff& file, bool whole, PatchDirection direction)
{
    // A new file being staged, or a deleted one being brought back, keeps git's header even in
    // part: the side applied to has no such file, so the patch must make it.
    const bool keepsGitHeader = whole || (direction == PatchDirection::forward ? file.isNew : file.isDeleted);
    if (!keepsGitHeader) {
        const QByteArray& marker = direction == PatchDirection::forward ? file.oldMarker : file.newMarker;
        return marker.isEmpty() ? QByteArray() : contentsHeader(marker); // no name: no patch
    }
    QByteArray header;
    for (const QByteArray& line : file.header)
        header += line + '\n';
    return header;
}

void appendLines(QByteArray& patch, const QList<DiffLine>& lines)
{
    for (const DiffLine& line : lines) {
        patch += char(line.kind);
        patch += line.text;
        patch += '\n';
        if (!line.hasNewline)
            patch += "\\ No newline at end of file\n";
    }
}

} // namespace

DiffLineSelection hunkSelection(const FileDiff& file, int hunk)
{
    DiffLineSelection selection;
    if (hunk < 0 || hunk >= file.hunks.size())
        return selection;
    const QList<DiffLine>& lines = file.hunks[hunk].lines;
    for (int i = 0; i < lines.size(); ++i)
        if (isChange(lines[i]))
            selection.insert({hunk, i});
    return selection;
}

DiffLineSelection wholeFileSelection(const FileDiff& file)
{
    DiffLineSelection selection;
    for (int hunk = 0; hunk < file.hunks.size(); ++hunk)
        selection.unite(hunkSelection(file, hunk));
    return selection;
}

bool selectsChanges(const FileDiff& file, const DiffLineSelection& selection)
{
    for (const DiffLinePosition& position : selection) {
        if (position.hunk < 0 || position.hunk >= file.hunks.size())
            continue;
        const QList<DiffLine>& lines = file.hunks[position.hunk].lines;
        if (position.line >= 0 && position.line < lines.size() && isChange(lines[position.line]))
            return true;
    }
    return false;
}

QByteArray buildPatch(const FileDiff& file, const DiffLineSelection& selection, PatchDirection direction)
{
    if (file.isBinary || !selectsChanges(file, selection))
        return {};
    bool whole = true;
    QByteArray body;
    int shift = 0; // lines the hunks so far add to the side the patch makes
    for (int index = 0; index < file.hunks.size(); ++index) {
        const DiffHunk& hunk = file.hunks[index];
        const DiffLineSelection picked = hunkSelection(file, index);
        bool any = false;
        for (const DiffLinePosition& position : picked) {
            const bool chosen = selection.contains(position);
            any = any || chosen;
            whole = whole && chosen;
        }
        if (!any)
            continue;
        if (!hunk.isComplete)
            return {}; // its counts are unknown; a patch from it would not apply
        QList<DiffLine> lines = reshape(hunk, index, selection, direction);
        giveNewlinesToInnerLines(lines, direction);
        DiffHunk out = hunk;
        out.oldCount = int(std::count_if(lines.begin(), lines.end(), [](const DiffLine& l) { return l.kind != Kind::added; }));
        out.newCount = int(std::count_if(lines.begin(), lines.end(), [](const DiffLine& l) { return l.kind != Kind::removed; }));
        if (direction == PatchDirection::forward)
            out.newStart = startOf(firstLine(hunk.oldStart, hunk.oldCount) + shift, out.newCount);
        else
            out.oldStart = startOf(firstLine(hunk.newStart, hunk.newCount) - shift, out.oldCount);
        if (out.oldStart < 0 || out.newStart < 0)
            return {}; // hunks out of order or overlapping: not a diff of a real file
        shift += out.newCount - out.oldCount;
        body += out.headerLine() + '\n';
        appendLines(body, lines);
    }
    const QByteArray header = fileHeader(file, whole, direction);
    return header.isEmpty() ? QByteArray() : header + body;
}

} // namespace orwick
