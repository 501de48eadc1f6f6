// The text loader: first parts of large files, encodings, line ends, binary files, files that
// go away, and cancellation.

#include "preview/PreviewLoader.h"
#include "preview/TextDecoding.h"
#include "support/TempHome.h"

#include <QFile>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace orwick;
using Kind = PreviewContent::Kind;

namespace {

PreviewContent load(const FilePath& path, PreviewLimits limits = {})
{
    CancelFlag cancel;
    return loadPreview({path, {800, 800}, Qt::black, limits}, cancel);
}

} // namespace

TEST(TextPreview, SmallFilesShowTheirTextWithTheirNote)
{
    test::TempTree tree;
    const struct {
        const char* name;
        QByteArray bytes;
        qint64 textBytes; // 0: the usual limit
        QString text, note;
    } rows[] = {
        {"main.py", "print('hi')\n", 0, "print('hi')\n", ""},
        {"old.txt", "caf\xe9 cr\xe8me\n", 0, "café crème\n", "Not UTF-8: shown as Latin-1"},
        // "aé" is 3 bytes, "€" 3 more: the limit cuts inside the euro sign, which is no encoding error.
        {"cut.txt", "a\xc3\xa9\xe2\x82\xac", 4, "aé", "Showing the first 4 bytes of 6 bytes"},
        // CRLF, a lone CR and the byte-order mark.
        {"dos.txt", "\xef\xbb\xbfone\r\ntwo\rthree\n", 0, "one\ntwo\nthree\n", ""},
        {"empty.txt", "", 0, "", "Empty file"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        PreviewLimits limits;
        if (row.textBytes)
            limits.textBytes = row.textBytes;
        const PreviewContent content = load(tree.file(row.name, row.bytes), limits);
        EXPECT_EQ(content.kind, Kind::text);
        EXPECT_EQ(content.text, row.text);
        EXPECT_EQ(content.note, row.note) << content.note.toStdString();
        EXPECT_EQ(content.title, row.name);
    }
    EXPECT_EQ(load(tree.path("main.py")).language, "main.py");
}

TEST(TextPreview, WhatCantBeShownSaysWhyAndAFifoIsNeverRead)
{
    test::TempTree tree;
    const PreviewContent gone = load(tree.path("gone.txt"));
    EXPECT_EQ(gone.kind, Kind::message);
    EXPECT_EQ(gone.message, "Can’t read “gone.txt”: it isn’t there any more.");
    const PreviewContent broken = load(tree.link("dangling", "nowhere"));
    EXPECT_EQ(broken.kind, Kind::message);
    EXPECT_EQ(broken.message, "“dangling” is a broken link.");
    const FilePath fifo = tree.path("pipe");
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_EQ(load(fifo).kind, Kind::details); // would block forever if it were read
    CancelFlag cancel;
    cancel.cancel();
    EXPECT_EQ(loadPreview({tree.file("a.txt", "text"), {800, 800}, Qt::black, {}}, cancel).kind, Kind::none);
}

TEST(TextPreview, ReadsOnlyTheFirstPartOfALargeFileAndSaysSo)
{
    test::TempTree tree;
    const FilePath big = tree.file("big.log", QByteArray());
    QFile file(big.text());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const QByteArray line(99, 'x');
    for (int i = 0; i < 30000; ++i)
        file.write(line + '\n'); // 3 MB
    file.close();
    PreviewLimits limits;
    limits.textBytes = 64 * 1024;
    const PreviewContent content = load(big, limits);
    ASSERT_EQ(content.kind, Kind::text);
    EXPECT_EQ(content.text.size(), 64 * 1024);
    EXPECT_EQ(content.note, "Showing the first 66 kB of 3 MB");
}

TEST(TextPreview, AVeryLongSingleLineIsCutAndBounded)
{
    test::TempTree tree;
    const FilePath one = tree.file("one-line.json", QByteArray());
    QFile file(one.text());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const QByteArray chunk(1024 * 1024, 'a');
    for (int i = 0; i < 50; ++i)
        file.write(chunk); // one 50 MB line
    file.close();
    const PreviewContent content = load(one);
    ASSERT_EQ(content.kind, Kind::text);
    EXPECT_EQ(content.text.size(), PreviewLimits{}.lineChars + 1) << "cut, with an ellipsis";
    EXPECT_TRUE(content.text.endsWith(QChar(0x2026)));
    EXPECT_TRUE(content.note.contains("Showing the first 524 kB of 52 MB")) << content.note.toStdString();
    EXPECT_TRUE(content.note.contains("Lines longer than 4,000 characters are cut")) << content.note.toStdString();
}

TEST(TextPreview, NulBytesMakeAHexDump)
{
    test::TempTree tree;
    QByteArray bytes("\x7f" "ELF\0\0\1\2", 8);
    bytes += QByteArray(10000, '\0');
    const PreviewContent content = load(tree.file("program", bytes));
    ASSERT_EQ(content.kind, Kind::hex);
    EXPECT_TRUE(content.text.startsWith("00000000  7f 45 4c 46 00 00 01 02  00 00 00 00 00 00 00 00  |.ELF............|\n"))
        << content.text.left(100).toStdString();
    EXPECT_EQ(content.text.count(u'\n'), 4096 / 16);
    EXPECT_EQ(content.note, "Showing the first 4.1 kB of 10 kB");
}

TEST(TextPreview, HexDumpPadsAShortLastRow)
{
    EXPECT_EQ(preview::hexDump("AB", 16), "00000010  41 42                                             |AB|\n");
}

