#pragma once
// The computer's drives as a person thinks of them: mounted real devices and network shares,
// not the kernel's pseudo file systems, snaps or overlays.

#include "files/FilePath.h"

#include <QList>

namespace orwick {

struct Drive {
    QString name;        // the volume's label, else the mount point's name ("System" for /)
    FilePath root;       // where it is mounted
    qint64 freeBytes = 0;
    qint64 totalBytes = 0;
    QString fileSystem;  // "ext4", "nfs"…
    bool isNetwork = false;
    bool isRemovable = false;
};

// Mounted drives, the system drive first, then by name.
QList<Drive> listDrives();

} // namespace orwick
