#include "base/FilePath.h"

#include <gtest/gtest.h>

using orwick::FilePath;

TEST(FilePath, StandardizesLexically)
{
    EXPECT_EQ(FilePath::fromNative("/a//b/./c/../d/").native(), "/a/b/d");
    EXPECT_EQ(FilePath::fromNative("/..").native(), "/");
    EXPECT_TRUE(FilePath::fromNative("///").isRoot());
    EXPECT_EQ(FilePath::fromText("~/x").native(), qgetenv("HOME") + "/x");
    // Paths standard already are taken as they are; names that only begin with dots are names.
    EXPECT_EQ(FilePath::fromNative("/a/.b/..c/...").native(), "/a/.b/..c/...");
    EXPECT_EQ(FilePath::fromNative("/a/b/").native(), "/a/b");
    EXPECT_EQ(FilePath::fromNative("/a/b/.").native(), "/a/b");
    EXPECT_EQ(FilePath::fromNative("/a").child(QByteArrayView("b/../c")).native(), "/a/c");
    EXPECT_EQ(FilePath::fromNative("/a").child(QByteArrayView("b//c/")).native(), "/a/b/c");
    EXPECT_EQ(FilePath::fromNative("/").child(QByteArrayView("x")).native(), "/x");
}

TEST(FilePath, KeepsBytesThatAreNotUtf8)
{
    const QByteArray name("caf\xe9 \xff.txt");
    const FilePath path = FilePath::fromNative("/tmp").child(QByteArrayView(name));
    EXPECT_EQ(path.fileNameBytes(), name);
    EXPECT_EQ(path.extension(), "txt");
    EXPECT_TRUE(path.fileName().contains(QChar(0xFFFD)));
    // A URL round trip keeps every byte.
    EXPECT_EQ(FilePath::fromUrl(path.toUrl()), path);
}

TEST(FilePath, ParentsChildrenAndContainment)
{
    const FilePath a = FilePath::fromNative("/home/u/a");
    EXPECT_EQ(a.parent().native(), "/home/u");
    EXPECT_EQ(FilePath::fromNative("/x").parent().native(), "/");
    EXPECT_TRUE(a.contains(FilePath::fromNative("/home/u/a/b")));
    EXPECT_FALSE(a.contains(FilePath::fromNative("/home/u/ab")));
    EXPECT_TRUE(FilePath::fromNative("/").isAncestorOf(a));
    EXPECT_FALSE(a.isAncestorOf(a));
    EXPECT_EQ(FilePath::fromNative("/a/.bashrc").extension(), "");
    EXPECT_EQ(FilePath::fromNative("/a/X.TS").extension(), "ts");
    EXPECT_EQ(FilePath::fromText("~/Projects/site").abbreviated(), "~/Projects/site");
}

TEST(FilePath, RowsShowControlCharactersVisiblyWhileTextStaysFaithful)
{
    const FilePath path = FilePath::fromNative("/tmp").child(QByteArrayView("two\nlines"));
    EXPECT_EQ(path.fileName(), QString("two\nlines")); // text that reaches the file again
    EXPECT_EQ(orwick::visibleName(path.fileNameBytes()), QString::fromUtf8("two\u240Alines"));
}

TEST(FilePath, RowsNeverLetANameReorderOrBreakTheText)
{
    // A right-to-left override would show "invoice\u202Egpj.exe" as "invoiceexe.jpg".
    const QString spoof = orwick::visibleName(QStringLiteral("invoice\u202Egpj.exe").toUtf8());
    EXPECT_EQ(spoof, QStringLiteral("invoice\uFFFDgpj.exe"));
    for (const char16_t control : {u'\u202A', u'\u202B', u'\u202C', u'\u202D', u'\u2066', u'\u2067', u'\u2068', u'\u2069',
                                   u'\u200E', u'\u200F', u'\u061C', u'\u2028', u'\u2029', u'\u0085', u'\u007F'}) {
        const QString shown = orwick::visibleName((QStringLiteral("a") + QChar(control) + QStringLiteral("b")).toUtf8());
        EXPECT_EQ(shown.size(), 3);
        EXPECT_NE(shown[1], QChar(control)) << int(control);
        EXPECT_FALSE(shown[1].category() == QChar::Other_Format || shown[1].category() == QChar::Other_Control)
            << int(control);
    }
    EXPECT_EQ(orwick::visibleName("tab\there"), QStringLiteral("tab\u2409here"));
    // Right-to-left letters themselves stay: only the formatting characters go.
    EXPECT_EQ(orwick::visibleName(QStringLiteral("\u05E9\u05DC\u05D5\u05DD.txt").toUtf8()),
              QStringLiteral("\u05E9\u05DC\u05D5\u05DD.txt"));
}
