#include "app/Settings.h"

#include "platform/XdgPaths.h"

namespace orwick {

std::unique_ptr<QSettings> openSettings()
{
    return std::make_unique<QSettings>(xdg::orwickConfigFile().text(), QSettings::IniFormat);
}

bool readSettingsBool(const QSettings& settings, const QString& key, bool fallback)
{
    const QVariant value = settings.value(key);
    if (!value.isValid())
        return fallback;
    const QString text = value.toString().trimmed().toLower();
    if (text == QLatin1StringView("true") || text == QLatin1StringView("1"))
        return true;
    if (text == QLatin1StringView("false") || text == QLatin1StringView("0"))
        return false;
    return fallback;
}

} // namespace orwick
