#pragma once
// A stand-in for the system's /usr/share and /etc/xdg: XDG_DATA_DIRS and XDG_CONFIG_DIRS point
// into a temporary folder (the system's MIME database linked in, so types and what they inherit
// still resolve), no desktop is named, and the user's mimeapps.list starts out absent. The
// variables are put back when the object goes.

#include "platform/XdgPaths.h"
#include "support/TempHome.h"

#include <QFile>

namespace orwick::test {

class SystemFolders {
public:
    SystemFolders()
    {
        qputenv("XDG_DATA_DIRS", tree.path(QStringLiteral("share")).native());
        qputenv("XDG_CONFIG_DIRS", tree.path(QStringLiteral("etc")).native());
        qunsetenv("XDG_CURRENT_DESKTOP");
        tree.folder(QStringLiteral("share/applications"));
        tree.link(QStringLiteral("share/mime"), "/usr/share/mime");
        QFile::remove(mimeAppsList().text());
    }
    ~SystemFolders()
    {
        qputenv("XDG_DATA_DIRS", m_dataDirs);
        qputenv("XDG_CONFIG_DIRS", m_configDirs);
        qputenv("XDG_CURRENT_DESKTOP", m_desktop);
    }
    SystemFolders(const SystemFolders&) = delete;
    SystemFolders& operator=(const SystemFolders&) = delete;

    // Installs the application `id` ("viewer.desktop"): `body` follows its group and Type lines.
    void install(const QString& id, const QByteArray& body) const
    {
        tree.file(QStringLiteral("share/applications/") + id, "[Desktop Entry]\nType=Application\n" + body);
    }
    // The user's own list of default applications.
    static FilePath mimeAppsList() { return xdg::configHome().child(QStringLiteral("mimeapps.list")); }

    TempTree tree;

private:
    QByteArray m_dataDirs = qgetenv("XDG_DATA_DIRS");
    QByteArray m_configDirs = qgetenv("XDG_CONFIG_DIRS");
    QByteArray m_desktop = qgetenv("XDG_CURRENT_DESKTOP");
};

} // namespace orwick::test
