#include "git/ReviewList.h"

namespace orwick {

QString reviewGroupTitle(ReviewGroup group)
{
    switch (group) {
    case ReviewGroup::staged: return QStringLiteral("Staged");
    case ReviewGroup::changed: return QStringLiteral("Changes");
    case ReviewGroup::untracked: return QStringLiteral("Untracked");
    case ReviewGroup::conflicted: return QStringLiteral("Conflicts");
    }
    return {};
}

QList<ReviewRow> reviewRows(const RepoStatus& status)
{
    QList<ReviewRow> groups[4];
    for (const RepoStatus::File& file : status.files) {
        auto add = [&](ReviewGroup group, Change badge) {
            ReviewRow row;
            row.group = group;
            row.file = file;
            row.badge = badge;
            groups[int(group)].append(row);
        };
        if (file.change == Change::conflicted) {
            add(ReviewGroup::conflicted, Change::conflicted);
            continue;
        }
        if (file.change == Change::untracked) {
            add(ReviewGroup::untracked, Change::untracked);
            continue;
        }
        if (file.isStaged)
            add(ReviewGroup::staged, file.change);
        if (file.hasUnstaged) {
            // What is left in the working tree of a staged new or renamed file is an edit of it.
            const bool stagedKind = file.isStaged && (file.change == Change::added || file.change == Change::renamed);
            add(ReviewGroup::changed, stagedKind ? Change::modified : file.change);
        }
    }
    QList<ReviewRow> rows;
    for (QList<ReviewRow>& group : groups) {
        if (group.isEmpty())
            continue;
        ReviewRow heading;
        heading.isHeading = true;
        heading.group = group.first().group;
        heading.count = int(group.size());
        rows.append(heading);
        rows.append(group);
    }
    return rows;
}

int findReviewRow(const QList<ReviewRow>& rows, ReviewGroup group, const QString& path, int previous)
{
    for (int i = 0; i < rows.size(); ++i)
        if (!rows[i].isHeading && rows[i].group == group && rows[i].file.path == path)
            return i;
    int fallback = -1;
    for (int i = 0; i < rows.size(); ++i) {
        if (rows[i].isHeading)
            continue;
        fallback = i;
        if (i >= previous)
            break;
    }
    return fallback;
}

} // namespace orwick
