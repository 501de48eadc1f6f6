#include "search/SearchRoots.h"

#include "platform/XdgPaths.h"

#include <QFile>
#include <QList>

namespace orwick::SearchRoots {

namespace {

struct Mount {
    QByteArray point;
    QByteArray type;
    QByteArray source;
};

// mountinfo writes a space as \040, a tab as \011 and so on.
QByteArray unescape(const QByteArray& field)
{
    QByteArray out;
    out.reserve(field.size());
    for (qsizetype i = 0; i < field.size(); ++i) {
        if (field[i] == '\\' && i + 3 < field.size() && field.mid(i + 1, 3).toInt(nullptr, 8) > 0) {
            out.append(char(field.mid(i + 1, 3).toInt(nullptr, 8)));
            i += 3;
        } else {
            out.append(field[i]);
        }
    }
    return out;
}

QList<Mount> readMounts()
{
    QList<Mount> mounts;
    QFile file(QStringLiteral("/proc/self/mountinfo"));
    if (!file.open(QIODevice::ReadOnly))
        return mounts;
    // "36 35 98:0 /mnt1 /mnt/parent rw,noatime master:1 - ext3 /dev/root rw,errors=continue"
    for (const QByteArray& line : file.readAll().split('\n')) {
        const QList<QByteArray> fields = line.split(' ');
        const qsizetype dash = fields.indexOf("-");
        if (fields.size() < 5 || dash < 0 || dash + 2 >= fields.size())
            continue;
        mounts.append({unescape(fields[4]), fields[dash + 1], fields[dash + 2]});
    }
    return mounts;
}

bool isNetwork(const QByteArray& type)
{
    return type.startsWith("nfs") || type == "cifs" || type == "smb3" || type == "smbfs" || type == "fuse.sshfs"
        || type == "sshfs" || type == "fuse.gvfsd-fuse" || type == "fuse.rclone" || type == "davfs" || type == "9p"
        || type == "afs" || type == "ceph";
}

bool isPseudo(const QByteArray& type)
{
    static const QList<QByteArray> pseudo{"proc", "sysfs", "devtmpfs", "devpts", "cgroup", "cgroup2", "securityfs",
                                          "pstore", "debugfs", "tracefs", "configfs", "fusectl", "mqueue", "hugetlbfs",
                                          "autofs", "binfmt_misc", "bpf", "efivarfs", "nsfs", "rpc_pipefs", "fuse.portal"};
    return pseudo.contains(type);
}

} // namespace

std::vector<FilePath> homeAndDrives()
{
    const FilePath home = xdg::home();
    std::vector<FilePath> roots{home};
    for (const Mount& mount : readMounts()) {
        if (!mount.source.startsWith("/dev/") || isNetwork(mount.type) || isPseudo(mount.type))
            continue;
        const FilePath point = FilePath::fromNative(mount.point);
        const QByteArray& bytes = point.native();
        const bool isDrivePlace = bytes.startsWith("/media/") || bytes.startsWith("/run/media/") || bytes.startsWith("/mnt/");
        if (!isDrivePlace || home.contains(point))
            continue;
        bool covered = false;
        for (const FilePath& root : roots)
            covered = covered || root.contains(point);
        if (!covered)
            roots.push_back(point);
    }
    return roots;
}

QSet<QByteArray> closedMountPoints()
{
    QSet<QByteArray> closed;
    for (const Mount& mount : readMounts())
        if (isNetwork(mount.type) || isPseudo(mount.type))
            closed.insert(FilePath::fromNative(mount.point).native());
    return closed;
}

} // namespace orwick::SearchRoots
