#include "cli/ProgramFolder.h"

#include <unistd.h>

namespace orwick::cli {

std::string programFolder()
{
    char path[4096];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path - 1);
    if (length <= 0)
        return {};
    std::string own(path, std::size_t(length));
    return own.substr(0, own.rfind('/') + 1);
}

} // namespace orwick::cli
