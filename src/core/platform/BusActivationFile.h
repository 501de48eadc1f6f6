#pragma once
// BusActivationFile: the file that lets the session bus start Orwick when another program asks
// for "Show in folder" (org.freedesktop.FileManager1) while no Orwick runs. It lives in the
// user's own services folder, $XDG_DATA_HOME/dbus-1/services, which the bus reads before the
// system's, and only while the setting is on: ShowInFolderService (app/) puts it there when the
// setting is turned on and takes it away when it is turned off, and at each start brings it in
// line with the setting (a moved program, a file left behind).
//
// The text is the one `make install` installs (packaging/org.freedesktop.FileManager1.service.in)
// with the running program on its Exec line. A file of the same name that Orwick didn't write
// (another file manager's, or the user's own) is never replaced or removed.

#include "base/FilePath.h"
#include "base/Result.h"

namespace orwick::BusActivationFile {

// $XDG_DATA_HOME/dbus-1/services/org.freedesktop.FileManager1.service
FilePath path();
// The file's text for `program`, an absolute path (quoted as the bus reads it when it holds
// blanks or quotes).
QByteArray textFor(const QString& program);
// Whether a file's text is one Orwick wrote (for any program path).
bool isOrwicks(const QByteArray& text);

// Writes the file for `program`, making its folders; a file Orwick wrote is brought up to date.
// Fails with a sentence when the file can't be written or another program's file is there.
[[nodiscard]] Status put(const QString& program);
// Removes the file when Orwick wrote it; another program's file stays. Fails with a sentence
// when Orwick's file can't be removed.
[[nodiscard]] Status take();

} // namespace orwick::BusActivationFile
