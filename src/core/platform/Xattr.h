#pragma once
// Extended attributes in the "user." namespace (tags, properties), never following links.

#include "base/Result.h"
#include "files/FilePath.h"

#include <QByteArray>
#include <optional>

namespace orwick::xattr {

// The attribute's value; nothing when it is not set or can't be read.
std::optional<QByteArray> get(const FilePath& path, const char* name);
// Fails with a sentence when the file system refuses extended attributes.
[[nodiscard]] Status set(const FilePath& path, const char* name, const QByteArray& value);
[[nodiscard]] Status remove(const FilePath& path, const char* name);

inline constexpr const char* tags = "user.xdg.tags";
inline constexpr const char* properties = "user.app.orwick.properties";

} // namespace orwick::xattr
