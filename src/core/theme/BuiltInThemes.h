#pragma once
// The themes that come with Orwick, in the order they are offered ("Orwick", "Paper", "Nord",
// "Dracula", "Solarized", "Catppuccin"), and the default colour set every chain of `extends`
// starts from: Orwick's own colours, with the syntax, status and category colours that the
// other built-in themes share.

#include "theme/ThemeDefinition.h"

#include <QList>

namespace orwick {

inline const QString kDefaultThemeName = QStringLiteral("Orwick");

const QList<ThemeDefinition>& builtInThemes();
// The default colour set for one appearance, as written ("#RRGGBB" by key).
const QMap<QString, QString>& defaultColors(Appearance appearance);
// The default terminal palette: 16 colours, the 8 normal then the 8 bright.
const QStringList& defaultTerminalColors(Appearance appearance);

} // namespace orwick
