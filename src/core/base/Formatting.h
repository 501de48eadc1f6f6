#pragma once
// How sizes, counts and dates read in rows, status lines, footers and toasts.

#include "base/Timestamp.h"

#include <QString>

namespace orwick {

// Decimal units as desktops show them: "0 bytes", "1 byte", "980 bytes", "4.2 kB", "12 MB", "1.5 GB".
QString formatByteCount(qint64 bytes);
// "1 item", "12 items", "1,234 items" (the noun pluralised with an "s").
QString formatCount(qint64 count, const QString& singular, const QString& plural = {});
// "Today 14:03", "Yesterday 09:10", "12 Nov 2026 14:03"; "—" for an unknown date.
QString formatDate(Timestamp modified, Timestamp now);

} // namespace orwick
