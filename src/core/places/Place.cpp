#include "places/Place.h"

#include "platform/XdgPaths.h"

#include <sys/stat.h>

namespace orwick {

namespace {

bool isFolder(const FilePath& path)
{
    struct stat info{};
    return ::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

} // namespace

QList<Place> Place::favorites()
{
    struct Builtin {
        const char *key, *fallback, *symbol;
    };
    static const Builtin builtins[] = {{"XDG_DESKTOP_DIR", "Desktop", "menubar.dock.rectangle"},
                                       {"XDG_DOCUMENTS_DIR", "Documents", "doc"},
                                       {"XDG_DOWNLOAD_DIR", "Downloads", "arrow.down.circle"},
                                       {"XDG_PICTURES_DIR", "Pictures", "photo"},
                                       {"XDG_MUSIC_DIR", "Music", "music.note"},
                                       {"XDG_VIDEOS_DIR", "Videos", "film"}};
    const FilePath home = xdg::home();
    QList<Place> places{Place::at(home.fileName().isEmpty() ? QStringLiteral("Home") : home.fileName(), home, QStringLiteral("house"))};
    for (const Builtin& builtin : builtins) {
        const FilePath path = xdg::userDir(builtin.key, builtin.fallback);
        // user-dirs.dirs points a folder the user doesn't want at home itself.
        if (path == home || !isFolder(path))
            continue;
        bool seen = false;
        for (const Place& place : places)
            seen = seen || place.url == path;
        if (!seen)
            places.append(Place::at(path.fileName(), path, QString::fromLatin1(builtin.symbol)));
    }
    return places;
}

} // namespace orwick
