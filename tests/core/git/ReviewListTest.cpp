// The review's file list: groups in order under headings with counts, a file staged in part
// listed twice with the badge of each part, and the cursor's file found again after a change.

#include "git/ReviewList.h"

#include <gtest/gtest.h>

namespace orwick {
namespace {

RepoStatus::File file(const char* path, Change change, bool staged, bool unstaged)
{
    return {QString::fromUtf8(path), change, staged, unstaged};
}

// "Staged 2", "  A new.txt", …
QStringList shown(const QList<ReviewRow>& rows)
{
    QStringList lines;
    for (const ReviewRow& row : rows)
        lines << (row.isHeading ? reviewGroupTitle(row.group) + QStringLiteral(" %1").arg(row.count)
                                : QStringLiteral("  ") + changeLetter(row.badge) + u' ' + row.file.path);
    return lines;
}

TEST(ReviewList, GroupsStagedChangedUntrackedConflicted)
{
    RepoStatus status;
    status.files = {file("both.txt", Change::modified, true, true), file("c.txt", Change::conflicted, true, true),
                    file("gone.txt", Change::deleted, false, true), file("new.txt", Change::added, true, true),
                    file("u.txt", Change::untracked, false, false), file("r.txt", Change::renamed, true, false)};
    EXPECT_EQ(shown(reviewRows(status)), (QStringList{"Staged 3", "  M both.txt", "  A new.txt", "  R r.txt", "Changes 3",
                                                      "  M both.txt", "  D gone.txt", "  M new.txt", "Untracked 1",
                                                      "  U u.txt", "Conflicts 1", "  ! c.txt"}));
    const QList<ReviewRow> rows = reviewRows(status);
    EXPECT_TRUE(rows[1].spaceUnstages());
    EXPECT_TRUE(rows[1].showsStaged());
    EXPECT_FALSE(rows[5].spaceUnstages());
}

TEST(ReviewList, ACleanRepositoryHasNoRows)
{
    EXPECT_TRUE(reviewRows(RepoStatus{}).isEmpty());
}

TEST(ReviewList, FindsTheFileAgainOrStaysNearby)
{
    RepoStatus after;
    after.files = {file("a.txt", Change::modified, true, false), file("b.txt", Change::modified, false, true)};
    const QList<ReviewRow> rows = reviewRows(after); // Staged 1, a, Changes 1, b
    EXPECT_EQ(findReviewRow(rows, ReviewGroup::staged, "a.txt", 1), 1);
    // a.txt left Changes: the cursor stays near where it was, on a file, not a heading.
    EXPECT_EQ(findReviewRow(rows, ReviewGroup::changed, "a.txt", 1), 1);
    EXPECT_EQ(findReviewRow(rows, ReviewGroup::changed, "a.txt", 2), 3);
    EXPECT_EQ(findReviewRow(rows, ReviewGroup::changed, "zzz", 99), 3);
    EXPECT_EQ(findReviewRow({}, ReviewGroup::changed, "a.txt", 0), -1);
}

} // namespace
} // namespace orwick
