#pragma once
// AllTrashes: every Trash folder the user has — the home Trash ($XDG_DATA_HOME/Trash) and, on
// each other mounted file system, $topdir/.Trash/$UID and $topdir/.Trash-$UID — that exists and
// passes the safety checks of TrashFolder.h. The Trash listing, its count and Empty Trash read
// all of them.
//
// Mounts come from the kernel's table (MountTable.h). The system's own places (/dev, /proc, /sys,
// /run but /run/media) hold no user's files; network mounts are passed over because looking for
// a folder on a server that stopped answering could wait forever. One lstat per candidate; call
// it off the GUI thread all the same. Safe on any thread.

#include "base/FilePath.h"
#include "platform/MountTable.h"

#include <QList>

namespace orwick::trash {

// The home Trash first (when it exists), then the volumes' Trash folders in mount order, each once.
QList<FilePath> allTrashFolders();
QList<FilePath> allTrashFolders(const QList<MountEntry>& mounts);

// How many items lie directly in `files/` of every Trash folder.
int countAllItems();
// Items directly in `files/` of one Trash folder.
int countItems(const FilePath& trashFolder);

} // namespace orwick::trash
