#pragma once
// The themes folder, $XDG_DATA_HOME/Orwick/Themes: where it is, making it, and reading the theme
// files in it. No state: ThemeStore calls these and keeps the result.

#include "base/FilePath.h"
#include "base/Result.h"
#include "theme/ThemeDefinition.h"

#include <QList>
#include <QStringList>

namespace orwick {

FilePath themesFolder();
// Makes `folder` and the folders above it when missing.
[[nodiscard]] Status prepareThemesFolder(const FilePath& folder);

struct LoadedThemes {
    QList<ThemeDefinition> themes; // the files that could be read, by path
    QStringList errors;            // "Name.json: what is wrong", one per problem
};

// Reads the files of `folder` whose extension is "json" in any case, in order of their paths.
// A file that can't be read or decoded, or whose name is taken by one of `taken` or an earlier
// file, is left out with one entry in `errors`; a file that loads with bad values, unknown
// colour names or an `extends` that leads nowhere or round in a circle loads and has its
// problems listed too.
LoadedThemes loadThemesFolder(const FilePath& folder, const QList<ThemeDefinition>& taken);

} // namespace orwick
