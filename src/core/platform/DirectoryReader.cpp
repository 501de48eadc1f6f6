#include "platform/DirectoryReader.h"

#include "platform/RawEntries.h"

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace orwick {

namespace {

constexpr size_t kReadBufferSize = 256 * 1024;

} // namespace

bool EntryStat::isDirectory() const { return S_ISDIR(mode); }
bool EntryStat::isRegular() const { return S_ISREG(mode); }
bool EntryStat::isSymlink() const { return S_ISLNK(mode); }

DirectoryHandle& DirectoryHandle::operator=(DirectoryHandle&& other) noexcept
{
    if (this != &other) {
        if (m_fd >= 0)
            ::close(m_fd);
        m_fd = std::exchange(other.m_fd, -1);
    }
    return *this;
}

DirectoryHandle::~DirectoryHandle()
{
    if (m_fd >= 0)
        ::close(m_fd);
}

std::optional<DirectoryHandle> DirectoryHandle::open(const FilePath& path)
{
    const int fd = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return std::nullopt;
    return DirectoryHandle(fd);
}

std::optional<DirectoryHandle> DirectoryHandle::openChild(int parentFd, const char* name)
{
    const int fd = ::openat(parentFd, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW);
    if (fd < 0)
        return std::nullopt;
    return DirectoryHandle(fd);
}

std::optional<DirectoryHandle> DirectoryHandle::open(const FilePath& path, FollowLinks follow)
{
    const int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | (follow == FollowLinks::no ? O_NOFOLLOW : 0);
    const int fd = ::open(path.c_str(), flags);
    if (fd < 0)
        return std::nullopt;
    return DirectoryHandle(fd);
}

bool DirectoryHandle::readEntries(std::vector<DirEntry>& out, const CancelFlag* cancel) const
{
    if (m_fd < 0)
        return false;
    // One buffer per thread: a walker reads thousands of folders.
    thread_local std::unique_ptr<char[]> buffer(new char[kReadBufferSize]);
    return forEachRawEntry(m_fd, buffer.get(), kReadBufferSize, cancel,
                           [&out](const char* name, size_t length, unsigned char type, ino64_t inode) {
                               out.push_back({QByteArray(name, qsizetype(length)), type, inode});
                               return true;
                           });
}

namespace {
std::optional<EntryStat> statxEntry(int dirFd, const char* name, int flags, unsigned mask)
{
    struct statx sx;
    if (statx(dirFd, name, flags, mask, &sx) != 0)
        return std::nullopt;
    EntryStat st;
    st.mode = sx.stx_mode;
    st.size = qint64(sx.stx_size);
    st.modifiedNs = qint64(sx.stx_mtime.tv_sec) * 1000000000 + sx.stx_mtime.tv_nsec;
    st.inode = sx.stx_ino;
    st.device = (quint64(sx.stx_dev_major) << 32) | sx.stx_dev_minor;
    st.blocks = sx.stx_blocks;
    st.links = sx.stx_nlink;
    return st;
}
} // namespace

std::optional<EntryStat> statAt(int dirFd, const char* name, FollowLinks follow)
{
    const int flags = (follow == FollowLinks::no ? AT_SYMLINK_NOFOLLOW : 0) | AT_NO_AUTOMOUNT;
    const unsigned mask = STATX_TYPE | STATX_MODE | STATX_SIZE | STATX_MTIME | STATX_INO | STATX_BLOCKS | STATX_NLINK;
    return statxEntry(dirFd, name, flags, mask);
}

std::optional<EntryStat> statFd(int fd)
{
    return statxEntry(fd, "", AT_EMPTY_PATH, STATX_TYPE | STATX_MODE | STATX_INO | STATX_BLOCKS);
}

std::optional<EntryStat> statForWalk(int dirFd, const char* name)
{
    const int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | AT_STATX_DONT_SYNC;
    return statxEntry(dirFd, name, flags, STATX_TYPE | STATX_MODE | STATX_SIZE | STATX_MTIME | STATX_INO | STATX_BLOCKS);
}

std::optional<EntryStat> statPath(const FilePath& path, FollowLinks follow)
{
    return statAt(AT_FDCWD, path.c_str(), follow);
}

std::optional<QByteArray> readLinkAt(int dirFd, const char* name)
{
    QByteArray target(256, Qt::Uninitialized);
    for (;;) {
        const ssize_t n = readlinkat(dirFd, name, target.data(), target.size());
        if (n < 0)
            return std::nullopt;
        if (n < target.size()) {
            target.truncate(n);
            return target;
        }
        if (target.size() > 65536)
            return std::nullopt;
        target.resize(target.size() * 4);
    }
}

} // namespace orwick
