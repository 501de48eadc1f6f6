#pragma once
// The terminal panel's rows of "Customize…": which way the shell and the pane follow each
// other's folder (keys in app/Settings.h), with the one line a shell needs to report its folder.

#include "app/SettingsSheet.h"

namespace orwick {

SettingsSection terminalSettingsSection();

} // namespace orwick
