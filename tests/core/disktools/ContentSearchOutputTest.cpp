#include "disktools/ContentSearchOutput.h"
#include "disktools/ContentSearchResults.h"

#include <gtest/gtest.h>

using namespace orwick;
using namespace orwick::ContentSearch;

namespace {

const FilePath kFolder = FilePath::fromNative("/srv/code");

// A literal's bytes, NULs included.
template <size_t N>
QByteArray bytes(const char (&literal)[N])
{
    return QByteArray(literal, qsizetype(N - 1));
}

std::vector<FileMatches> readAll(const QByteArray& output, qsizetype chunk = 0)
{
    OutputReader reader(kFolder);
    std::vector<FileMatches> batch;
    if (chunk <= 0) {
        reader.read(output, batch);
    } else {
        for (qsizetype at = 0; at < output.size(); at += chunk)
            reader.read(QByteArrayView(output).sliced(at, std::min(chunk, output.size() - at)), batch);
    }
    reader.finish(batch);
    return batch;
}

} // namespace

TEST(ContentSearchOutput, PathEndsAtTheNulSoColonsAndNewlinesStayInTheName)
{
    const QByteArray output = bytes("./a:b.txt\0" "12:x: y\n./new\nline\0" "3:z\n");
    const auto files = readAll(output);
    ASSERT_EQ(files.size(), 2u);
    EXPECT_EQ(files[0].path, "a:b.txt");
    EXPECT_EQ(files[0].url, FilePath::fromNative("/srv/code/a:b.txt"));
    EXPECT_EQ(files[0].matches, (std::vector<Match>{{12, "x: y"}}));
    EXPECT_EQ(files[1].path, "new\nline");
    EXPECT_EQ(files[1].matches, (std::vector<Match>{{3, "z"}}));
}

TEST(ContentSearchOutput, GitGrepEndsTheLineNumberWithANul)
{
    const QByteArray output = bytes("src/a.c\0" "7\0" "int x;\n");
    const auto files = readAll(output);
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(files[0].path, "src/a.c");
    EXPECT_EQ(files[0].matches, (std::vector<Match>{{7, "int x;"}}));
}

TEST(ContentSearchOutput, ByteByByteGivesTheSameAsAllAtOnce)
{
    QByteArray output;
    for (int i = 1; i <= 40; ++i)
        output += QByteArray("./dir/f") + QByteArray::number(i % 3) + '\0' + QByteArray::number(i) + ":line " + QByteArray::number(i) + '\n';
    const auto whole = readAll(output);
    for (qsizetype chunk : {1, 2, 7, 64}) {
        const auto pieces = readAll(output, chunk);
        qint64 wholeCount = 0, pieceCount = 0;
        for (const auto& f : whole)
            wholeCount += qint64(f.matches.size());
        for (const auto& f : pieces)
            pieceCount += qint64(f.matches.size());
        EXPECT_EQ(pieceCount, wholeCount) << chunk;
        EXPECT_EQ(pieces.front().matches.front(), whole.front().matches.front());
        EXPECT_EQ(pieces.back().matches.back(), whole.back().matches.back());
    }
    EXPECT_EQ(whole.size(), 40u) << "a file's runs are kept apart until Results joins them";
}

TEST(ContentSearchOutput, ALastLineWithoutNewlineIsTaken)
{
    const auto files = readAll(bytes("a\0" "1:end"));
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(files[0].matches[0].bytes, "end");
}

TEST(ContentSearchOutput, MalformedRecordsAreSkipped)
{
    const auto files = readAll(bytes("a\0" "x:no number\nb\0" "2:yes\n"));
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(files[0].path, "b");
    EXPECT_TRUE(readAll("no nul at all\n").empty());
}

TEST(ContentSearchOutput, LinesAreCutAt400CharactersNotInsideALetter)
{
    EXPECT_EQ(cutToColumns(QByteArray(500, 'x')).size(), 400);
    QByteArray accented;
    for (int i = 0; i < 300; ++i)
        accented += "é"; // two bytes each
    const QByteArrayView cut = cutToColumns(accented);
    EXPECT_EQ(cut.size(), 600);
    EXPECT_EQ(QString::fromUtf8(cut).size(), 300);
    QByteArray long_ = QByteArray(399, 'a') + "éé";
    EXPECT_EQ(QString::fromUtf8(cutToColumns(long_)), QString(399, 'a') + "é");
    // Bytes that belong to no letter are a character each, as they are shown: a line of them is
    // cut too.
    EXPECT_EQ(cutToColumns(QByteArray(1000, '\xbb')).size(), 400);
    EXPECT_EQ(QString::fromUtf8(cutToColumns(QByteArray(300, '\xe4') + QByteArray(300, '\xbb'))).size(), 400);
}

TEST(ContentSearchOutput, FailureMessages)
{
    EXPECT_FALSE(failureMessage(0, "warning"));
    EXPECT_FALSE(failureMessage(1, ""));
    EXPECT_EQ(failureMessage(2, "regex parse error:\n    (foo\n    ^\nerror: unclosed group\n"),
              QString("Regex parse error: unclosed group"));
    EXPECT_EQ(failureMessage(2, "grep: Unmatched ( or \\(\n"), QString("Unmatched ( or \\("));
    EXPECT_EQ(failureMessage(128, "fatal: -e option, '(foo': Unmatched ( or \\(\n"), QString("Unmatched ( or \\("));
    // Single unreadable files are not the search failing.
    EXPECT_FALSE(failureMessage(2, "rg: ./secret: Permission denied (os error 13)\n"));
    EXPECT_FALSE(failureMessage(2, "grep: ./secret: Permission denied\n"));
}

TEST(ContentSearchResults, FilesJoinAcrossBatchesAndTheFlatListFollows)
{
    Results results;
    auto file = [](const char* path, std::initializer_list<int> lines) {
        FileMatches f;
        f.path = path;
        f.url = kFolder.child(QByteArrayView(path));
        for (int line : lines)
            f.matches.push_back({line, "t"});
        return f;
    };
    std::vector<FileMatches> first;
    first.push_back(file("a", {1, 2}));
    first.push_back(file("b", {5}));
    results.add(std::move(first));
    std::vector<FileMatches> second;
    second.push_back(file("a", {9}));
    second.push_back(file("c", {1}));
    results.add(std::move(second));
    ASSERT_EQ(results.files().size(), 3u);
    EXPECT_EQ(results.files()[0].matches.size(), 3u);
    EXPECT_EQ(results.matchCount(), 5);
    EXPECT_EQ(results.firstIndexOf(1), 3);
    EXPECT_EQ(results.firstIndexOf(2), 4);
    EXPECT_EQ(results.position(2).file, 0);
    EXPECT_EQ(results.position(2).match, 2);
    EXPECT_EQ(results.position(3).file, 1);
    EXPECT_EQ(results.position(4).file, 2);
    EXPECT_EQ(results.position(5).file, -1);
}

TEST(ContentSearchResults, MatchedRanges)
{
    using Ranges = std::vector<std::pair<int, int>>;
    EXPECT_EQ(matchedRanges("Foo foo", "foo", {.regex = false, .matchCase = false}), (Ranges{{0, 3}, {4, 3}}));
    EXPECT_EQ(matchedRanges("Foo foo", "foo", {.regex = false, .matchCase = true}), (Ranges{{4, 3}}));
    EXPECT_EQ(matchedRanges("a1 b22", "[0-9]+", {.regex = true}), (Ranges{{1, 1}, {4, 2}}));
    EXPECT_TRUE(matchedRanges("x", "(", {.regex = true}).empty());
    EXPECT_EQ(matchedRanges("a.c abc", "a.c", {.regex = false}), (Ranges{{0, 3}}));
}
