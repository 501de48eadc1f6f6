#pragma once
// The one loop over getdents64's buffer: every entry of an open folder but "." and "..", with its
// name as the kernel gave it (no copy), its type and inode. DirectoryReader, the folder
// comparison's walk and batch rename's name table each keep names their own way on top of it.

#include "base/CancelFlag.h"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <dirent.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace orwick {

// Calls visit(name, length, type, inode) for each entry, reading through `buffer` (a large one
// makes fewer calls); `type` is DT_UNKNOWN where the file system doesn't say. A visit returns
// false to stop. True when the folder was read to its end; false when it can't be read, the
// read was cancelled or a visit stopped it.
template <typename Visit>
bool forEachRawEntry(int fd, char* buffer, std::size_t size, const CancelFlag* cancel, Visit&& visit)
{
    for (;;) {
        if (cancel && cancel->isCancelled())
            return false;
        const long n = syscall(SYS_getdents64, fd, buffer, size);
        if (n == 0)
            return true;
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        for (long offset = 0; offset < n;) {
            const auto* entry = reinterpret_cast<const struct dirent64*>(buffer + offset);
            offset += entry->d_reclen;
            const char* name = entry->d_name;
            if (name[0] == '.' && (name[1] == 0 || (name[1] == '.' && name[2] == 0)))
                continue;
            if (!visit(name, std::strlen(name), entry->d_type, entry->d_ino))
                return false;
        }
    }
}

} // namespace orwick
