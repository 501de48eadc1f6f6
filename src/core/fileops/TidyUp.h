#pragma once
// Tidy up: which loose files of a folder go into which sub-folder by kind. Folders, hidden
// files, ".DS_Store" and downloads in progress stay put.

#include "fileops/FileChange.h"
#include "files/FileCategory.h"

namespace orwick {

struct TidyPlan {
    QList<FileMove> moves; // file → kind folder/file (the name may still be taken there)
    QString error;         // the folder can't be read
};

// The folder a kind of file goes into ("Images", "Documents"…).
QString tidyFolderName(FileCategory category);

TidyPlan planTidyUp(const FilePath& folder);

} // namespace orwick
