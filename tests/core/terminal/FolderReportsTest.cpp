#include "terminal/FolderReports.h"
#include "terminal/ShellText.h"

#include <gtest/gtest.h>

namespace orwick {
namespace {

TEST(FolderReportsTest, AReportSplitAcrossReadsIsFound)
{
    FolderReports reports;
    const QByteArray output = "text\x1b]7;file:///home/a%20b\x1b\\more";
    QList<FilePath> found;
    for (char c : output)
        found += reports.scan(QByteArrayView(&c, 1));
    EXPECT_EQ(found, QList<FilePath>{FilePath::fromNative("/home/a b")});
}

TEST(FolderReportsTest, OtherStringsAndHostsAreLeftAlone)
{
    FolderReports reports;
    EXPECT_TRUE(reports.scan("\x1b]0;title /x\x07\x1b]7;file://far.example/x\x07\x1b]7;http://x/y\x07\x1b]7;file://\x07").isEmpty());
    EXPECT_EQ(reports.scan("\x1b]7;file://localhost/ok\x07"), QList<FilePath>{FilePath::fromNative("/ok")});
}

TEST(FolderReportsTest, AHugePayloadIsIgnoredAndTheNextReportStillCounts)
{
    FolderReports reports;
    QByteArray huge = "\x1b]7;file:///" + QByteArray(FolderReports::kMaxPayload * 4, 'a') + "\x07";
    EXPECT_TRUE(reports.scan(huge).isEmpty());
    EXPECT_EQ(reports.scan("\x1b]7;file:///after\x07"), QList<FilePath>{FilePath::fromNative("/after")});
}

TEST(FolderReportsTest, CancelAbandonsAReport)
{
    FolderReports reports;
    EXPECT_TRUE(reports.scan("\x1b]7;file:///x\x18\x07").isEmpty());
    EXPECT_EQ(reports.scan("\x1b]7;file:///y\x07"), QList<FilePath>{FilePath::fromNative("/y")});
}

TEST(FolderReportsTest, BytesThatAreNotUtf8ArriveAsTheyAre)
{
    EXPECT_EQ(FolderReports::folderOf("file:///tmp/%FF%FE"), FilePath::fromNative("/tmp/\xff\xfe"));
    EXPECT_FALSE(FolderReports::folderOf("file:///tmp/%00x").has_value());
}

TEST(ShellTextTest, QuotesKeepEveryNameWhole)
{
    EXPECT_EQ(shellText::changeDirectory(FilePath::fromNative("/tmp/it's here")), QByteArray("cd -- '/tmp/it'\\''s here'\r"));
    EXPECT_EQ(shellText::changeDirectory(FilePath::fromNative("/tmp/$HOME `x` \"q\"")), QByteArray("cd -- '/tmp/$HOME `x` \"q\"'\r"));
    EXPECT_FALSE(shellText::changeDirectory(FilePath::fromNative("/tmp/line\nbreak")).has_value());
    EXPECT_FALSE(shellText::changeDirectory(FilePath::fromNative("/tmp/esc\x1b[0m")).has_value());
    EXPECT_EQ(shellText::quotedPaths({FilePath::fromNative("/a b"), FilePath::fromNative("/new\nline"), FilePath::fromNative("/c")}),
              QByteArray("'/a b' '/c' "));
}

} // namespace
} // namespace orwick
