#pragma once
// TrashLog: where each item Orwick moved to the Trash came from, so that "Put Back" finds its
// place. Kept in trash-log.json in Orwick's data folder as {"entries": {trash path: former path}},
// read once when made and rewritten whole after each change. Entries whose item is no longer
// in the Trash (emptied by another program) are dropped when read. Paths that are not UTF-8
// stay in memory only; their .trashinfo holds them exactly.
// Lives on the interface thread.

#include "base/Result.h"
#include "files/FilePath.h"

#include <QHash>
#include <QList>
#include <optional>
#include <utility>

namespace orwick {

class TrashLog {
public:
    // The log at `file`; by default trash-log.json in Orwick's data folder.
    explicit TrashLog(FilePath file = {});

    std::optional<FilePath> formerPath(const FilePath& inTrash) const;
    // The logged items still lying in the Trash.
    QList<FilePath> trashedItems() const;
    qsizetype size() const { return m_entries.size(); }

    // Adds and removes entries and saves the file once.
    [[nodiscard]] Status update(const QList<std::pair<FilePath, FilePath>>& added, const QList<FilePath>& removed);

private:
    void load();
    [[nodiscard]] Status save() const;

    FilePath m_file;
    QHash<FilePath, FilePath> m_entries;
};

} // namespace orwick
