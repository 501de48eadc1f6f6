#pragma once
// columns.json: every folder's database settings (FolderColumns), keyed by folder path, in
// Orwick's data folder, kept through a StoreFile. A missing or damaged file gives no settings; a
// damaged one is set aside as "columns.damaged.json" (so the next save doesn't overwrite what it
// held) and the window is told (StoreNotices). An entry that can't be read is kept as it was and
// written back unchanged, so a damaged entry never costs the others.

#include "base/Result.h"
#include "notes/FolderColumns.h"

#include <QHash>
#include <QJsonObject>

namespace orwick {

struct ColumnsFile {
    QHash<FilePath, FolderColumns> folders;
    QJsonObject unreadable; // entries kept verbatim

    static FilePath location(); // $XDG_DATA_HOME/Orwick/columns.json
    static ColumnsFile read(const FilePath& path = location());
    // Written whole and atomically, under the file's lock. Folders whose path isn't UTF-8 text
    // are kept only in memory.
    [[nodiscard]] Status write(const FilePath& path = location()) const;

    // The settings of a file's top-level object, and the object that `write` stores.
    static ColumnsFile fromJson(const QJsonObject& object);
    QJsonObject toJson() const;
};

} // namespace orwick
