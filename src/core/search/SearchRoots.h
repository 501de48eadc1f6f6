#pragma once
// Where searches look beyond one folder, and where they must not go: read from the kernel's
// mount table (/proc/self/mountinfo), which never blocks on a hung network share.

#include "base/FilePath.h"

#include <QSet>
#include <vector>

namespace orwick::SearchRoots {

// The home folder, then every mounted drive outside it (real devices under /media, /run/media
// and /mnt): what "Home and Drives" searches.
std::vector<FilePath> homeAndDrives();

// Mount points of network file systems (nfs, cifs, smb3, sshfs, gvfs…) and of the kernel's
// pseudo file systems (proc, sysfs…): a search never enters one from outside.
QSet<QByteArray> closedMountPoints();

} // namespace orwick::SearchRoots
