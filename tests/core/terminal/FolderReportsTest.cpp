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

// Other strings, other hosts, a huge payload and a cancelled report are left alone, and the
// next report still counts.
TEST(FolderReportsTest, WhatIsNoReportHereIsLeftAlone)
{
    FolderReports reports;
    const QByteArray huge = "\x1b]7;file:///" + QByteArray(FolderReports::kMaxPayload * 4, 'a') + "\x07";
    for (const QByteArray& output : {QByteArray("\x1b]0;title /x\x07\x1b]7;file://far.example/x\x07\x1b]7;http://x/y\x07\x1b]7;file://\x07"),
                                     huge, QByteArray("\x1b]7;file:///x\x18\x07")}) {
        EXPECT_TRUE(reports.scan(output).isEmpty()) << output.left(40).toStdString();
        EXPECT_EQ(reports.scan("\x1b]7;file://localhost/ok\x07"), QList<FilePath>{FilePath::fromNative("/ok")});
    }
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
