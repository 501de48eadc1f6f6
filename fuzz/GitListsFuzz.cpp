// Fuzzes the readers of git's lists for the review — commits (log), branches (for-each-ref),
// stashes (stash list) — and the cutting of a diff. Any output must read without crashing; every
// commit, branch and stash read has its key field; a diff is never longer than its cut and says
// why it was cut.

#include "FuzzCheck.h"
#include "git/GitOutputParse.h"

using namespace orwick;
using fuzz::check;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    const QByteArray output = fuzz::bytesOf(bytes, size);
    const QString text = QString::fromUtf8(output);

    for (const GitCommit& commit : parseLog(text))
        check(!commit.hash.isEmpty(), "a commit has a hash");
    for (const GitBranch& branch : parseBranches(text))
        check(!branch.name.isEmpty(), "a branch has a name");
    for (const GitStash& stash : parseStashes(text))
        check(!stash.ref.isEmpty(), "a stash has a reference");

    const int limit = size > 0 ? 1 + bytes[0] % 16 : 1;
    const GitDiff diff = readDiff(output, limit);
    check(diff.patch.count('\n') <= limit, "a cut diff keeps at most its lines");
    check(output.startsWith(diff.patch), "a cut diff is the start of git's output");
    check(diff.truncated == (diff.totalLines > limit), "a diff is cut only when longer than the cut");
    check(!diff.truncated || diff.isBinary || !diff.note.isEmpty(), "a cut diff says so");
    return 0;
}
