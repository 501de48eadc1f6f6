#pragma once
// ServerMounts: the servers gvfs has mounted for this user, as folders of its FUSE folder
// ($XDG_RUNTIME_DIR/gvfs, or ~/.cache/gvfs where there is no runtime folder), each with its
// address and the local path Orwick opens; and unmounting one (`gio mount -u`).
//
// The FUSE folder is found in the kernel's mount table (never waits). Listing it is answered by
// gvfs's FUSE program from its own table, but that program can hang with a server: call
// mounted() off the GUI thread, with a time limit (Locations and ServerConnection do).

#include "base/FilePath.h"
#include "base/Result.h"
#include "servers/ServerAddress.h"

#include <QObject>
#include <functional>

namespace orwick {

struct MountedServer {
    ServerAddress address; // as gvfs names it (no folder below the mount)
    FilePath localPath;    // the mount's folder under the FUSE folder
    bool operator==(const MountedServer&) const = default;
};

namespace ServerMounts {

// gvfs's FUSE folder when it is mounted, else an empty path.
FilePath fuseRoot();
// True when `path` lies in gvfs's FUSE folder.
bool isServerPath(const FilePath& path);

// True when `path` lies in gvfs's FUSE folder under a mount that is no longer there (the server
// went away or was disconnected). Looks at the FUSE folder's own entries only.
bool isDisconnected(const FilePath& path);

// The servers mounted now, by name. Blocks while gvfs's FUSE program answers.
QList<MountedServer> mounted();
QList<MountedServer> mountedIn(const FilePath& fuseRoot);

// Where `address` shows on this computer, given the mounts: the mount's folder plus the folder
// the address names below it. None when no mount serves it.
std::optional<FilePath> localPathFor(const ServerAddress& address, const QList<MountedServer>& mounts);

// Unmounts the server whose mount holds `localPath` (gio mount -u, as a process); `done` gets
// the outcome on the GUI thread, with gio's reason as the error. Dropped when `owner` goes.
void unmount(QObject* owner, const FilePath& localPath, std::function<void(Status)> done);

} // namespace ServerMounts
} // namespace orwick
