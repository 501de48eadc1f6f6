#pragma once
// The "Appearance" section of the Customize sheet: the theme, light or dark, and the accent,
// each read from and written to the ThemeStore ("theme", "appearanceMode", "accentColor").
// The theme row's note lists what is wrong with the theme files, each by its name.

#include "app/SettingsSheet.h"

namespace orwick {

class ThemeStore;

// `store` null: the rows are listed, unavailable, saying why.
SettingsSection themeSettingsSection(ThemeStore* store);

} // namespace orwick
