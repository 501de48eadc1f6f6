// The porcelain reader on its own: branch lines, record kinds, ignored paths. Real git output is
// covered in RepoStatusTest; these are the records that are hard to make git print on demand.

#include "git/RepoStatus.h"

#include <gtest/gtest.h>

namespace orwick {
namespace {

const FilePath root = FilePath::fromNative("/work/repo");

QString records(std::initializer_list<const char*> parts)
{
    QString joined;
    for (const char* part : parts)
        joined += QString::fromUtf8(part) + QChar(u'\0');
    return joined;
}

TEST(ParseBranch, ReadsNameAndCounts)
{
    struct Row {
        const char* line;
        const char* branch;
        int ahead, behind;
    };
    const Row rows[] = {
        {"## No commits yet on main", "main", 0, 0},
        {"## main", "main", 0, 0},
        {"## main...origin/main", "main", 0, 0},
        {"## main...origin/main [ahead 2, behind 1]", "main", 2, 1},
        {"## feature/x...origin/feature/x [behind 13]", "feature/x", 0, 13},
        {"## topic...up/topic [gone]", "topic", 0, 0},
        {"## HEAD (no branch)", "HEAD", 0, 0},
        {"## behind...origin/behind [ahead 3]", "behind", 3, 0},
        {"## ahead...origin/ahead [ahead 12, behind 7]", "ahead", 12, 7},
    };
    for (const Row& row : rows) {
        const BranchLine line = parseBranch(QString::fromUtf8(row.line));
        EXPECT_EQ(line.branch, QString::fromUtf8(row.branch)) << row.line;
        EXPECT_EQ(line.ahead, row.ahead) << row.line;
        EXPECT_EQ(line.behind, row.behind) << row.line;
    }
}

TEST(ParseStatus, KindsAndFlagsFollowTheTwoLetters)
{
    const RepoStatus status = parseStatus(
        records({"## main", " M a/b/a.txt", "MM both.txt", "?? b.txt", "A  new.txt", " D gone.txt", "D  staged-gone.txt",
                 "UU u.txt", "AA aa.txt", "DD dd.txt", "AU au.txt", "R  renamed.txt", "old.txt", "C  copy.txt", "orig.txt",
                 "T  typechange.txt"}),
        root);
    struct Row {
        QString path;
        Change change;
        bool staged, unstaged;
    };
    const QList<Row> expected = {
        {"a/b/a.txt", Change::modified, false, true},       {"both.txt", Change::modified, true, true},
        {"b.txt", Change::untracked, false, true},      {"new.txt", Change::added, true, false},
        {"gone.txt", Change::deleted, false, true},     {"staged-gone.txt", Change::deleted, true, false},
        {"u.txt", Change::conflicted, true, true},      {"aa.txt", Change::conflicted, true, true},
        {"dd.txt", Change::conflicted, true, true},     {"au.txt", Change::conflicted, true, true},
        {"renamed.txt", Change::renamed, true, false},  {"copy.txt", Change::renamed, true, false},
        {"typechange.txt", Change::modified, true, false},
    };
    ASSERT_EQ(status.files.size(), expected.size());
    for (const Row& row : expected) {
        const auto file = std::find_if(status.files.begin(), status.files.end(), [&](const auto& f) { return f.path == row.path; });
        ASSERT_NE(file, status.files.end()) << row.path.toStdString();
        EXPECT_EQ(file->change, row.change) << row.path.toStdString();
        EXPECT_EQ(file->isStaged, row.staged) << row.path.toStdString();
        EXPECT_EQ(file->hasUnstaged, row.unstaged) << row.path.toStdString();
        EXPECT_EQ(status.changedPaths.value(root.child(row.path)), row.change);
    }
    // Every folder between a change and the root, the root excluded.
    EXPECT_EQ(status.foldersWithChanges, (QSet<FilePath>{root.child(QStringLiteral("a")), root.child(QStringLiteral("a/b"))}));
    // The sources of renames and copies are consumed, not listed.
    EXPECT_FALSE(status.changedPaths.contains(root.child(QStringLiteral("old.txt"))));
    EXPECT_FALSE(status.changedPaths.contains(root.child(QStringLiteral("orig.txt"))));
}

TEST(ParseStatus, FilesAreSortedNaturally)
{
    const RepoStatus status = parseStatus(records({"?? file10", "?? File2", "?? b/a", "?? a"}), root);
    QStringList paths;
    for (const auto& file : status.files)
        paths << file.path;
    EXPECT_EQ(paths, (QStringList{"a", "b/a", "File2", "file10"}));
}

TEST(ParseStatus, NumbersSortByValueAndLeadingZerosAfter)
{
    const RepoStatus status = parseStatus(records({"?? m10/f", "?? m9/f", "?? m09/f", "?? m2/f10", "?? m2/f9"}), root);
    QStringList paths;
    for (const auto& file : status.files)
        paths << file.path;
    EXPECT_EQ(paths, (QStringList{"m2/f9", "m2/f10", "m9/f", "m09/f", "m10/f"}));
}

TEST(ParseStatus, EveryFolderAboveAChangeIsRecordedWhateverTheOrder)
{
    // A folder's files need not come together (renames are listed under their new names).
    const RepoStatus status = parseStatus(records({" M a/x/1", " M b/2", " M a/x/3", "?? a/y/z/4", " M a/5"}), root);
    const auto folder = [](const char* path) { return root.child(QByteArrayView(path)); };
    EXPECT_EQ(status.foldersWithChanges,
              (QSet<FilePath>{folder("a"), folder("a/x"), folder("b"), folder("a/y"), folder("a/y/z")}));
    // A name that would climb out of the root is not taken.
    EXPECT_TRUE(parseStatus(records({" M ../outside", " M a/../../up"}), root).files.isEmpty());
}

TEST(ParseStatus, DamagedOutputIsSkippedQuietly)
{
    // Short records, a rename without its source at the very end, stray NULs, U+FFFD from bytes
    // that were not UTF-8.
    const QString damaged = records({"M", "", " M", " M ", " M caf\xef\xbf\xbd.txt", "R  last.txt"});
    const RepoStatus status = parseStatus(damaged, root);
    ASSERT_EQ(status.files.size(), 2);
    EXPECT_TRUE(status.changedPaths.contains(root.child(QStringLiteral("last.txt"))));
    EXPECT_TRUE(parseStatus(QString(), root).files.isEmpty());
}

TEST(IgnoredPaths, AFolderCoversEverythingInsideIt)
{
    const RepoStatus status = parseStatus(records({"## main", "!! build/", "!! notes.log"}), root);
    const IgnoredPaths& ignored = status.ignored;
    EXPECT_TRUE(status.files.isEmpty());
    EXPECT_TRUE(ignored.contains(root.child(QStringLiteral("build"))));
    EXPECT_TRUE(ignored.contains(root.child(QStringLiteral("build/x/y.o"))));
    EXPECT_TRUE(ignored.contains(root.child(QStringLiteral("notes.log"))));
    EXPECT_FALSE(ignored.contains(root));
    EXPECT_FALSE(ignored.contains(root.parent()));
    EXPECT_FALSE(ignored.contains(root.child(QStringLiteral("buildx"))));
    EXPECT_FALSE(ignored.contains(root.child(QStringLiteral("src/build"))));
    EXPECT_FALSE(IgnoredPaths{root}.contains(root.child(QStringLiteral("build"))));
}

} // namespace
} // namespace orwick
