#pragma once
// Fallible operations return a value or a short message in the user's words; nothing throws
// across a module boundary.

#include <QString>
#include <expected>

namespace orwick {

template <class T>
using Result = std::expected<T, QString>;

// A failure carrying the sentence to show.
inline std::unexpected<QString> failure(QString message) { return std::unexpected<QString>(std::move(message)); }

// For operations that return nothing on success.
using Status = Result<void>;

} // namespace orwick
