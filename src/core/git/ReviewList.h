#pragma once
// ReviewList: the rows of the review panel's file list, made from a repository's status. Files
// are grouped as staged, changed, untracked and conflicted, in that order, each group under a
// heading row with its count; an empty group has no heading. A file with changes both in the
// index and in the working tree is listed twice: once staged, once changed.
//
// Each file row carries the badge its group shows (a staged new file "A", its later edits "M"),
// and what Space does to it there (stage or unstage). Pure; safe on any thread.

#include "git/RepoStatus.h"

namespace orwick {

enum class ReviewGroup { staged, changed, untracked, conflicted };

// "Staged", "Changes", "Untracked", "Conflicts".
QString reviewGroupTitle(ReviewGroup group);

struct ReviewRow {
    bool isHeading = false;
    ReviewGroup group = ReviewGroup::changed;
    int count = 0;               // a heading's number of files
    RepoStatus::File file;       // a file row's file
    Change badge = Change::modified;

    // Whether the diff shown is the index's against the last commit.
    bool showsStaged() const { return group == ReviewGroup::staged; }
    // Space unstages a staged row and stages any other.
    bool spaceUnstages() const { return group == ReviewGroup::staged; }
    bool operator==(const ReviewRow&) const = default;
};

QList<ReviewRow> reviewRows(const RepoStatus& status);

// Where the same file in the same group is in `rows`, else where the nearest file row after
// `previous` is (so the cursor stays in place after its file moved to another group); -1 when
// there are no file rows.
int findReviewRow(const QList<ReviewRow>& rows, ReviewGroup group, const QString& path, int previous);

} // namespace orwick
