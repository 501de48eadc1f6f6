#pragma once
// Resolving a theme: pure functions over a list of definitions (built-in ones first, then the
// files), so the rules can be tested without a store.
//
// 1. The theme is found by name (the first one so named); a name that matches none gives
//    "Orwick".
// 2. The colour maps are built from the bottom of the `extends` chain up: the default colour
//    set, then each theme's "colors", then its "light" or "dark" map. A name in `extends` that
//    matches no theme, or that leads back into the chain (a theme extending itself, or A → B →
//    A), ends the chain there, so it starts from the default colour set. Values that are not
//    "#RRGGBB" and names Orwick doesn't use are skipped.
// 3. An accent override is put under "accent" in both appearances, and "selection" and
//    "accentFill" are dropped so that they follow the new accent.
// 4. Derived colours still missing are computed; sizes take the topmost value in the chain
//    (kept in range) or their default; a terminal palette shorter than 16 is completed from the
//    default one.

#include "theme/ResolvedTheme.h"
#include "theme/ThemeDefinition.h"

#include <QList>

namespace orwick {

// The first definition named `name`, or null.
const ThemeDefinition* findTheme(const QList<ThemeDefinition>& themes, const QString& name);

// The chain of `extends` from the theme named `name` down (itself first).
struct ThemeChain {
    QList<const ThemeDefinition*> themes;
    std::optional<QString> missingBase; // a name in `extends` that matches no theme
    bool isCircular = false;            // `extends` led back into the chain
};
ThemeChain themeChain(const QList<ThemeDefinition>& themes, const QString& name);

ResolvedTheme resolveTheme(const QList<ThemeDefinition>& themes, const QString& name,
                           const std::optional<QColor>& accentOverride = std::nullopt);

} // namespace orwick
