#include "ui/theme/IconThemeFallback.h"

#include <QFileInfo>
#include <QIcon>
#include <QStandardPaths>

namespace orwick {

void useIconFallbackTheme()
{
    static const QString kFallback = QStringLiteral("Adwaita");
    const QString current = QIcon::fallbackThemeName();
    if (!current.isEmpty() && current != QLatin1StringView("hicolor"))
        return; // the desktop chose a fallback of its own
    // Some platforms (offscreen, a bare Wayland compositor) search no data folder at all.
    const QStringList searched = QIcon::themeSearchPaths();
    const QStringList folders = searched + QStandardPaths::locateAll(QStandardPaths::GenericDataLocation, QStringLiteral("icons"),
                                                                     QStandardPaths::LocateDirectory);
    for (const QString& folder : folders)
        if (QFileInfo::exists(folder + QLatin1Char('/') + kFallback + QStringLiteral("/index.theme"))) {
            if (!searched.contains(folder))
                QIcon::setThemeSearchPaths(searched + QStringList{folder});
            if (QIcon::themeName().isEmpty())
                QIcon::setThemeName(QStringLiteral("hicolor")); // the default of every desktop's icon themes
            QIcon::setFallbackThemeName(kFallback);
            return;
        }
}

} // namespace orwick
