#pragma once
// Place: one row of the sidebar's Favourites, Recent or Locations section, as a plain value, and
// the built-in favourites of this computer (home and the XDG user folders that exist).

#include "base/FilePath.h"

#include <QList>
#include <QString>

namespace orwick {

struct Place {
    QString name;
    FilePath url;
    QString symbol;         // icon id, shown through the symbol table
    QString detail;         // dimmed text under or beside the name; may be empty
    QString trailing;       // right-aligned dimmed text, e.g. free space; may be empty
    bool isEjectable = false;
    bool isMissing = false; // the folder is gone: the row stays, dimmed
    double fillRatio = -1;  // used space of a drive, 0…1; negative when not a drive
    bool operator==(const Place&) const = default;

    static Place at(const QString& name, const FilePath& url, const QString& symbol)
    {
        Place place;
        place.name = name;
        place.url = url;
        place.symbol = symbol;
        return place;
    }

    // Home, Desktop, Documents, Downloads, Pictures, Music, Videos — the folders named by
    // user-dirs.dirs (or their usual names under home); those that don't exist are left out.
    static QList<Place> favorites();
};

} // namespace orwick
