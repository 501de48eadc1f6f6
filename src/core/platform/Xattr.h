#pragma once
// Extended attributes in the "user." namespace (tags, properties), never following links.

#include "base/FilePath.h"
#include "base/Result.h"

#include <QByteArray>
#include <QList>
#include <optional>

namespace orwick::xattr {

// The attribute's value; nothing when it is not set or can't be read.
std::optional<QByteArray> get(const FilePath& path, const char* name);
// Fails with a sentence when the file system refuses extended attributes.
[[nodiscard]] Status set(const FilePath& path, const char* name, const QByteArray& value);
[[nodiscard]] Status remove(const FilePath& path, const char* name);

// For callers that word the refusal themselves (the tag changes): the value, nothing when the
// attribute is not set, or the errno that kept it from being read.
struct Reading {
    std::optional<QByteArray> value;
    int error = 0;
};
Reading read(const FilePath& path, const char* name);
// Writes the value, or removes the attribute for nothing (already absent is fine); returns 0 or
// the errno of the refusal.
int write(const FilePath& path, const char* name, const std::optional<QByteArray>& value);

// Copies every extended attribute of the open file `from` to the open file `to`, whatever the
// size of the names and values. Returns the names the target refused (empty when all were
// kept); attributes of the "security." namespace that the target can't hold are not counted,
// as the target's own policy sets them. `error` gets the errno of the first refusal.
QList<QByteArray> copyAll(int from, int to, int* error = nullptr);

// The names of every attribute of an open file; nothing when they can't be listed.
std::optional<QList<QByteArray>> names(int fd);

inline constexpr const char* tags = "user.xdg.tags";
inline constexpr const char* properties = "user.app.orwick.properties";

} // namespace orwick::xattr
