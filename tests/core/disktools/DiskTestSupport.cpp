#include "DiskTestSupport.h"

#include <cstdio>
#include <linux/capability.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace orwick::test {

namespace {

bool capabilities(__user_cap_data_struct (&data)[2], bool write)
{
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    return syscall(write ? SYS_capset : SYS_capget, &header, data) == 0;
}

constexpr unsigned kOverrideBits = (1u << CAP_DAC_OVERRIDE) | (1u << CAP_DAC_READ_SEARCH);

} // namespace

WithoutPermissionOverride::WithoutPermissionOverride()
{
    __user_cap_data_struct data[2] = {};
    if (!capabilities(data, false) || !(data[0].effective & kOverrideBits))
        return;
    data[0].effective &= ~kOverrideBits; // still permitted, so it can be raised again
    m_dropped = capabilities(data, true);
}

WithoutPermissionOverride::~WithoutPermissionOverride()
{
    __user_cap_data_struct data[2] = {};
    if (m_dropped && capabilities(data, false)) {
        data[0].effective |= kOverrideBits & data[0].permitted;
        capabilities(data, true);
    }
}

TemporaryMount::TemporaryMount(const FilePath& folder) : m_folder(folder)
{
    m_mounted = ::mount("orwick-test", folder.c_str(), "tmpfs", 0, "size=4m") == 0;
}

TemporaryMount::~TemporaryMount()
{
    if (m_mounted)
        ::umount2(m_folder.c_str(), MNT_DETACH);
}

void makeHardLink(const FilePath& existing, const FilePath& link)
{
    if (::link(existing.c_str(), link.c_str()) != 0)
        perror("makeHardLink");
}

void setMode(const FilePath& path, unsigned mode) { ::chmod(path.c_str(), mode); }

QByteArray patternBytes(qint64 size, int seed)
{
    QByteArray bytes(size, Qt::Uninitialized);
    quint32 state = quint32(seed) * 2654435761u + 1;
    for (qint64 i = 0; i < size; ++i) {
        state = state * 1664525u + 1013904223u;
        bytes[i] = char(state >> 24);
    }
    return bytes;
}

} // namespace orwick::test
