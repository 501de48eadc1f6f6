// Reading git's unified diffs: names (quoted, with blanks, renamed, new and deleted), hunks and
// their counts, lines without a final newline, binary files, and input that is cut short or
// isn't a diff at all.

#include "git/UnifiedDiff.h"

#include <gtest/gtest.h>

namespace orwick {
namespace {

using Kind = DiffLine::Kind;

TEST(UnifiedDiff, ReadsFilesHunksAndLines)
{
    const QList<FileDiff> files = parseUnifiedDiff("diff --git a/f.txt b/f.txt\n"
                                                   "index 1111111..2222222 100644\n"
                                                   "--- a/f.txt\n"
                                                   "+++ b/f.txt\n"
                                                   "@@ -1,3 +1,3 @@ int main()\n"
                                                   " a\n"
                                                   "-b\n"
                                                   "+B\n"
                                                   " c\n"
                                                   "@@ -10 +10,0 @@\n"
                                                   "-j\n"
                                                   "diff --git a/g b/g\n"
                                                   "--- a/g\n"
                                                   "+++ b/g\n"
                                                   "@@ -1 +1 @@\n"
                                                   "--- dashes\n"
                                                   "+++ pluses\n");
    ASSERT_EQ(files.size(), 2);
    const FileDiff& f = files[0];
    EXPECT_EQ(f.oldName, "f.txt");
    EXPECT_EQ(f.newName, "f.txt");
    EXPECT_EQ(f.header.size(), 4);
    ASSERT_EQ(f.hunks.size(), 2);
    EXPECT_EQ(f.hunks[0].section, "int main()");
    EXPECT_EQ(f.hunks[0].lines, (QList<DiffLine>{{Kind::context, "a"}, {Kind::removed, "b"}, {Kind::added, "B"},
                                                  {Kind::context, "c"}}));
    EXPECT_EQ(f.hunks[1].oldStart, 10);
    EXPECT_EQ(f.hunks[1].oldCount, 1) << "a missing count is one";
    EXPECT_EQ(f.hunks[1].newCount, 0);
    EXPECT_EQ(f.hunks[1].headerLine(), "@@ -10 +10,0 @@");
    EXPECT_EQ(f.lineCount(), 5);
    // Lines that look like file headers are lines while the hunk's counts aren't met.
    EXPECT_EQ(files[1].hunks[0].lines, (QList<DiffLine>{{Kind::removed, "-- dashes"}, {Kind::added, "++ pluses"}}));
    EXPECT_TRUE(files[1].hunks[0].isComplete);
}

TEST(UnifiedDiff, NamesQuotedWithBlanksRenamedNewAndDeleted)
{
    const QList<FileDiff> files = parseUnifiedDiff("diff --git \"a/t\\tab\\303\\251\" \"b/t\\tab\\303\\251\"\n"
                                                   "new file mode 100644\n"
                                                   "--- /dev/null\n"
                                                   "+++ \"b/t\\tab\\303\\251\"\n"
                                                   "@@ -0,0 +1 @@\n"
                                                   "+x\n"
                                                   "diff --git a/with blank b/with blank\n"
                                                   "deleted file mode 100644\n"
                                                   "--- a/with blank\t\n"
                                                   "+++ /dev/null\n"
                                                   "@@ -1 +0,0 @@\n"
                                                   "-x\n"
                                                   "diff --git a/old b/new\n"
                                                   "similarity index 100%\n"
                                                   "rename from old\n"
                                                   "rename to new\n");
    ASSERT_EQ(files.size(), 3);
    EXPECT_TRUE(files[0].isNew);
    EXPECT_EQ(files[0].newName, "t\tab\xc3\xa9");
    EXPECT_TRUE(files[0].oldName.isEmpty());
    EXPECT_TRUE(files[1].isDeleted);
    EXPECT_EQ(files[1].oldName, "with blank") << "git's tab after a name with blanks is not part of it";
    EXPECT_EQ(files[1].displayName(), "with blank");
    EXPECT_TRUE(files[2].isRename);
    EXPECT_EQ(files[2].oldName, "old");
    EXPECT_EQ(files[2].newName, "new");
    EXPECT_TRUE(files[2].hunks.isEmpty());
}

TEST(UnifiedDiff, NoNewlineMarksTheLineBeforeIt)
{
    const FileDiff file = parseUnifiedDiff("--- a/f\n+++ b/f\n@@ -1 +1,2 @@\n-b\n\\ No newline at end of file\n+b\n+c\n"
                                           "\\ No newline at end of file\n")
                              .value(0);
    ASSERT_EQ(file.hunks.size(), 1);
    const QList<DiffLine>& lines = file.hunks[0].lines;
    ASSERT_EQ(lines.size(), 3);
    EXPECT_FALSE(lines[0].hasNewline);
    EXPECT_TRUE(lines[1].hasNewline);
    EXPECT_FALSE(lines[2].hasNewline);
}

TEST(UnifiedDiff, BinaryFilesHaveNoLines)
{
    const FileDiff file = parseUnifiedDiff("diff --git a/p.png b/p.png\nindex 1..2 100644\n"
                                           "Binary files a/p.png and b/p.png differ\n")
                              .value(0);
    EXPECT_TRUE(file.isBinary);
    EXPECT_EQ(file.newName, "p.png");
    EXPECT_TRUE(file.hunks.isEmpty());
}

TEST(UnifiedDiff, AHunkCutShortIsMarked)
{
    const FileDiff file = parseUnifiedDiff("--- a/f\n+++ b/f\n@@ -1,3 +1,3 @@\n a\n-b\n").value(0);
    ASSERT_EQ(file.hunks.size(), 1);
    EXPECT_FALSE(file.hunks[0].isComplete);
    EXPECT_EQ(file.hunks[0].lines.size(), 2);
}

TEST(UnifiedDiff, WhatIsNotADiffReadsAsNothing)
{
    EXPECT_TRUE(parseUnifiedDiff("").isEmpty());
    EXPECT_TRUE(parseUnifiedDiff("warning: something\nhello\n").isEmpty());
    const FileDiff odd = parseUnifiedDiff("@@ -x +1 @@\n@@ -1 +1 @@\n?\n").value(0);
    ASSERT_EQ(odd.hunks.size(), 1) << "a malformed header is passed over";
    EXPECT_FALSE(odd.hunks[0].isComplete);
}

TEST(UnifiedDiff, UnquotesGitPaths)
{
    EXPECT_EQ(unquoteGitPath("plain name"), "plain name");
    EXPECT_EQ(unquoteGitPath("\"a\\\"b\\\\c\\nd\\377\""), QByteArray("a\"b\\c\nd\xff"));
    EXPECT_EQ(unquoteGitPath("\"\""), "");
    EXPECT_EQ(unquoteGitPath("\"unfinished\\\""), "unfinished\\");
}

} // namespace
} // namespace orwick
