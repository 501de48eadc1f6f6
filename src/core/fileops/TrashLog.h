#pragma once
// TrashLog: where each item Orwick moved to the Trash came from, so that "Put Back" finds its
// place. Kept in trash-log.json in Orwick's data folder as {"entries": {trash path: former path}}
// through a StoreFile: read once when made; each change is merged under the file's lock with
// what other Orwick processes logged meanwhile, and the merged log is what this one then holds.
// A damaged file is set aside with a notice; a file that can't be written is said once, and the
// changes stay here and are saved with the next one.
//
// Entries whose item is gone from a Trash folder that is there (emptied by another program) are
// dropped; entries on a disk that isn't mounted are kept. Paths are written as StoredPath text:
// as they are when UTF-8, else as file URLs that keep every byte of a name (a log written before
// holds plain paths only, and reads the same). Items lying in a Trash folder that fails the
// Trash's safety checks (another user's) are never put back from the log.
// Lives on the interface thread.

#include "base/FilePath.h"
#include "base/Result.h"
#include "platform/StoreFile.h"

#include <QHash>
#include <QList>
#include <QSet>
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

    // Adds and removes entries and saves them, merged with what is on disk now.
    [[nodiscard]] Status update(const QList<std::pair<FilePath, FilePath>>& added, const QList<FilePath>& removed);

    // The entries of a log's document that can be used: both paths absolute and free of NUL. Not
    // checked: whether the items are still in the Trash.
    static QHash<FilePath, FilePath> entriesIn(const QJsonDocument& document);

private:
    void take(const QJsonDocument& document);

    StoreFile m_store;
    QHash<FilePath, FilePath> m_entries;
    // Changes not on disk yet (the last write failed).
    QHash<FilePath, FilePath> m_unsavedAdded;
    QSet<FilePath> m_unsavedRemoved;
};

} // namespace orwick
