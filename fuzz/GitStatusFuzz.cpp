// Fuzzes the reader of `git status --porcelain=v1 -z -b --ignored`. Any output must read without
// crashing; every path it records must lie below the repository's root (a badge or an ignored
// mark never lands outside it); counts are never negative; the files come sorted; read in two
// pieces it reads the same.

#include "FuzzCheck.h"
#include "base/NaturalCompare.h"
#include "git/RepoStatus.h"
#include "git/StatusParser.h"

using namespace orwick;
using fuzz::check;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    // The first byte picks the repository: the root of the file system is one too.
    static const FilePath roots[] = {FilePath::fromNative("/home/user/repo"), FilePath::fromNative("/")};
    const FilePath& root = roots[size > 0 && (bytes[0] & 1)];
    const QByteArray output = fuzz::bytesOf(bytes, size).mid(1);
    const QString text = QString::fromUtf8(output);

    const RepoStatus status = parseStatus(text, root);
    check(status.root == root && status.ignored.root == root, "the status names its root");
    check(status.ahead >= 0 && status.behind >= 0, "ahead and behind are counts");
    check(!status.branch.contains(u' '), "a branch name is one word");
    for (auto it = status.changedPaths.begin(); it != status.changedPaths.end(); ++it)
        check(root.isAncestorOf(it.key()), "a changed path lies below the root");
    for (const FilePath& folder : status.foldersWithChanges)
        check(root.isAncestorOf(folder), "a folder with changes lies below the root");
    for (const FilePath& path : *status.ignored.paths)
        check(root.isAncestorOf(path), "an ignored path lies below the root");
    check(!status.ignored.contains(root), "the root itself is never ignored");
    for (qsizetype i = 1; i < status.files.size(); ++i)
        check(naturalCompare(status.files[i - 1].path, status.files[i].path) <= 0, "files come sorted");
    for (const RepoStatus::File& file : status.files)
        check(!file.path.isEmpty(), "a file has a path");

    // Read as it arrives, split anywhere, the output gives the same status.
    StatusParser parser(root);
    const QByteArray utf8 = text.toUtf8();
    const qsizetype split = size > 1 ? qsizetype(bytes[1]) % (utf8.size() + 1) : 0;
    parser.feed(QByteArrayView(utf8).first(split));
    parser.feed(QByteArrayView(utf8).sliced(split));
    check(parser.finish() == status, "a split output reads the same");

    const BranchLine branch = parseBranch(text.section(QChar(u'\0'), 0, 0));
    check(branch.ahead >= 0 && branch.behind >= 0, "a branch line's counts are never negative");
    return 0;
}
