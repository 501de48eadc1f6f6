#include "platform/XdgPaths.h"

#include <QFile>

namespace orwick::xdg {

namespace {

FilePath fromEnvironment(const char* name, const char* fallbackUnderHome)
{
    const char* value = getenv(name);
    if (value && *value == '/')
        return FilePath::fromNative(value);
    return home().child(QByteArrayView(fallbackUnderHome));
}

} // namespace

FilePath home()
{
    const char* value = getenv("HOME");
    return FilePath::fromNative((value && *value) ? value : "/");
}

FilePath dataHome() { return fromEnvironment("XDG_DATA_HOME", ".local/share"); }
FilePath configHome() { return fromEnvironment("XDG_CONFIG_HOME", ".config"); }
FilePath cacheHome() { return fromEnvironment("XDG_CACHE_HOME", ".cache"); }

FilePath userDir(const char* key, const char* fallbackUnderHome)
{
    // user-dirs.dirs lines look like: XDG_PICTURES_DIR="$HOME/Pictures"
    QFile file(QString::fromUtf8(configHome().child(QByteArrayView("user-dirs.dirs")).native()));
    if (file.open(QIODevice::ReadOnly)) {
        const QByteArray prefix = QByteArray(key) + "=\"";
        while (!file.atEnd()) {
            const QByteArray line = file.readLine().trimmed();
            if (!line.startsWith(prefix) || !line.endsWith('"') || line.size() <= prefix.size())
                continue;
            QByteArray value = line.mid(prefix.size(), line.size() - prefix.size() - 1);
            if (value.startsWith("$HOME"))
                value = home().native() + value.mid(5);
            if (value.startsWith('/'))
                return FilePath::fromNative(value);
        }
    }
    return home().child(QByteArrayView(fallbackUnderHome));
}

FilePath picturesDir() { return userDir("XDG_PICTURES_DIR", "Pictures"); }

FilePath orwickDataDir() { return dataHome().child(QByteArrayView("Orwick")); }
FilePath orwickConfigFile() { return configHome().child(QByteArrayView("Orwick/Orwick.conf")); }
FilePath homeTrash() { return dataHome().child(QByteArrayView("Trash")); }
FilePath recentFilesList() { return dataHome().child(QByteArrayView("recently-used.xbel")); }

} // namespace orwick::xdg
