#include "platform/ForEachEntry.h"

#include <dirent.h>
#include <sys/stat.h>

namespace orwick {

bool forEachEntry(const FilePath& folder, const CancelFlag* cancel,
                  const std::function<void(QByteArrayView name, unsigned char type)>& visit)
{
    DIR* dir = ::opendir(folder.c_str());
    if (!dir)
        return false;
    while (const dirent* entry = ::readdir(dir)) {
        if (cancel && cancel->isCancelled())
            break;
        const QByteArrayView name(entry->d_name);
        if (name == "." || name == "..")
            continue;
        visit(name, entry->d_type);
    }
    ::closedir(dir);
    return true;
}

unsigned char entryType(const FilePath& path, unsigned char type)
{
    if (type != DT_UNKNOWN)
        return type;
    struct stat st {};
    if (::lstat(path.c_str(), &st) != 0)
        return DT_UNKNOWN;
    return S_ISDIR(st.st_mode) ? DT_DIR : S_ISREG(st.st_mode) ? DT_REG : DT_LNK;
}

} // namespace orwick
