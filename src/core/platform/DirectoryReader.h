#pragma once
// The fast way to read a folder on Linux: one descriptor, getdents64 with a large buffer, and
// statx relative to the descriptor, never following links unless asked. Every walker (listing,
// duplicates, space, clean-up) reads folders through this.

#include "base/CancelFlag.h"
#include "base/FilePath.h"

#include <QByteArray>
#include <optional>
#include <vector>

namespace orwick {

enum class FollowLinks { no, yes };

// One entry as getdents64 gives it.
struct DirEntry {
    QByteArray name;
    unsigned char type = 0; // DT_REG, DT_DIR, DT_LNK…; DT_UNKNOWN where the file system does not say
    quint64 inode = 0;
};

// What statx says of one entry.
struct EntryStat {
    unsigned mode = 0;      // file type and permission bits, as st_mode
    qint64 size = 0;
    qint64 modifiedNs = 0;  // nanoseconds since the epoch
    quint64 inode = 0;
    quint64 device = 0;     // major << 32 | minor; differs from the parent's at a mount point
    quint64 blocks = 0;     // 512-byte blocks allocated
    quint32 links = 0;

    bool isDirectory() const;
    bool isRegular() const;
    bool isSymlink() const;
    qint64 modifiedMs() const { return modifiedNs / 1000000; }
    qint64 allocatedBytes() const { return qint64(blocks) * 512; }
};

// An open folder. Closes its descriptor when destroyed.
class DirectoryHandle {
public:
    DirectoryHandle() = default;
    DirectoryHandle(DirectoryHandle&& other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}
    DirectoryHandle& operator=(DirectoryHandle&& other) noexcept;
    ~DirectoryHandle();

    // Opens a folder by path (a link to a folder is followed); errno is kept on failure.
    static std::optional<DirectoryHandle> open(const FilePath& path);
    // Opens a sub-folder relative to an open one, never following a link.
    static std::optional<DirectoryHandle> openChild(int parentFd, const char* name);
    // Opens a folder by path; with FollowLinks::no a link in the last component is refused.
    static std::optional<DirectoryHandle> open(const FilePath& path, FollowLinks follow);

    int fd() const { return m_fd; }
    bool isOpen() const { return m_fd >= 0; }

    // Appends every entry but "." and "..". False when the folder can't be read (or was
    // cancelled); what was read before stays in `out`.
    bool readEntries(std::vector<DirEntry>& out, const CancelFlag* cancel = nullptr) const;

private:
    explicit DirectoryHandle(int fd) : m_fd(fd) {}
    int m_fd = -1;
};

// statx of `name` inside the folder `dirFd` (or of an absolute path with dirFd = AT_FDCWD).
std::optional<EntryStat> statAt(int dirFd, const char* name, FollowLinks follow = FollowLinks::no);
std::optional<EntryStat> statPath(const FilePath& path, FollowLinks follow = FollowLinks::no);
// statx of an open descriptor (the folder itself: its device, its own blocks).
std::optional<EntryStat> statFd(int fd);
// Only type, size, mtime, inode, device and blocks: the walkers' lean per-entry call, which the
// kernel answers without syncing remote attributes.
std::optional<EntryStat> statForWalk(int dirFd, const char* name);

// The stored target of a symbolic link, as bytes.
std::optional<QByteArray> readLinkAt(int dirFd, const char* name);

} // namespace orwick
