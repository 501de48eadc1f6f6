// Reading git's status output as it arrives: whatever the pieces git's writes make (a record
// split anywhere, a rename and its source in different pieces, a last record without its NUL),
// the status is the one the whole output gives.

#include "git/StatusParser.h"

#include <gtest/gtest.h>

namespace orwick {
namespace {

const FilePath root = FilePath::fromNative("/work/repo");

QByteArray output()
{
    QByteArray joined;
    for (const char* record : {"## main...origin/main [ahead 2, behind 1]", " M src/b/file10.txt", " M src/b/file9.txt",
                               "R  new name.txt", "old name.txt", "C  copy.txt", "orig.txt", "?? caf\xe9.txt",
                               "UU both.txt", "?? src/c/", "!! build/", "!! src/b/x.o"}) {
        joined += record;
        joined += '\0';
    }
    return joined;
}

RepoStatus fedInPieces(const QByteArray& bytes, qsizetype size)
{
    StatusParser parser(root);
    for (qsizetype at = 0; at < bytes.size(); at += size)
        parser.feed(QByteArrayView(bytes).sliced(at, std::min(size, bytes.size() - at)));
    return parser.finish();
}

TEST(StatusParser, AnySplitOfTheOutputGivesTheSameStatus)
{
    const QByteArray bytes = output();
    const RepoStatus whole = parseStatus(bytes, root);
    ASSERT_EQ(whole.files.size(), 7);
    EXPECT_EQ(whole.branch, QStringLiteral("main"));
    EXPECT_EQ(whole.ahead, 2);
    EXPECT_EQ(whole.behind, 1);
    EXPECT_EQ(whole.ignored.paths->size(), 2);
    for (qsizetype size : {1, 2, 3, 5, 7, 16, 41})
        EXPECT_EQ(fedInPieces(bytes, size), whole) << "pieces of " << size << " bytes";
}

TEST(StatusParser, ARenameKeepsItsSourceWhenTheSourceComesInTheNextPiece)
{
    StatusParser parser(root);
    parser.feed("R  b.txt");
    parser.feed(QByteArrayView("\0a.txt", 6));
    parser.feed(QByteArrayView("\0 M c.txt\0", 10));
    const RepoStatus status = parser.finish();
    ASSERT_EQ(status.files.size(), 2);
    EXPECT_EQ(status.files[0].path, QStringLiteral("b.txt"));
    EXPECT_EQ(status.files[0].change, Change::renamed);
    EXPECT_EQ(status.files[0].renamedFrom, QByteArray("a.txt"));
    EXPECT_EQ(status.files[1].path, QStringLiteral("c.txt"));
    EXPECT_TRUE(status.files[1].renamedFrom.isEmpty());
}

TEST(StatusParser, ALastRecordWithoutItsNulCounts)
{
    StatusParser parser(root);
    parser.feed(QByteArrayView("## main\0 M a", 12));
    parser.feed(".txt");
    const RepoStatus status = parser.finish();
    ASSERT_EQ(status.files.size(), 1);
    EXPECT_EQ(status.files[0].path, QStringLiteral("a.txt"));
    EXPECT_EQ(status.branch, QStringLiteral("main"));
}

TEST(StatusParser, OnlyANameThatIsNotUtf8KeepsItsBytes)
{
    const RepoStatus status = parseStatus(QByteArray("?? caf\xe9.txt\0?? caf\xc3\xa9-2.txt\0", 27), root);
    ASSERT_EQ(status.files.size(), 2);
    for (const RepoStatus::File& file : status.files) {
        if (file.path.endsWith(QStringLiteral("-2.txt"))) {
            EXPECT_TRUE(file.nativePath.isEmpty());
            EXPECT_EQ(status.pathOf(file).native(), QByteArray("/work/repo/caf\xc3\xa9-2.txt"));
        } else {
            EXPECT_EQ(file.nativePath, QByteArray("caf\xe9.txt"));
            EXPECT_EQ(status.pathOf(file).native(), QByteArray("/work/repo/caf\xe9.txt"));
        }
    }
}

} // namespace
} // namespace orwick
