// Fuzzes the reader of git's unified diffs and the patches built from it. Any input must read
// without crashing; a hunk read whole has exactly the lines its header counts; and a patch built
// from any pick of its lines, either way round, reads back as one file whose hunks are whole and
// counted right, with no more hunks than the diff had — so git is never handed a patch whose
// numbers lie.

#include "FuzzCheck.h"
#include "git/DiffPatch.h"

#include <algorithm>

using namespace orwick;
using fuzz::check;

namespace {

bool countsHold(const DiffHunk& hunk)
{
    const auto old = std::count_if(hunk.lines.begin(), hunk.lines.end(),
                                   [](const DiffLine& l) { return l.kind != DiffLine::Kind::added; });
    const auto fresh = std::count_if(hunk.lines.begin(), hunk.lines.end(),
                                     [](const DiffLine& l) { return l.kind != DiffLine::Kind::removed; });
    return old == hunk.oldCount && fresh == hunk.newCount;
}

void checkPatch(const FileDiff& file, const DiffLineSelection& pick, PatchDirection direction)
{
    const QByteArray patch = buildPatch(file, pick, direction);
    if (patch.isEmpty())
        return;
    check(!file.isBinary, "a binary file makes no patch");
    const QList<FileDiff> back = parseUnifiedDiff(patch);
    check(back.size() == 1, "a patch holds one file");
    check(!back[0].hunks.isEmpty() && back[0].hunks.size() <= file.hunks.size(), "a patch has the diff's hunks or fewer");
    for (const DiffHunk& hunk : back[0].hunks) {
        check(hunk.isComplete && countsHold(hunk), "a patch's hunks are whole and counted right");
        const bool changes = std::any_of(hunk.lines.begin(), hunk.lines.end(),
                                         [](const DiffLine& l) { return l.kind != DiffLine::Kind::context; });
        check(changes, "a patch's hunk changes something");
        // On the side the patch makes, only the last line may lack its newline.
        const DiffLine::Kind other = direction == PatchDirection::forward ? DiffLine::Kind::removed : DiffLine::Kind::added;
        bool seenWithout = false;
        for (const DiffLine& line : hunk.lines) {
            if (line.kind == other)
                continue;
            check(!seenWithout, "a line without a newline is last on the side the patch makes");
            seenWithout = !line.hasNewline;
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    const QByteArray input = fuzz::bytesOf(bytes, size);
    const QList<FileDiff> files = parseUnifiedDiff(input);
    for (const FileDiff& file : files) {
        for (const DiffHunk& hunk : file.hunks) {
            check(hunk.oldCount >= 0 && hunk.newCount >= 0, "counts are never negative");
            if (hunk.isComplete)
                check(countsHold(hunk), "a whole hunk has the lines its header counts");
        }
        // Every change; every other line; the first hunk; each either way round.
        const DiffLineSelection whole = wholeFileSelection(file);
        DiffLineSelection alternate;
        int n = 0;
        for (const DiffLinePosition& position : whole)
            if (n++ % 2 == 0)
                alternate.insert(position);
        for (const PatchDirection direction : {PatchDirection::forward, PatchDirection::reverse}) {
            checkPatch(file, whole, direction);
            checkPatch(file, alternate, direction);
            checkPatch(file, hunkSelection(file, 0), direction);
        }
    }
    return 0;
}
