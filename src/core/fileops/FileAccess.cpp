#include "fileops/FileAccess.h"

#include <sys/stat.h>

namespace orwick {

std::optional<FileAccess> FileAccess::of(const FilePath& path)
{
    struct stat st {};
    if (::lstat(path.c_str(), &st) != 0)
        return std::nullopt;
    return FileAccess{static_cast<unsigned>(st.st_mode & 07777), st.st_uid, st.st_gid};
}

QString FileAccess::permissionText(unsigned mode)
{
    QString text;
    for (int shift = 6; shift >= 0; shift -= 3) {
        text += (mode >> shift) & 4 ? QLatin1Char('r') : QLatin1Char('-');
        text += (mode >> shift) & 2 ? QLatin1Char('w') : QLatin1Char('-');
        text += (mode >> shift) & 1 ? QLatin1Char('x') : QLatin1Char('-');
    }
    return text;
}

} // namespace orwick
