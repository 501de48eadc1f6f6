#include "platform/XdgPaths.h"

#include <QFile>
#include <QRegularExpression>

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

FilePath picturesDir()
{
    // user-dirs.dirs lines look like: XDG_PICTURES_DIR="$HOME/Pictures"
    QFile file(QString::fromUtf8(configHome().child(QByteArrayView("user-dirs.dirs")).native()));
    if (file.open(QIODevice::ReadOnly)) {
        static const QRegularExpression line(QStringLiteral("^XDG_PICTURES_DIR=\"(.*)\"\\s*$"));
        while (!file.atEnd()) {
            const auto match = line.match(QString::fromUtf8(file.readLine()).trimmed());
            if (!match.hasMatch())
                continue;
            QByteArray value = match.captured(1).toUtf8();
            if (value.startsWith("$HOME"))
                value = home().native() + value.mid(5);
            if (value.startsWith('/'))
                return FilePath::fromNative(value);
        }
    }
    return home().child(QByteArrayView("Pictures"));
}

FilePath orwickDataDir() { return dataHome().child(QByteArrayView("Orwick")); }
FilePath orwickConfigFile() { return configHome().child(QByteArrayView("Orwick/Orwick.conf")); }
FilePath homeTrash() { return dataHome().child(QByteArrayView("Trash")); }
FilePath recentFilesList() { return dataHome().child(QByteArrayView("recently-used.xbel")); }

} // namespace orwick::xdg
