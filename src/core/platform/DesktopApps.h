#pragma once
// DesktopApps: the desktop's applications as "Open With…" offers them — read from their
// freedesktop .desktop files, started on a file, and made the default for a type.
//
// Which applications open a type comes from defaultApps (mimeapps.list and the MimeType lines);
// this reads each one's [Desktop Entry] (Name, Icon, Exec, Terminal, Hidden, NoDisplay) and
// turns its Exec line into a program and arguments by the Desktop Entry rules: quoted arguments,
// the field codes %f %F %u %U (the file), %i (the icon), %c (the name), %k (the desktop file),
// %% and the deprecated ones dropped. A desktop file that can't be read, has no Name or no Exec,
// or whose Exec doesn't parse, is left out of every list (a broken file loses nothing).
// Everything is read from disk on each call, honouring the XDG variables at once.

#include "base/FilePath.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

namespace orwick::DesktopApps {

struct Application {
    QString id;          // desktop file id ("org.gnome.gedit.desktop")
    QString name;        // Name=
    QString icon;        // Icon= (a theme name or a path), may be empty
    QString exec;        // Exec= as written
    QString desktopFile; // where it was read
    bool terminal = false; // Terminal=true: wants a terminal around it
};

// The application with this desktop file id, when it is installed and usable.
std::optional<Application> find(const QString& id);

// The applications that open a file of `mimeType` (or of a type it inherits from, but for "any
// bytes"), the default first, then the rest as the desktop lists them.
QList<Application> forType(const QString& mimeType);

// Every installed application that shows in menus (NoDisplay and Hidden left out), by name.
QList<Application> all();

// The program and its arguments that open `file` with `app`; absent when the Exec line doesn't
// parse (an unclosed quote, nothing to run).
std::optional<QStringList> commandLine(const Application& app, const FilePath& file);

// Starts `app` on `file`, detached, in the file's folder. An empty string when it started, else
// the reason in the window's words.
[[nodiscard]] QString launch(const Application& app, const FilePath& file);

// Makes `app` the default for `mimeType` in the user's mimeapps.list
// ($XDG_CONFIG_HOME/mimeapps.list), keeping every other line. An empty string when written,
// else the reason.
[[nodiscard]] QString setDefault(const QString& mimeType, const Application& app);

} // namespace orwick::DesktopApps
