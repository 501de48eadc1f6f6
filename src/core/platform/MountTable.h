#pragma once
// MountTable: the kernel's list of mounts (/proc/self/mountinfo), read without touching any of
// the mounted file systems, so it never waits on a server that stopped answering. Tells network
// mounts (nfs, cifs, sshfs, the gvfs FUSE folder…) from local ones, and which mount holds a path.
// Plain functions, safe on any thread.

#include "base/FilePath.h"

#include <QList>
#include <optional>

namespace orwick {

struct MountEntry {
    FilePath point;    // where it is mounted
    QByteArray type;   // "ext4", "tmpfs", "fuse.gvfsd-fuse"…
    QByteArray source; // "/dev/sda1", "server:/export", "gvfsd-fuse"…
    bool operator==(const MountEntry&) const = default;
};

// Every mount, in the kernel's order (a mount over another comes after it). Kept between calls
// and read again only after the kernel says a mount came or went (mountinfo is pollable), so a
// pane asking on every folder change costs a poll, not a read of a few hundred lines.
QList<MountEntry> readMountTable();
// Parses the text of a mountinfo file.
QList<MountEntry> parseMountTable(QByteArrayView text);

// File systems whose reads go over the network (or through a FUSE program that may): their
// folders are read with a time limit and never from the GUI thread.
bool isNetworkFileSystem(QByteArrayView type);
// The kernel's own file systems (proc, sysfs, cgroup…), which hold no user files.
bool isKernelFileSystem(QByteArrayView type);

// The mount that holds `path` (the last mounted one with the longest point), if any.
std::optional<MountEntry> mountHolding(const FilePath& path, const QList<MountEntry>& table);
// True when `path` lies on a network mount of `table` (read afresh when not given).
bool isOnNetworkMount(const FilePath& path);
bool isOnNetworkMount(const FilePath& path, const QList<MountEntry>& table);
// True when reading `path` fails because its server is gone (not connected, I/O error, timed
// out), rather than because the folder is missing or closed. May wait on the server.
bool isConnectionLost(const FilePath& path);

} // namespace orwick
