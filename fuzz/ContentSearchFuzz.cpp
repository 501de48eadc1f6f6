// Fuzzes the reader of a search tool's output (rg --null, grep --null, git grep -z). Any output
// must read without crashing; read in two pieces it gives what it gives read whole; every file
// it records lies below the searched folder and has a name without NUL; every line is cut to
// the column limit; the results' flat list agrees with their files.

#include "FuzzCheck.h"
#include "disktools/ContentSearchOutput.h"
#include "disktools/ContentSearchResults.h"

using namespace orwick;
using namespace orwick::ContentSearch;
using fuzz::check;

namespace {

std::vector<FileMatches> readInPieces(const FilePath& folder, const QByteArray& output, qsizetype split)
{
    OutputReader reader(folder);
    std::vector<FileMatches> batch;
    reader.read(QByteArrayView(output).first(split), batch);
    reader.read(QByteArrayView(output).sliced(split), batch);
    reader.finish(batch);
    return batch;
}

qint64 countOf(const std::vector<FileMatches>& files)
{
    qint64 count = 0;
    for (const FileMatches& file : files)
        count += qint64(file.matches.size());
    return count;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    static const FilePath folder = FilePath::fromNative("/home/user/code");
    const QByteArray all = fuzz::bytesOf(bytes, size);
    const qsizetype split = all.isEmpty() ? 0 : qsizetype(uchar(all[0])) % (all.size() + 1);

    const auto whole = readInPieces(folder, all, 0);
    const auto pieces = readInPieces(folder, all, split);
    check(countOf(whole) == countOf(pieces), "reading in pieces finds as many matches as reading whole");
    check(whole.size() == pieces.size(), "reading in pieces finds the same files");
    for (size_t i = 0; i < whole.size(); ++i) {
        check(whole[i].path == pieces[i].path, "reading in pieces finds the same names");
        check(whole[i].matches == pieces[i].matches, "reading in pieces finds the same lines");
    }
    Results results;
    qint64 total = 0;
    for (const FileMatches& file : whole) {
        check(folder.isAncestorOf(file.url), "a file lies below the searched folder");
        check(!file.path.contains('\0') && !file.path.isEmpty(), "a name is whole");
        check(!file.matches.empty(), "a file has matches");
        for (const Match& match : file.matches) {
            check(match.line >= 0, "a line number is never negative");
            check(QString::fromUtf8(match.bytes).size() <= kMaxColumns * 2, "a line is cut");
            check(!match.bytes.contains('\n'), "a line is one line");
        }
        total += qint64(file.matches.size());
    }
    results.add(std::vector<FileMatches>(whole));
    check(results.matchCount() == total, "the results count every match");
    for (size_t f = 0; f < results.files().size(); ++f) {
        const qint64 first = results.firstIndexOf(int(f));
        check(results.position(first).file == int(f) && results.position(first).match == 0, "a file's first match is where it starts");
    }
    return 0;
}
