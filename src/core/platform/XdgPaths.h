#pragma once
// Where Orwick and the desktop keep things, read from the environment on every call so that a
// test that points HOME and the XDG variables at a temporary folder is honoured at once.

#include "base/FilePath.h"

namespace orwick::xdg {

FilePath home();
FilePath dataHome();      // $XDG_DATA_HOME or ~/.local/share
FilePath configHome();    // $XDG_CONFIG_HOME or ~/.config
FilePath cacheHome();     // $XDG_CACHE_HOME or ~/.cache
// A user folder named in $XDG_CONFIG_HOME/user-dirs.dirs ("XDG_DOCUMENTS_DIR"), read as bytes;
// `fallbackUnderHome` below the home folder when the file or the line is missing.
FilePath userDir(const char* key, const char* fallbackUnderHome);
FilePath picturesDir();   // XDG_PICTURES_DIR from user-dirs.dirs, else ~/Pictures

FilePath orwickDataDir(); // $XDG_DATA_HOME/Orwick: trash-log.json, frecency.json, columns.json…
FilePath orwickConfigFile(); // $XDG_CONFIG_HOME/Orwick/Orwick.conf
FilePath homeTrash();     // $XDG_DATA_HOME/Trash
FilePath recentFilesList(); // $XDG_DATA_HOME/recently-used.xbel

} // namespace orwick::xdg
