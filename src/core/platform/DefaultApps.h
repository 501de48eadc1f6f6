#pragma once
// Which desktop applications open a type of file, read the way the desktop's own opener reads
// it (the freedesktop MIME-apps rules): mimeapps.list defaults and added associations in the
// config and data folders, then the installed .desktop files whose MimeType lists the type.
// A type counts as handled when it or one of the types it inherits from is (a C source file is
// text/plain too). Read from disk on each call, honouring the XDG variables at once.

#include <QHash>
#include <QString>
#include <QStringList>

namespace orwick::defaultApps {

// The desktop file ids ("org.gnome.gedit.desktop") that open `mimeType` itself, the default
// first; removed associations are left out and every id names an installed desktop file.
QStringList applicationsFor(const QString& mimeType);

// The same for a file of `mimeType` as the desktop's opener sees it: also the applications of
// the types it inherits from (but for "any bytes"), the type's own first.
QStringList applicationsOpening(const QString& mimeType);

// Every installed desktop file: id → path (the first data folder wins).
QHash<QString, QString> installed();

// True when some installed application opens a file of this type (or of a type it inherits).
bool canOpen(const QString& mimeType);

} // namespace orwick::defaultApps
