// The shared recently-used list as text: reading other programs' bookmarks, and adding one that
// replaces an older bookmark of the same file while every other program's stays.

#include "platform/RecentFiles.h"

#include <gtest/gtest.h>

namespace orwick {
namespace {

const QByteArray kList = R"(<?xml version="1.0" encoding="UTF-8"?>
<xbel version="1.0" xmlns:bookmark="http://www.freedesktop.org/standards/desktop-bookmarks" xmlns:mime="http://www.freedesktop.org/standards/shared-mime-info">
  <bookmark href="file:///home/u/notes.md" added="2024-01-01T10:00:00Z" modified="2024-01-01T10:00:00Z" visited="2024-01-01T10:00:00Z">
    <info><metadata owner="http://freedesktop.org"><mime:mime-type type="text/markdown"/>
      <bookmark:applications><bookmark:application name="gedit" exec="&apos;gedit %u&apos;" modified="2024-02-01T09:00:00.123Z" count="3"/></bookmark:applications>
    </metadata></info>
  </bookmark>
  <bookmark href="file:///home/u/caf%C3%A9%20one.png" added="2024-03-01T10:00:00Z" modified="2024-03-01T10:00:00Z" visited="2024-03-01T10:00:00Z">
  </bookmark>
  <bookmark href="https://example.org/page" added="2024-04-01T10:00:00Z" modified="2024-04-01T10:00:00Z" visited="2024-04-01T10:00:00Z">
  </bookmark>
</xbel>
)";

QDateTime utc(const char* text) { return QDateTime::fromString(QString::fromLatin1(text), Qt::ISODateWithMs); }

TEST(RecentFilesList, ReadsLocalFilesLatestFirst)
{
    const QList<RecentFiles::Entry> entries = RecentFiles::parse(kList);
    ASSERT_EQ(entries.size(), 2);
    EXPECT_EQ(entries[0].path, FilePath::fromNative("/home/u/caf\xc3\xa9 one.png"));
    EXPECT_EQ(entries[1].path, FilePath::fromNative("/home/u/notes.md"));
    EXPECT_EQ(entries[1].lastUsed, utc("2024-02-01T09:00:00.123Z")); // the application's later date
}

TEST(RecentFilesList, AddingReplacesTheSameFileAndKeepsTheOthers)
{
    const QDateTime now = utc("2025-01-01T12:00:00.000Z");
    const QByteArray added = RecentFiles::adding(kList, FilePath::fromNative("/home/u/notes.md"), QStringLiteral("text/markdown"), now);
    const QList<RecentFiles::Entry> entries = RecentFiles::parse(added);
    ASSERT_EQ(entries.size(), 2);
    EXPECT_EQ(entries[0].path, FilePath::fromNative("/home/u/notes.md"));
    EXPECT_EQ(entries[0].lastUsed, now);
    EXPECT_EQ(entries[1].path, FilePath::fromNative("/home/u/caf\xc3\xa9 one.png"));
    EXPECT_TRUE(added.contains("https://example.org/page"));
    EXPECT_FALSE(added.contains("gedit"));
}

TEST(RecentFilesList, AddingToNoListMakesOne)
{
    const QDateTime now = utc("2025-01-01T12:00:00.000Z");
    const QByteArray added = RecentFiles::adding({}, FilePath::fromNative("/tmp/a \"b\".txt"), QStringLiteral("text/plain"), now);
    const QList<RecentFiles::Entry> entries = RecentFiles::parse(added);
    ASSERT_EQ(entries.size(), 1);
    EXPECT_EQ(entries[0].path, FilePath::fromNative("/tmp/a \"b\".txt"));
    EXPECT_EQ(entries[0].lastUsed, now);
}

TEST(RecentFilesList, AListDeclaredInAnotherEncodingIsLeftAsItIs)
{
    QByteArray latin1 = kList;
    latin1.replace("encoding=\"UTF-8\"", "encoding=\"ISO-8859-1\"");
    const QDateTime now = utc("2025-01-01T12:00:00.000Z");
    EXPECT_EQ(RecentFiles::adding(latin1, FilePath::fromNative("/home/u/a~b.md"), QStringLiteral("text/markdown"), now), latin1);
    QByteArray lowerCase = kList;
    lowerCase.replace("encoding=\"UTF-8\"", "encoding=\"utf-8\"");
    EXPECT_NE(RecentFiles::adding(lowerCase, FilePath::fromNative("/home/u/a~b.md"), QStringLiteral("text/markdown"), now), lowerCase);
}

} // namespace
} // namespace orwick
