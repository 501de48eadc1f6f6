#pragma once
// The computer's drives as a person thinks of them: mounted real devices and network shares,
// not the kernel's pseudo file systems, snaps or overlays. The This Computer listing and the
// space tools' drive breakdown both read them. listDrives() asks every mount for its space, and
// a hung network share can block that: call it off the GUI thread.

#include "base/FilePath.h"

#include <QList>

namespace orwick {

struct Drive {
    FilePath url;          // where it is mounted
    QString name;          // the volume's label, else the mount point's name ("System" for /)
    qint64 total = 0;      // bytes
    qint64 free = 0;       // bytes available to this user
    QString format;        // the file system's name: "ext4", "btrfs", "nfs4"…
    bool isStartup = false; // mounted at /
    bool isEjectable = false;
    bool isNetwork = false;

    // "12.3 GB free of 256.1 GB"
    QString freeText() const;
};

// Mounted drives, the startup drive first, then by name.
QList<Drive> listDrives();

} // namespace orwick
