#pragma once
// The file clipboard as other Linux file managers read and write it: `text/uri-list` (RFC 2483),
// `x-special/gnome-copied-files` ("copy" or "cut", then one URI a line) and KDE's
// `application/x-kde-cutselection` marker ("1" for cut), plus the paths as plain text. URIs
// carry the names' bytes percent-encoded, so names that are not UTF-8 survive.

#include "files/FilePath.h"

#include <QList>
#include <QMimeData>
#include <memory>

namespace orwick {

struct ClipboardFiles {
    QList<FilePath> items;
    bool cut = false; // a paste moves them rather than copying
};

std::unique_ptr<QMimeData> makeFileClipboard(const QList<FilePath>& items, bool cut);

// The files on the clipboard (none when it holds no file URIs).
ClipboardFiles readFileClipboard(const QMimeData* data);

} // namespace orwick
