#pragma once
// Orwick's own JSON files (trash log, frecency, columns, sidebar…): read whole, written whole
// and atomically after the parent folder is made. A file that can't be read or parsed is absent.

#include "base/Result.h"
#include "files/FilePath.h"

#include <QJsonDocument>
#include <optional>

namespace orwick {

// The document, or nothing when the file is missing, unreadable or not JSON.
std::optional<QJsonDocument> readJsonFile(const FilePath& path);

// Writes through a temporary file and a rename, so a crash never leaves half a file.
[[nodiscard]] Status writeJsonFile(const FilePath& path, const QJsonDocument& document);

} // namespace orwick
