// Patches of picked lines against the real git: each diff comes from `git diff` in a temporary
// repository, each patch built from it must pass `git apply --check` (with --cached and
// --reverse as the review uses them) and, applied, leave exactly the expected bytes in the index
// or the working tree.

#include "support/GitTestRepo.h"
#include "git/DiffPatch.h"

#include <gtest/gtest.h>

namespace orwick {
namespace {

using test::GitTestRepo;
using test::TempTree;

class DiffPatchTest : public ::testing::Test {
protected:
    // The one file of the diff git prints for `arguments`.
    FileDiff diffOf(const QStringList& arguments)
    {
        const QList<FileDiff> files = parseUnifiedDiff(repo.git(QStringList{"diff", "--no-color"} + arguments));
        EXPECT_EQ(files.size(), 1) << repo.git(QStringList{"diff"} + arguments).toStdString();
        return files.value(0);
    }
    // The lines written as in the diff ("+new", "-old"), each the first such line of the file.
    static DiffLineSelection pick(const FileDiff& file, const QList<QByteArray>& written)
    {
        DiffLineSelection selection;
        for (const QByteArray& wanted : written) {
            bool found = false;
            for (int h = 0; h < file.hunks.size() && !found; ++h)
                for (int i = 0; i < file.hunks[h].lines.size() && !found; ++i) {
                    const DiffLine& line = file.hunks[h].lines[i];
                    if (char(line.kind) + line.text == wanted && !selection.contains({h, i})) {
                        selection.insert({h, i});
                        found = true;
                    }
                }
            EXPECT_TRUE(found) << "no line " << wanted.toStdString();
        }
        return selection;
    }
    // Checks the patch with `git apply --check`, then applies it the same way.
    void apply(const QByteArray& patch, const QStringList& options)
    {
        ASSERT_FALSE(patch.isEmpty());
        const FilePath file = tree.file(QStringLiteral("patch-%1.diff").arg(++patches), patch);
        const QByteArray check = repo.git(QStringList{"apply", "--check"} + options + QStringList{file.text()}, true);
        ASSERT_TRUE(check.isEmpty()) << check.toStdString() << "\n" << patch.toStdString();
        repo.git(QStringList{"apply"} + options + QStringList{file.text()});
    }
    QByteArray staged(const QString& name) { return repo.git({"show", ":" + name}); }
    QByteArray onDisk(const QString& name) { return test::readAll(repo.path(name)); }

    TempTree tree;
    GitTestRepo repo{tree};
    int patches = 0;
};

const QByteArray kTwelve = "1\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\n12\n";

// One file per row: committed as `base`, changed to `changed` (and staged when `fromIndex`),
// then the picked lines (or the one hunk) staged, or unstaged when `fromIndex`.
struct PickRow {
    const char* name;
    QByteArray base, changed;
    bool fromIndex;
    int hunk; // -1: the picked lines instead
    QList<QByteArray> picks;
    QByteArray staged;
};

TEST_F(DiffPatchTest, StagesAndUnstagesWhatIsPicked)
{
    const PickRow rows[] = {
        {"first-hunk.txt", kTwelve, "one\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\ntwelve\n", false, 0, {},
         "one\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\n12\n"},
        {"some-added.txt", "a\nb\n", "a\nx\ny\nz\nb\n", false, -1, {"+y"}, "a\ny\nb\n"},
        {"some-removed.txt", "a\nb\nc\nd\n", "a\nd\n", false, -1, {"-c"}, "a\nb\nd\n"},
        {"removal-alone.txt", "a\nold\nb\n", "a\nnew\nb\n", false, -1, {"-old"}, "a\nb\n"},
        {"crlf.txt", "a\r\nb\r\nc\r\n", "a\r\nB\r\nc\r\nd\r\n", false, -1, {"-b\r", "+B\r"}, "a\r\nB\r\nc\r\n"},
        {"unstage-one.txt", kTwelve, "0\n" + kTwelve + "13\n", true, -1, {"+13"}, "0\n" + kTwelve},
    };
    for (const PickRow& row : rows)
        repo.write(row.name, row.base);
    repo.commitAll("base");
    for (const PickRow& row : rows) {
        repo.write(row.name, row.changed);
        if (row.fromIndex)
            repo.git({"add", row.name});
    }
    for (const PickRow& row : rows) {
        SCOPED_TRACE(row.name);
        const FileDiff file = diffOf(row.fromIndex ? QStringList{"--cached", "--", row.name} : QStringList{"--", row.name});
        const DiffLineSelection picked = row.hunk >= 0 ? hunkSelection(file, row.hunk) : pick(file, row.picks);
        if (row.fromIndex)
            apply(buildPatch(file, picked, PatchDirection::reverse), {"--cached", "--reverse"});
        else
            apply(buildPatch(file, picked, PatchDirection::forward), {"--cached"});
        EXPECT_EQ(staged(row.name), row.staged);
    }
    // What is left to stage is the rest, and it stages too.
    const FileDiff rest = diffOf({"--", "some-added.txt"});
    apply(buildPatch(rest, wholeFileSelection(rest), PatchDirection::forward), {"--cached"});
    EXPECT_EQ(staged("some-added.txt"), "a\nx\ny\nz\nb\n");
}

TEST_F(DiffPatchTest, StagesOnlyTheLastHunkAfterTheFirstGrewTheFile)
{
    repo.write("f.txt", kTwelve);
    repo.commitAll("base");
    repo.write("f.txt", "0a\n0b\n1\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\n12\n13\n");
    const FileDiff file = diffOf({"--", "f.txt"});
    ASSERT_EQ(file.hunks.size(), 2);
    // The last hunk's new side starts two lines later than its old side; the patch renumbers it.
    const QByteArray patch = buildPatch(file, hunkSelection(file, 1), PatchDirection::forward);
    EXPECT_TRUE(patch.contains("@@ -10,3 +10,4 @@")) << patch.toStdString();
    apply(patch, {"--cached"});
    EXPECT_EQ(staged("f.txt"), kTwelve + "13\n");
}

TEST_F(DiffPatchTest, UnstagesTheFirstAndTheLastHunkApart)
{
    repo.write("f.txt", kTwelve);
    repo.commitAll("base");
    repo.write("f.txt", "one\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\ntwelve\n");
    repo.git({"add", "f.txt"});
    const FileDiff file = diffOf({"--cached", "--", "f.txt"});
    ASSERT_EQ(file.hunks.size(), 2);
    apply(buildPatch(file, hunkSelection(file, 1), PatchDirection::reverse), {"--cached", "--reverse"});
    EXPECT_EQ(staged("f.txt"), "one\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\n12\n");
    const FileDiff left = diffOf({"--cached", "--", "f.txt"});
    apply(buildPatch(left, hunkSelection(left, 0), PatchDirection::reverse), {"--cached", "--reverse"});
    EXPECT_EQ(staged("f.txt"), kTwelve);
    EXPECT_EQ(onDisk("f.txt"), "one\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\ntwelve\n") << "unstaging keeps the working tree";
}

TEST_F(DiffPatchTest, DiscardsPickedLinesFromTheWorkingTree)
{
    repo.write("f.txt", "a\nb\nc\n");
    repo.commitAll("base");
    repo.write("f.txt", "a\nB\nc\nd\n");
    const FileDiff file = diffOf({"--", "f.txt"});
    apply(buildPatch(file, pick(file, {"+d"}), PatchDirection::reverse), {"--reverse"});
    EXPECT_EQ(onDisk("f.txt"), "a\nB\nc\n");
    const FileDiff left = diffOf({"--", "f.txt"});
    apply(buildPatch(left, pick(left, {"-b"}), PatchDirection::reverse), {"--reverse"});
    EXPECT_EQ(onDisk("f.txt"), "a\nb\nB\nc\n") << "the removed line comes back, the added one stays";
}

TEST_F(DiffPatchTest, AFileWithoutAFinalNewline)
{
    repo.write("f.txt", "a\nb");
    repo.commitAll("base");
    repo.write("f.txt", "a\nb\nc");
    const FileDiff file = diffOf({"--", "f.txt"});
    ASSERT_EQ(file.hunks.size(), 1);
    ASSERT_FALSE(file.hunks[0].lines.last().hasNewline);

    // Only the new last line: "b" can't stay last without a newline, so it gains one.
    apply(buildPatch(file, pick(file, {"+c"}), PatchDirection::forward), {"--cached"});
    EXPECT_EQ(staged("f.txt"), "a\nb\nc");
    repo.git({"reset", "-q"});
    // Only the newline after "b".
    apply(buildPatch(file, pick(file, {"-b", "+b"}), PatchDirection::forward), {"--cached"});
    EXPECT_EQ(staged("f.txt"), "a\nb\n");
    repo.git({"reset", "-q"});
    // Only the removal of the old last line.
    apply(buildPatch(file, pick(file, {"-b"}), PatchDirection::forward), {"--cached"});
    EXPECT_EQ(staged("f.txt"), "a\n");
}

TEST_F(DiffPatchTest, UnstagingAndDiscardingAroundAMissingFinalNewline)
{
    repo.write("f.txt", "a\nb");
    repo.commitAll("base");
    repo.write("f.txt", "a\nb\nc");
    repo.git({"add", "f.txt"});
    const FileDiff file = diffOf({"--cached", "--", "f.txt"});
    // Taking the old "b" back out leaves the new ones, and the old "b" gains a newline there.
    apply(buildPatch(file, pick(file, {"-b"}), PatchDirection::reverse), {"--cached", "--reverse"});
    EXPECT_EQ(staged("f.txt"), "a\nb\nb\nc");

    repo.write("g.txt", "x\ny\n");
    repo.commitAll("g");
    repo.write("g.txt", "x\ny\nz");
    const FileDiff g = diffOf({"--", "g.txt"});
    apply(buildPatch(g, pick(g, {"+z"}), PatchDirection::reverse), {"--reverse"});
    EXPECT_EQ(onDisk("g.txt"), "x\ny\n");
}

TEST_F(DiffPatchTest, ARenamedFile)
{
    repo.write("old name.txt", "a\nb\nc\nd\ne\nf\ng\n");
    repo.commitAll("base");
    repo.git({"mv", "old name.txt", "new name.txt"});
    repo.write("new name.txt", "a\nb\nc\nd\ne\nf\ng\nh\ni\n");
    repo.git({"add", "new name.txt"});
    const FileDiff file = diffOf({"--cached", "-M", "--", "old name.txt", "new name.txt"});
    ASSERT_TRUE(file.isRename);
    EXPECT_EQ(file.oldName, "old name.txt");
    EXPECT_EQ(file.newName, "new name.txt");

    // Part of it: the rename stays staged, the line comes out.
    apply(buildPatch(file, pick(file, {"+i"}), PatchDirection::reverse), {"--cached", "--reverse"});
    EXPECT_EQ(staged("new name.txt"), "a\nb\nc\nd\ne\nf\ng\nh\n");
    // All of it: the rename goes too.
    const FileDiff left = diffOf({"--cached", "-M", "--", "old name.txt", "new name.txt"});
    apply(buildPatch(left, wholeFileSelection(left), PatchDirection::reverse), {"--cached", "--reverse"});
    EXPECT_EQ(staged("old name.txt"), "a\nb\nc\nd\ne\nf\ng\n");
    EXPECT_TRUE(repo.git({"ls-files", "--cached", "new name.txt"}).isEmpty());
}

TEST_F(DiffPatchTest, PartOfANewFile)
{
    repo.write("base.txt", "x\n");
    repo.commitAll("base");
    // Staging part of a file git knows only by name.
    repo.write("n.txt", "a\nb\nc\n");
    repo.git({"add", "-N", "n.txt"});
    const FileDiff file = diffOf({"--", "n.txt"});
    ASSERT_TRUE(file.isNew);
    apply(buildPatch(file, pick(file, {"+a", "+c"}), PatchDirection::forward), {"--cached"});
    EXPECT_EQ(staged("n.txt"), "a\nc\n");
    // Unstaging part of a new file keeps the file in the index.
    const FileDiff added = diffOf({"--cached", "--", "n.txt"});
    apply(buildPatch(added, pick(added, {"+a"}), PatchDirection::reverse), {"--cached", "--reverse"});
    EXPECT_EQ(staged("n.txt"), "c\n");
}

TEST_F(DiffPatchTest, PartOfADeletedFile)
{
    repo.write("gone.txt", "a\nb\nc\n");
    repo.commitAll("base");
    repo.git({"rm", "-q", "gone.txt"});
    const FileDiff file = diffOf({"--cached", "--", "gone.txt"});
    ASSERT_TRUE(file.isDeleted);
    // Unstaging some of the removed lines brings the file back to the index with just those.
    apply(buildPatch(file, pick(file, {"-b"}), PatchDirection::reverse), {"--cached", "--reverse"});
    EXPECT_EQ(staged("gone.txt"), "b\n");
}

TEST_F(DiffPatchTest, NothingPickedMakesNoPatch)
{
    repo.write("f.txt", "a\n");
    repo.commitAll("base");
    repo.write("f.txt", "b\n");
    const FileDiff file = diffOf({"--", "f.txt"});
    EXPECT_TRUE(buildPatch(file, {}, PatchDirection::forward).isEmpty());
    EXPECT_TRUE(buildPatch(file, {{0, 99}, {5, 0}}, PatchDirection::forward).isEmpty()) << "places that aren't lines";
    FileDiff cut = file;
    cut.hunks[0].isComplete = false;
    EXPECT_TRUE(buildPatch(cut, wholeFileSelection(cut), PatchDirection::forward).isEmpty()) << "a hunk cut short";
}

TEST_F(DiffPatchTest, AWholePickIsGitsOwnPatch)
{
    repo.write("f.txt", kTwelve);
    repo.commitAll("base");
    repo.write("f.txt", "one\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\ntwelve\n");
    const QByteArray diff = repo.git({"diff", "--no-color", "--", "f.txt"});
    const FileDiff file = parseUnifiedDiff(diff).value(0);
    EXPECT_EQ(buildPatch(file, wholeFileSelection(file), PatchDirection::forward), diff);
    EXPECT_EQ(buildPatch(file, wholeFileSelection(file), PatchDirection::reverse), diff);
}

} // namespace
} // namespace orwick
