#include "platform/Drives.h"

#include "base/Formatting.h"
#include "base/NaturalCompare.h"

#include <QFile>
#include <QStorageInfo>
#include <algorithm>

namespace orwick {

namespace {

bool isNetworkFileSystem(const QByteArray& type)
{
    return type.startsWith("nfs") || type == "cifs" || type == "smb3" || type == "smbfs" || type == "fuse.sshfs"
        || type == "fuse.rclone" || type == "9p" || type == "davfs" || type == "afs" || type == "ceph";
}

bool isEjectable(const QStorageInfo& volume)
{
    // A removable disk says so in sysfs; a partition asks its disk ("sdb1/../removable").
    const QByteArray device = volume.device();
    if (!device.startsWith("/dev/"))
        return false;
    const QString block = QStringLiteral("/sys/class/block/") + QString::fromUtf8(device.mid(5));
    for (const QString& path : {block + QStringLiteral("/removable"), block + QStringLiteral("/../removable")}) {
        QFile flag(path);
        if (flag.open(QIODevice::ReadOnly))
            return flag.readAll().trimmed() == "1";
    }
    const QString root = volume.rootPath();
    return root.startsWith(QLatin1StringView("/media/")) || root.startsWith(QLatin1StringView("/run/media/"));
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

QString Drive::freeText() const { return formatByteCount(free) + QStringLiteral(" free of ") + formatByteCount(total); }

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
        drive.url = FilePath::fromText(volume.rootPath());
        drive.isStartup = drive.url.isRoot();
        drive.name = drive.isStartup ? QStringLiteral("System") : !volume.name().isEmpty() ? volume.name() : drive.url.fileName();
        drive.free = volume.bytesAvailable();
        drive.total = volume.bytesTotal();
        drive.format = QString::fromUtf8(type);
        drive.isNetwork = network;
        drive.isEjectable = !drive.isStartup && !network && isEjectable(volume);
        drives.append(drive);
    }
    std::stable_sort(drives.begin(), drives.end(), [](const Drive& a, const Drive& b) {
        if (a.isStartup != b.isStartup)
            return a.isStartup;
        return naturalCompare(a.name, b.name) < 0;
    });
    return drives;
}

} // namespace orwick
