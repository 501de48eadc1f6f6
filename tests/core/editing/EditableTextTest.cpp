// A file's bytes as the editor's text and back: what isn't edited comes back byte for byte (a
// byte-order mark, CRLF line ends), and a file that couldn't come back so is read-only with a
// sentence that says why.

#include "editing/EditableText.h"

#include <gtest/gtest.h>

using namespace orwick;
using namespace orwick::editing;

TEST(EditableText, UnchangedTextGivesBackTheSameBytes)
{
    const QByteArray files[] = {
        "plain\nlines\n",
        "no final break",
        "\xEF\xBB\xBF# with a mark\r\nand CRLF\r\n",
        "",
        "caf\xC3\xA9 \xE2\x80\x94 \xF0\x9F\x93\x9D\n",
        "non\xC2\xA0" "breaking space\n",
        "\xEF\xBB\xBF\xEF\xBB\xBF" "two marks",
        "\xEF\xBB\xBF" "mark only at the start",
    };
    for (const QByteArray& bytes : files) {
        const Result<EditableText> text = decodeForEditing(bytes, QStringLiteral("a.md"));
        ASSERT_TRUE(text) << bytes.toStdString();
        EXPECT_TRUE(text->readOnlyReason.isEmpty()) << bytes.toStdString();
        EXPECT_FALSE(text->text.contains(u'\r'));
        EXPECT_EQ(encodeEdited(text->text, text->form), bytes);
    }
}

TEST(EditableText, AnEditKeepsTheFilesLineEndsAndMark)
{
    const Result<EditableText> text = decodeForEditing("\xEF\xBB\xBF" "a\r\nb\r\n", QStringLiteral("a.md"));
    ASSERT_TRUE(text);
    EXPECT_EQ(text->text, QStringLiteral("a\nb\n"));
    EXPECT_EQ(encodeEdited(QStringLiteral("a\nnew\nb\n"), text->form), QByteArray("\xEF\xBB\xBF" "a\r\nnew\r\nb\r\n"));
}

TEST(EditableText, MixedLineEndsAreSaidBeforeASaveEvensThemOut)
{
    const Result<EditableText> text = decodeForEditing("a\r\nb\r\nc\n", QStringLiteral("a.md"));
    ASSERT_TRUE(text);
    EXPECT_TRUE(text->form.mixedEndings);
    EXPECT_EQ(text->note, QStringLiteral("Mixed line ends: saving writes CRLF everywhere"));
    EXPECT_EQ(encodeEdited(text->text, text->form), QByteArray("a\r\nb\r\nc\r\n"));
}

TEST(EditableText, WhatCouldntComeBackByteForByteIsReadOnlyAndANulIsNoText)
{
    const Result<EditableText> latin = decodeForEditing("caf\xE9 au lait\n", QStringLiteral("latin.md"));
    ASSERT_TRUE(latin);
    EXPECT_EQ(latin->text, QStringLiteral("café au lait\n"));
    EXPECT_EQ(latin->readOnlyReason,
              QStringLiteral("“latin.md” isn’t UTF-8 text, so it is open read-only: saving it here would change its bytes."));
    // Line breaks a view would change.
    for (const QByteArray& bytes : {QByteArray("old\rmac\r"), QByteArray("para\xE2\x80\xA9graph")}) {
        const Result<EditableText> text = decodeForEditing(bytes, QStringLiteral("odd.txt"));
        ASSERT_TRUE(text);
        EXPECT_EQ(text->readOnlyReason, QStringLiteral("“odd.txt” has line breaks the editor would change, so it is open read-only."));
    }
    const Result<EditableText> blob = decodeForEditing(QByteArray("a\0b", 3), QStringLiteral("blob.dat"));
    ASSERT_FALSE(blob);
    EXPECT_EQ(blob.error(), QStringLiteral("“blob.dat” isn’t a text file."));
}
