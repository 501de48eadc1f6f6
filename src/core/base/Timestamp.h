#pragma once
// Timestamp: a moment as rows, sorts and stores keep it.

#include <QtGlobal>

#include <limits>

namespace orwick {

// Milliseconds since the epoch; unknown dates are the distant past so they sort as oldest.
using Timestamp = qint64;
inline constexpr Timestamp kDistantPast = std::numeric_limits<qint64>::min() / 2;

} // namespace orwick
