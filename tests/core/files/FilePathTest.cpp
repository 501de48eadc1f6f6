#include "files/FilePath.h"

#include <gtest/gtest.h>

using orwick::FilePath;

TEST(FilePath, StandardizesLexically)
{
    EXPECT_EQ(FilePath::fromNative("/a//b/./c/../d/").native(), "/a/b/d");
    EXPECT_EQ(FilePath::fromNative("/..").native(), "/");
    EXPECT_TRUE(FilePath::fromNative("///").isRoot());
    EXPECT_EQ(FilePath::fromText("~/x").native(), qgetenv("HOME") + "/x");
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
