#pragma once
// Reading a JSON file whole, and writing a file whole and atomically: the bytes go to a
// temporary file in the same folder, are synced to the disk, and the temporary file is renamed
// over the old one (then the folder is synced too), so a crash or a full disk leaves either the
// old file or the new one, never half of one. Orwick's own stores add locking, damage handling
// and messages on top of this (StoreFile.h).

#include "base/FilePath.h"
#include "base/Result.h"

#include <QJsonDocument>
#include <optional>

namespace orwick {

// The document, or nothing when the file is missing, unreadable or not JSON.
std::optional<QJsonDocument> readJsonFile(const FilePath& path);

// Replaces `path` with `bytes` atomically and durably. The folder must exist. A file that was
// there keeps its permissions; a new one is made readable by its owner only. On failure the
// error is the reason in plain words ("the disk is full") and the old file is untouched.
[[nodiscard]] Status writeFileAtomically(const FilePath& path, const QByteArray& bytes);

// Makes the parent folders of `path` and writes the document atomically; the error is a
// sentence naming the file.
[[nodiscard]] Status writeJsonFile(const FilePath& path, const QJsonDocument& document);

} // namespace orwick
