#pragma once
// The file clipboard as other Linux file managers read and write it: `text/uri-list` (RFC 2483),
// `x-special/gnome-copied-files` ("copy" or "cut", then one URI a line) and KDE's
// `application/x-kde-cutselection` marker ("1" for cut), plus the paths as plain text. URIs
// carry the names' bytes percent-encoded, so names that are not UTF-8 survive.
// Drag and drop carries the same data: a drag out of Orwick is a clipboard's data, and a drop
// is read here too.

#include "base/FilePath.h"

#include <QList>
#include <QMimeData>
#include <memory>

namespace orwick {

struct ClipboardFiles {
    QList<FilePath> items;
    bool cut = false; // a paste moves them rather than copying
};

std::unique_ptr<QMimeData> makeFileClipboard(const QList<FilePath>& items, bool cut);

// The files on the clipboard (none when it holds no file URIs). URIs of anything but a file on
// this computer are left out.
ClipboardFiles readFileClipboard(const QMimeData* data);

// Every URI the data carries, file or not, in order, as written (the GNOME list when present,
// else `text/uri-list`). What a drop is judged by: a web address among files is not ignored.
QList<QUrl> readUris(const QMimeData* data);

// True for a file: URL on this computer: no host, "localhost" or this machine's name.
bool isLocalFileUrl(const QUrl& url);

} // namespace orwick
