#pragma once
// RenamePreview: every item of a batch rename with its new name and, when it can't be renamed
// as computed, the problem in the user's words; the summary line; the renames to hand to
// FileOperations::renameMany.
//
// previewRenames() looks at the disk (names taken by items that are not being renamed, the
// modification dates a template asks for), so it runs off the interface thread for large
// batches; it checks `cancel` once per item and returns what it has when cancelled.

#include "base/CancelFlag.h"
#include "fileops/FileChange.h"
#include "rename/BatchRename.h"
#include "rename/FolderNames.h"

#include <QList>
#include <vector>

namespace orwick {

struct BatchRenameEntry {
    FilePath url;
    QByteArray newName;  // the old name when the rule gives none
    QString problem;     // empty: can be renamed as shown
    FilePath target;     // the item's path under its new name; empty when the name stays

    bool changes() const { return QByteArrayView(newName) != (url.isRoot() ? QByteArrayView("/") : nameOf(url)); }
    bool willRename() const { return changes() && problem.isEmpty(); }
};

// The problem of a new name on its own (before looking at other names): "Can't contain “/”",
// a NUL byte, nothing but blanks, "." or "..", more than 255 bytes. Empty when it is fine.
QString nameProblem(QByteArrayView newName);

struct RenamePreview {
    QString ruleProblem;                   // the rule gives no names; shown under its field
    std::vector<BatchRenameEntry> entries; // in the order of the items
    int changing = 0;                      // entries that will be renamed
    int problems = 0;                      // entries that change but can't be renamed
    bool cancelled = false;

    // "3 of 10 will change", ", 2 can't be renamed"; "Nothing changes yet".
    QString summary() const;
    // The renames a commit makes: entries that change and have no problem.
    QList<FileMove> renames() const;
};

// The rule's new name for one item, with only nameProblem() checked: what a row shows at once,
// before previewRenames() has looked at the other names and the disk.
BatchRenameEntry quickEntry(const BatchRenamer& renamer, const FilePath& item, int index, int count);

// `folderNames`, when given, holds the folders already read for this batch (and keeps those read
// here), so that a caller who looked at the items' folders first doesn't read them again.
RenamePreview previewRenames(const BatchRenamer& renamer, const QList<FilePath>& items, const CancelToken& cancel = {},
                             FolderNamesCache* folderNames = nullptr);

// "Rename 12 items": the panel's title, and the name of the undo step.
QString batchRenameTitle(qsizetype count);

} // namespace orwick
