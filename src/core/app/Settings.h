#pragma once
// The preferences store: QSettings in INI form at $XDG_CONFIG_HOME/Orwick/Orwick.conf. Keys are
// read with a default in code, so a damaged or missing file simply gives the defaults.

#include <QSettings>
#include <memory>

namespace orwick {

// A fresh handle on the store (cheap; the path follows the environment of the moment).
std::unique_ptr<QSettings> openSettings();

// A switch kept under `key`: "true"/"1" or "false"/"0"; anything else (absent, damaged) gives
// `fallback`. QVariant::toBool would read any other text as true.
bool readSettingsBool(const QSettings& settings, const QString& key, bool fallback);

// Keys kept here because more than one part reads them.
namespace settingsKey {
// The terminal panel's shell follows the active pane's folder while it waits at its prompt (on by default).
inline constexpr const char* terminalFollowsPane = "terminalFollowsPane";
// The active pane follows the folder the terminal's shell reports (OSC 7; off by default).
inline constexpr const char* paneFollowsTerminal = "paneFollowsTerminal";
// Orwick has greeted this user with the welcome sheet (help/FirstStartWelcome.h).
inline constexpr const char* welcomed = "welcomed";
} // namespace settingsKey

} // namespace orwick
