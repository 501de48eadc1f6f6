#pragma once
// FolderSummary: what a folder holds, for the preview — its items counted by kind from one read
// of the folder (types from the directory entries, kinds by extension: nothing is opened), and,
// as a second, slower step, the total size of everything below it (allocated bytes, links not
// followed, other disks not entered), stopped by its budget with what it had. Safe on any thread.

#include "base/FilePath.h"
#include "preview/PreviewLimits.h"

#include <QStringList>

namespace orwick::preview {

struct FolderCounts {
    qint64 items = 0;
    qint64 folders = 0;
    qint64 hidden = 0;
    QList<std::pair<QString, qint64>> kinds; // category name → count, most first
    bool readable = true;
    bool isPartial = false;
};

FolderCounts countFolder(const FilePath& folder, const CancelFlag& cancel, qint64 maxItems = 200'000);

struct FolderSize {
    qint64 bytes = 0;
    qint64 files = 0;
    bool isPartial = false; // stopped by time or cancel: `bytes` is a lower bound
};

FolderSize measureFolder(const FilePath& folder, const PreviewBudget& budget);

// The summary lines: "12 items: 3 folders, 7 images, 2 documents".
QStringList describeCounts(const FolderCounts& counts);
// "4.2 GB in 1,204 files", "more than 4.2 GB (still counting when it stopped)".
QString describeSize(const FolderSize& size);

} // namespace orwick::preview
