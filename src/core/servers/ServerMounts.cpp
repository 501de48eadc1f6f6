#include "servers/ServerMounts.h"

#include "platform/MountTable.h"
#include "platform/XdgPaths.h"

#include <QPointer>
#include <QProcess>
#include <dirent.h>

namespace orwick::ServerMounts {

namespace {

constexpr QByteArrayView kFuseType = "fuse.gvfsd-fuse";

QString gioReason(const QByteArray& errorOutput)
{
    // "gio: sftp://host/: Connection refused by server" → the part after the address.
    const QString text = QString::fromLocal8Bit(errorOutput).trimmed().section(QLatin1Char('\n'), -1);
    const qsizetype at = text.lastIndexOf(QLatin1StringView(": "));
    return at >= 0 ? text.mid(at + 2) : text;
}

} // namespace

FilePath fuseRoot()
{
    const QList<MountEntry> table = readMountTable();
    QList<FilePath> found;
    for (const MountEntry& mount : table)
        if (mount.type == kFuseType)
            found.append(mount.point);
    if (found.isEmpty())
        return {};
    const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
    const FilePath preferred[] = {runtime.isEmpty() ? FilePath() : FilePath::fromNative(runtime).child(QByteArrayView("gvfs")),
                                  xdg::home().child(QByteArrayView(".cache/gvfs"))};
    for (const FilePath& candidate : preferred)
        if (!candidate.isEmpty() && found.contains(candidate))
            return candidate;
    return {}; // another user's or another session's FUSE folder is not ours to show
}

bool isServerPath(const FilePath& path)
{
    const FilePath root = fuseRoot();
    return !root.isEmpty() && root.isAncestorOf(path);
}

bool isDisconnected(const FilePath& path)
{
    const FilePath root = fuseRoot();
    if (root.isEmpty() || !root.isAncestorOf(path))
        return false;
    FilePath mount = path;
    while (mount.parent() != root)
        mount = mount.parent();
    const QList<MountedServer> servers = mountedIn(root);
    return std::none_of(servers.begin(), servers.end(), [&mount](const MountedServer& server) { return server.localPath == mount; });
}

QList<MountedServer> mounted() { return mountedIn(fuseRoot()); }

QList<MountedServer> mountedIn(const FilePath& root)
{
    QList<MountedServer> servers;
    if (root.isEmpty())
        return servers;
    DIR* dir = ::opendir(root.c_str());
    if (!dir)
        return servers;
    while (const dirent* entry = ::readdir(dir)) {
        const QByteArrayView name(entry->d_name);
        if (name.startsWith('.'))
            continue;
        if (auto address = ServerAddress::fromGvfsName(name))
            servers.append({*address, root.child(name)});
    }
    ::closedir(dir);
    std::sort(servers.begin(), servers.end(), [](const MountedServer& a, const MountedServer& b) {
        return a.address.displayName().localeAwareCompare(b.address.displayName()) < 0;
    });
    return servers;
}

std::optional<FilePath> localPathFor(const ServerAddress& address, const QList<MountedServer>& mounts)
{
    for (const MountedServer& mount : mounts) {
        if (!address.isServedBy(mount.address))
            continue;
        const QString below = address.folderBelowMount(mount.address);
        return below.isEmpty() ? mount.localPath : FilePath::fromNative(mount.localPath.native() + below.toUtf8());
    }
    return std::nullopt;
}

void unmount(QObject* owner, const FilePath& localPath, std::function<void(Status)> done)
{
    // The mount's own folder names the server: "sftp:host=…" back to its address.
    FilePath mountFolder = localPath;
    const FilePath root = fuseRoot();
    while (!root.isEmpty() && mountFolder.parent() != root && !mountFolder.isRoot())
        mountFolder = mountFolder.parent();
    const auto address = ServerAddress::fromGvfsName(mountFolder.fileNameBytes());
    if (root.isEmpty() || !address) {
        done(failure(QStringLiteral("it isn’t a server Orwick knows")));
        return;
    }
    auto* process = new QProcess(owner);
    QObject::connect(process, &QProcess::errorOccurred, owner, [process, done](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart)
            return;
        done(failure(QStringLiteral("the gio program isn’t installed (package libglib2.0-bin)")));
        process->deleteLater();
    });
    QObject::connect(process, &QProcess::finished, owner, [process, done](int code, QProcess::ExitStatus status) {
        if (status == QProcess::NormalExit && code == 0)
            done({});
        else
            done(failure(gioReason(process->readAllStandardError())));
        process->deleteLater();
    });
    process->start(QStringLiteral("gio"), {QStringLiteral("mount"), QStringLiteral("-u"), address->toString()});
}

} // namespace orwick::ServerMounts
