#include "app/Settings.h"

#include "platform/XdgPaths.h"

namespace orwick {

std::unique_ptr<QSettings> openSettings()
{
    return std::make_unique<QSettings>(xdg::orwickConfigFile().text(), QSettings::IniFormat);
}

} // namespace orwick
