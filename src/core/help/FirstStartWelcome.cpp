#include "help/FirstStartWelcome.h"

#include "app/Settings.h"

namespace orwick::firstStart {

bool takeWelcome(QSettings& settings, Start start)
{
    const QString key = QString::fromLatin1(settingsKey::welcomed);
    if (start != Start::plain || readSettingsBool(settings, key, false))
        return false;
    settings.setValue(key, true);
    return true;
}

} // namespace orwick::firstStart
