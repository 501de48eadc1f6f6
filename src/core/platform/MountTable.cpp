#include "platform/MountTable.h"

#include "platform/UniqueFd.h"

#include <cerrno>
#include <fcntl.h>
#include <mutex>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick {

namespace {

// mountinfo writes a space as \040, a tab as \011, a backslash as \134.
QByteArray unescape(QByteArrayView field)
{
    QByteArray out;
    out.reserve(field.size());
    for (qsizetype i = 0; i < field.size(); ++i) {
        if (field[i] == '\\' && i + 3 < field.size()) {
            bool ok = false;
            const int code = field.sliced(i + 1, 3).toByteArray().toInt(&ok, 8);
            if (ok && code > 0 && code < 256) {
                out.append(char(code));
                i += 3;
                continue;
            }
        }
        out.append(field[i]);
    }
    return out;
}

} // namespace

QList<MountEntry> parseMountTable(QByteArrayView text)
{
    QList<MountEntry> mounts;
    // "36 35 98:0 /mnt1 /mnt/parent rw,noatime master:1 - ext3 /dev/root rw,errors=continue"
    for (const QByteArray& line : text.toByteArray().split('\n')) {
        const QList<QByteArray> fields = line.split(' ');
        const qsizetype dash = fields.indexOf("-");
        if (fields.size() < 5 || dash < 5 || dash + 2 >= fields.size())
            continue;
        mounts.append({FilePath::fromNative(unescape(fields[4])), fields[dash + 1], unescape(fields[dash + 2])});
    }
    return mounts;
}

namespace {

// The whole of an open mountinfo, read from its start.
std::optional<QByteArray> readFromStart(int fd)
{
    if (::lseek(fd, 0, SEEK_SET) != 0)
        return std::nullopt;
    QByteArray text;
    char buffer[16384];
    for (;;) {
        const ssize_t got = ::read(fd, buffer, sizeof buffer);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return std::nullopt;
        if (got == 0)
            return text;
        text.append(buffer, got);
    }
}

// mountinfo marks itself with POLLPRI once after each change to the mounts, as seen by this
// descriptor; a table read after the mark is current until the next one.
struct CachedTable {
    std::mutex lock;
    UniqueFd fd;
    QList<MountEntry> table;
    bool read = false;
};

} // namespace

QList<MountEntry> readMountTable()
{
    static CachedTable& cache = *new CachedTable; // never destroyed: detached threads may still ask at exit
    const std::lock_guard<std::mutex> locked(cache.lock);
    if (!cache.fd.ok()) {
        cache.fd = UniqueFd(::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC));
        if (!cache.fd.ok())
            return {};
        cache.read = false;
    }
    if (cache.read) {
        pollfd watch{cache.fd.get(), POLLPRI, 0};
        if (::poll(&watch, 1, 0) == 0)
            return cache.table;
    }
    const std::optional<QByteArray> text = readFromStart(cache.fd.get());
    if (!text) {
        cache.fd = UniqueFd();
        return {};
    }
    cache.table = parseMountTable(*text);
    cache.read = true;
    return cache.table;
}

bool isNetworkFileSystem(QByteArrayView type)
{
    if (type.startsWith("nfs") || type.startsWith("fuse.") || type == "fuse")
        return type != "fuse.portal"; // any FUSE program may hang like a server; fuseblk disks don't
    static const QByteArrayView network[] = {"cifs", "smb3", "smbfs", "sshfs", "davfs", "9p", "afs", "ceph", "glusterfs", "lustre"};
    for (QByteArrayView name : network)
        if (type == name)
            return true;
    return false;
}

bool isKernelFileSystem(QByteArrayView type)
{
    static const QByteArrayView kernel[] = {"proc", "sysfs", "devpts", "cgroup", "cgroup2", "securityfs", "pstore",
                                            "debugfs", "tracefs", "configfs", "fusectl", "mqueue", "hugetlbfs", "autofs",
                                            "binfmt_misc", "bpf", "efivarfs", "nsfs", "rpc_pipefs", "fuse.portal"};
    for (QByteArrayView name : kernel)
        if (type == name)
            return true;
    return false;
}

std::optional<MountEntry> mountHolding(const FilePath& path, const QList<MountEntry>& table)
{
    std::optional<MountEntry> best;
    for (const MountEntry& mount : table)
        if (mount.point.contains(path) && (!best || mount.point.native().size() >= best->point.native().size()))
            best = mount;
    return best;
}

bool isOnNetworkMount(const FilePath& path, const QList<MountEntry>& table)
{
    const auto mount = mountHolding(path, table);
    return mount && isNetworkFileSystem(mount->type);
}

bool isOnNetworkMount(const FilePath& path) { return isOnNetworkMount(path, readMountTable()); }

bool isConnectionLost(const FilePath& path)
{
    struct stat st {};
    if (::stat(path.c_str(), &st) == 0)
        return false;
    const int error = errno;
    return error == ENOTCONN || error == EIO || error == ETIMEDOUT || error == ECONNABORTED || error == ECONNRESET
        || error == EHOSTUNREACH || error == EHOSTDOWN;
}

} // namespace orwick
