#include "platform/Drives.h"

#include "files/NaturalCompare.h"

#include <QStorageInfo>
#include <algorithm>

namespace orwick {

namespace {

bool isNetworkFileSystem(const QByteArray& type)
{
    return type.startsWith("nfs") || type == "cifs" || type == "smb3" || type == "smbfs" || type == "fuse.sshfs"
        || type == "fuse.rclone" || type == "9p" || type == "davfs";
}

bool isPseudoMount(const QStorageInfo& volume)
{
    const QByteArray type = volume.fileSystemType();
    const QString root = volume.rootPath();
    static const QList<QByteArray> pseudo{"proc", "sysfs", "devtmpfs", "devpts", "tmpfs", "cgroup", "cgroup2", "overlay",
                                          "squashfs", "securityfs", "pstore", "debugfs", "tracefs", "configfs", "fusectl",
                                          "mqueue", "hugetlbfs", "autofs", "binfmt_misc", "bpf", "efivarfs", "nsfs",
                                          "ramfs", "rpc_pipefs", "fuse.gvfsd-fuse", "fuse.portal"};
    if (pseudo.contains(type) && root != QLatin1StringView("/"))
        return true;
    for (const char* prefix : {"/proc", "/sys", "/dev", "/run/user", "/snap", "/var/lib/docker", "/boot/efi"})
        if (root == QLatin1StringView(prefix) || root.startsWith(QLatin1StringView(prefix) + QLatin1Char('/')))
            return true;
    return false;
}

} // namespace

QList<Drive> listDrives()
{
    QList<Drive> drives;
    for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
        if (!volume.isValid() || !volume.isReady() || isPseudoMount(volume))
            continue;
        const QByteArray type = volume.fileSystemType();
        const bool network = isNetworkFileSystem(type);
        if (!network && !volume.device().startsWith("/dev/") && volume.rootPath() != QLatin1StringView("/"))
            continue;
        Drive drive;
        drive.root = FilePath::fromText(volume.rootPath());
        drive.name = volume.rootPath() == QLatin1StringView("/") ? QStringLiteral("System")
                   : !volume.name().isEmpty() ? volume.name() : drive.root.fileName();
        drive.freeBytes = volume.bytesAvailable();
        drive.totalBytes = volume.bytesTotal();
        drive.fileSystem = QString::fromUtf8(type);
        drive.isNetwork = network;
        drive.isRemovable = volume.rootPath().startsWith(QLatin1StringView("/media/")) || volume.rootPath().startsWith(QLatin1StringView("/run/media/"));
        drives.append(drive);
    }
    std::stable_sort(drives.begin(), drives.end(), [](const Drive& a, const Drive& b) {
        if (a.root.isRoot() != b.root.isRoot())
            return a.root.isRoot();
        return naturalCompare(a.name, b.name) < 0;
    });
    return drives;
}

} // namespace orwick
