#include "theme/ThemeFolder.h"

#include "platform/XdgPaths.h"
#include "theme/ThemeResolver.h"

#include <QDir>
#include <QFile>

namespace orwick {

FilePath themesFolder() { return xdg::orwickDataDir().child(QStringLiteral("Themes")); }

Status prepareThemesFolder(const FilePath& folder)
{
    if (QDir().mkpath(folder.text()))
        return {};
    return failure(QStringLiteral("Orwick can't make the themes folder %1").arg(folder.abbreviated()));
}

LoadedThemes loadThemesFolder(const FilePath& folder, const QList<ThemeDefinition>& taken)
{
    LoadedThemes loaded;
    const QDir dir(folder.text());
    QFileInfoList files = dir.entryInfoList(QDir::Files | QDir::Hidden | QDir::Readable | QDir::NoDotAndDotDot, QDir::Name);
    files.removeIf([](const QFileInfo& file) { return file.suffix().toLower() != QLatin1StringView("json"); });
    std::sort(files.begin(), files.end(), [](const QFileInfo& a, const QFileInfo& b) { return a.filePath() < b.filePath(); });

    QList<ThemeDefinition> all = taken;
    QStringList fileNames;
    for (const QFileInfo& info : std::as_const(files)) {
        const QString prefix = info.fileName() + QStringLiteral(": ");
        QFile file(info.filePath());
        if (!file.open(QIODevice::ReadOnly)) {
            loaded.errors.append(prefix + QStringLiteral("can't be read (%1)").arg(file.errorString()));
            continue;
        }
        Result<ThemeDefinition> theme = ThemeDefinition::fromBytes(file.readAll());
        if (!theme) {
            loaded.errors.append(prefix + theme.error());
            continue;
        }
        if (findTheme(all, theme->name)) {
            loaded.errors.append(prefix + QStringLiteral("a theme named “%1” is there already, so this one is left out").arg(theme->name));
            continue;
        }
        for (const QString& problem : checkTheme(*theme))
            loaded.errors.append(prefix + problem);
        all.append(*theme);
        loaded.themes.append(*theme);
        fileNames.append(info.fileName());
    }
    // Chains are checked once every file is in, since a theme may extend one read after it.
    for (qsizetype i = 0; i < loaded.themes.size(); ++i) {
        const ThemeChain chain = themeChain(all, loaded.themes.at(i).name);
        const QString prefix = fileNames.at(i) + QStringLiteral(": ");
        if (chain.missingBase && chain.themes.size() == 1)
            loaded.errors.append(prefix + QStringLiteral("no theme is named “%1”, so “extends” starts from Orwick's colours").arg(*chain.missingBase));
        if (chain.isCircular) {
            QStringList names;
            for (const ThemeDefinition* theme : chain.themes)
                names.append(theme->name);
            names.append(*chain.themes.last()->extends);
            loaded.errors.append(prefix + QStringLiteral("“extends” goes round in a circle (%1), so the chain stops there")
                                              .arg(names.join(QStringLiteral(" → "))));
        }
    }
    return loaded;
}

} // namespace orwick
