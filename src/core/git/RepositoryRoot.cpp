#include "git/RepositoryRoot.h"

#include <unistd.h>

namespace orwick {

std::optional<FilePath> findRepositoryRoot(const FilePath& folder)
{
    for (FilePath current = folder; !current.isEmpty() && !current.isRoot(); current = current.parent()) {
        if (access(current.child(QByteArrayView(".git")).c_str(), F_OK) == 0)
            return current;
    }
    return std::nullopt;
}

} // namespace orwick
