#pragma once
// The desktop's shared list of recently used files ($XDG_DATA_HOME/recently-used.xbel), read
// and added to, so that Orwick's recents and other programs' agree.

#include "base/FilePath.h"

#include <QDateTime>
#include <QList>

namespace orwick::RecentFiles {

struct Entry {
    FilePath path;
    QDateTime lastUsed; // the latest of the bookmark's modified and visited dates and its applications'
};

// Every local file in the list, most recently used first. A damaged list gives what could be read.
QList<Entry> read();
// The same for the text of a list.
QList<Entry> parse(QByteArrayView xbel);

// Records that Orwick opened `path` now (best effort: a failure is only logged).
void add(const FilePath& path, const QString& mimeType);
// The list's text `content` with `path` recorded as opened at `now`: an older bookmark of the
// same file gives way, every other bookmark is kept. The list is written in UTF-8, as desktops
// write it: one whose declaration names another encoding is left as it is (isUtf8List), since
// the bytes added would read as other text there.
QByteArray adding(QByteArray content, const FilePath& path, const QString& mimeType, const QDateTime& now);
// True unless the list's XML declaration names an encoding other than UTF-8.
bool isUtf8List(QByteArrayView content);

} // namespace orwick::RecentFiles
