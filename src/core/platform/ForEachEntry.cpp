#include "platform/ForEachEntry.h"

#include <dirent.h>

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

} // namespace orwick
