// The file clipboard in the formats other file managers use.

#include "fileops/FileClipboard.h"

#include <gtest/gtest.h>

namespace orwick {
namespace {

TEST(FileClipboard, RoundTripKeepsBytesAndTheCutMarker)
{
    const QList<FilePath> items = {FilePath::fromNative("/home/u/caf\xe9 #1.txt"), FilePath::fromNative("/tmp/a b")};
    for (const bool cut : {false, true}) {
        const auto data = makeFileClipboard(items, cut);
        const ClipboardFiles files = readFileClipboard(data.get());
        EXPECT_EQ(files.items, items);
        EXPECT_EQ(files.cut, cut);
        EXPECT_EQ(data->data(QStringLiteral("x-special/gnome-copied-files")).split('\n').first(), cut ? "cut" : "copy");
        EXPECT_EQ(data->data(QStringLiteral("application/x-kde-cutselection")), cut ? "1" : "0");
    }
    EXPECT_TRUE(makeFileClipboard(items, false)->data(QStringLiteral("text/uri-list")).startsWith("file:///home/u/caf%E9%20%231.txt\r\n"));
}

TEST(FileClipboard, ReadsWhatOtherProgramsWrite)
{
    QMimeData gnome;
    gnome.setData(QStringLiteral("x-special/gnome-copied-files"), "cut\nfile:///srv/x.txt\nfile:///srv/y%20z");
    ClipboardFiles files = readFileClipboard(&gnome);
    EXPECT_TRUE(files.cut);
    EXPECT_EQ(files.items, (QList<FilePath>{FilePath::fromNative("/srv/x.txt"), FilePath::fromNative("/srv/y z")}));

    QMimeData kde;
    kde.setData(QStringLiteral("text/uri-list"), "# comment\r\nfile:///a\r\nhttps://example.com/b\r\n");
    kde.setData(QStringLiteral("application/x-kde-cutselection"), "1");
    files = readFileClipboard(&kde);
    EXPECT_TRUE(files.cut);
    EXPECT_EQ(files.items, QList<FilePath>{FilePath::fromNative("/a")});

    QMimeData text;
    text.setText(QStringLiteral("/not/files"));
    EXPECT_TRUE(readFileClipboard(&text).items.isEmpty());
}

TEST(FileClipboard, ReadsEveryUriForADropAndTellsLocalFilesApart)
{
    QMimeData data;
    data.setData(QStringLiteral("text/uri-list"), "file:///a%20b\r\nhttps://example.com/c\r\nfile://elsewhere/d\r\n");
    const QList<QUrl> uris = readUris(&data);
    ASSERT_EQ(uris.size(), 3);
    EXPECT_TRUE(isLocalFileUrl(uris[0]));
    EXPECT_FALSE(isLocalFileUrl(uris[1]));
    EXPECT_FALSE(isLocalFileUrl(uris[2])) << "a file on another computer";
    EXPECT_TRUE(isLocalFileUrl(QUrl(QStringLiteral("file://localhost/etc"))));
    EXPECT_EQ(readFileClipboard(&data).items, QList<FilePath>{FilePath::fromNative("/a b")});
    // What Orwick's own drags carry reads back the same.
    const QList<FilePath> items = {FilePath::fromNative("/srv/caf\xe9")};
    EXPECT_EQ(readUris(makeFileClipboard(items, false).get()), QList<QUrl>{items.first().toUrl()});
}

} // namespace
} // namespace orwick
