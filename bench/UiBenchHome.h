#pragma once
// pointHomeAt: a window benchmark's home — HOME and the XDG config, data and cache folders
// under one temporary folder of the run's own — so that a run never reads or writes the
// user's settings, and every run starts from the same empty ones.

#include <QString>
#include <QtGlobal>

namespace orwick {

inline void pointHomeAt(const QString& home)
{
    qputenv("HOME", home.toUtf8());
    qputenv("XDG_CONFIG_HOME", (home + "/.config").toUtf8());
    qputenv("XDG_DATA_HOME", (home + "/.local/share").toUtf8());
    qputenv("XDG_CACHE_HOME", (home + "/.cache").toUtf8());
}

} // namespace orwick
