#pragma once
// TrashContents: what lies in all the user's Trash folders (AllTrashes.h) — the items and the
// bytes they hold — as Empty Trash asks about it ("Delete 12 items (340 MB) for good?") and then
// deletes exactly those items, so nothing trashed after the question is lost.
// measure() walks every item; call it off the GUI thread.

#include "base/CancelFlag.h"
#include "base/FilePath.h"

#include <QList>
#include <QString>

namespace orwick {

struct TrashContents {
    QList<FilePath> items; // in `files/` of a Trash folder
    qint64 bytes = 0;      // of the regular files in them

    bool isEmpty() const { return items.isEmpty(); }
    // "12 items, 340 MB" / "1 item, 4 KB"
    QString summary() const;

    static TrashContents measure(const CancelFlag* cancel = nullptr);
    // The items of the given Trash folders only.
    static TrashContents measure(const QList<FilePath>& trashFolders, const CancelFlag* cancel = nullptr);
};

} // namespace orwick
