#pragma once
// The desktop's shared list of recently used files ($XDG_DATA_HOME/recently-used.xbel), read
// and added to, so that Orwick's recents and other programs' agree.

#include "files/FilePath.h"

#include <QDateTime>
#include <QList>

namespace orwick::RecentFiles {

struct Entry {
    FilePath path;
    QDateTime lastUsed; // the latest of the bookmark's modified and visited dates and its applications'
};

// Every local file in the list, most recently used first. A damaged list gives what could be read.
QList<Entry> read();

// Records that Orwick opened `path` now (best effort: a failure is only logged).
void add(const FilePath& path, const QString& mimeType);

} // namespace orwick::RecentFiles
