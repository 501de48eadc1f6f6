#pragma once
// StoredPath: how a path is written as text into Orwick's own JSON files and settings (frecency,
// the session, workspaces). A path that is valid UTF-8 is written as it is, which keeps the files
// readable; any other is written as its percent-encoded file URL, which keeps every byte. A path
// never starts with "file:", so reading tells the two apart.

#include "base/FilePath.h"

#include <QString>

namespace orwick {

QString storedPathText(const FilePath& path);
// The path written by storedPathText; empty for text that is neither an absolute path nor a
// file URL.
FilePath pathFromStoredText(const QString& text);

} // namespace orwick
