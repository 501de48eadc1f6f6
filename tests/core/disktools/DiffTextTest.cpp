#include "DiskTestSupport.h"
#include "disktools/DiffText.h"

#include <QProcess>
#include <gtest/gtest.h>

using namespace orwick;
using namespace orwick::test;
using DiffText::Kind;

TEST(DiffText, KindsOfLines)
{
    EXPECT_EQ(DiffText::kind(u"--- a.txt"), Kind::file);
    EXPECT_EQ(DiffText::kind(u"+++ b.txt"), Kind::file);
    EXPECT_EQ(DiffText::kind(u"@@ -1,3 +1,3 @@"), Kind::hunk);
    EXPECT_EQ(DiffText::kind(u"+new"), Kind::added);
    EXPECT_EQ(DiffText::kind(u"-old"), Kind::removed);
    EXPECT_EQ(DiffText::kind(u" same"), Kind::context);
    EXPECT_EQ(DiffText::kind(u"Only the first 2 MB of each file are compared."), Kind::note);
}

TEST(DiffText, EqualTextsGiveNoDiff)
{
    EXPECT_TRUE(DiffText::unified({"a", "b"}, {"a", "b"}, "l", "r").isEmpty());
}

TEST(DiffText, OneChangedLineWithContext)
{
    QStringList left, right;
    for (int i = 1; i <= 10; ++i)
        left << QString::number(i);
    right = left;
    right[4] = "five";
    EXPECT_EQ(DiffText::unified(left, right, "l", "r"),
              "--- l\n+++ r\n@@ -2,7 +2,7 @@\n 2\n 3\n 4\n-5\n+five\n 6\n 7\n 8\n");
}

TEST(DiffText, MatchesDiffUnifiedOnRealFiles)
{
    // The hunks agree with GNU diff -u, header lines aside.
    TempTree tree;
    QByteArray a, b;
    for (int i = 0; i < 200; ++i) {
        a += "line " + QByteArray::number(i) + "\n";
        if (i % 37 == 5)
            b += "changed " + QByteArray::number(i) + "\n";
        else if (i % 53 == 7)
            continue;
        else
            b += "line " + QByteArray::number(i) + "\n";
        if (i % 71 == 3)
            b += "inserted\n";
    }
    const FilePath left = tree.file("a.txt", a);
    const FilePath right = tree.file("b.txt", b);
    const auto diff = DiffText::diffFiles(left, right);
    ASSERT_TRUE(diff);
    QProcess gnu;
    gnu.start("diff", {"-u", left.text(), right.text()});
    if (!gnu.waitForFinished())
        GTEST_SKIP() << "diff isn't installed here";
    auto body = [](const QString& text) { return text.split('\n').mid(2); };
    EXPECT_EQ(body(diff->diff), body(QString::fromUtf8(gnu.readAllStandardOutput())));
}

TEST(DiffText, FromEmptyAndToEmpty)
{
    EXPECT_EQ(DiffText::unified({}, {"a", "b"}, "l", "r"), "--- l\n+++ r\n@@ -0,0 +1,2 @@\n+a\n+b\n");
    EXPECT_EQ(DiffText::unified({"a"}, {}, "l", "r"), "--- l\n+++ r\n@@ -1 +0,0 @@\n-a\n");
}

TEST(DiffText, BinaryOrUnreadableIsNoTextDiff)
{
    TempTree tree;
    const FilePath text = tree.file("a.txt", "a\n");
    const FilePath binary = tree.file("b.bin", QByteArray("a\0b", 3));
    EXPECT_FALSE(DiffText::diffFiles(text, binary));
    EXPECT_FALSE(DiffText::diffFiles(text, tree.path("missing")));
    const auto same = DiffText::diffFiles(text, text);
    ASSERT_TRUE(same);
    EXPECT_TRUE(same->diff.isEmpty());
    EXPECT_FALSE(same->emptyMessage.isEmpty());
}

TEST(DiffText, HugeFilesDiffTheirFirstPartThenANote)
{
    TempTree tree;
    QByteArray a;
    while (a.size() < DiffText::kMaxBytes + 1000)
        a += "some line of text that repeats\n";
    QByteArray b = a;
    b.replace(0, 4, "SOME");
    const auto diff = DiffText::diffFiles(tree.file("a", a), tree.file("b", b));
    ASSERT_TRUE(diff);
    EXPECT_TRUE(diff->diff.contains("-some line"));
    const QStringList lines = diff->diff.trimmed().split('\n');
    EXPECT_EQ(DiffText::kind(lines.last()), Kind::note);
}

TEST(DiffText, FarApartTextsStillDiff)
{
    QStringList left, right;
    for (int i = 0; i < 3000; ++i) {
        left << "l" + QString::number(i);
        right << "r" + QString::number(i);
    }
    const QString diff = DiffText::unified(left, right, "l", "r");
    EXPECT_EQ(diff.count("\n-"), 3000);
    EXPECT_EQ(diff.count("\n+"), 3000 + 1); // and the "+++" line
}

TEST(DiffText, SideBySideRowsAndChangedWords)
{
    const auto rows = DiffText::sideBySide({"a", "b", "c"}, {"a", "B", "c", "d"});
    ASSERT_EQ(rows.size(), 4u);
    EXPECT_FALSE(rows[0].differs);
    EXPECT_TRUE(rows[1].differs);
    EXPECT_EQ(rows[1].left, 1);
    EXPECT_EQ(rows[1].right, 1);
    EXPECT_FALSE(rows[3].left);
    EXPECT_EQ(rows[3].right, 3);
    const auto [l, r] = DiffText::changedWords("int count = 1;", "int total = 2;");
    EXPECT_EQ(l, (DiffText::Ranges{{4, 5}, {12, 1}}));
    EXPECT_EQ(r, (DiffText::Ranges{{4, 5}, {12, 1}}));
}
