#pragma once
// The recent server addresses that "Connect to Server…" offers: most recent first, each server
// once (in ServerAddress's standard form), at most kMaxRecentServers. SidebarStore keeps the list
// in sidebar.json ("servers": {"recent": […]}); these pure functions change and check it.

#include <QStringList>

namespace orwick {

inline constexpr int kMaxRecentServers = 10;

// `recent` with `address` first (standardised); an address that doesn't parse changes nothing.
QStringList withRecentServer(const QStringList& recent, const QString& address, int max = kMaxRecentServers);
// `recent` without `address` (compared in standard form).
QStringList withoutRecentServer(const QStringList& recent, const QString& address);
// What a file held, cleaned: entries that aren't server addresses left out, duplicates once, capped.
QStringList cleanRecentServers(const QStringList& stored, int max = kMaxRecentServers);

} // namespace orwick
