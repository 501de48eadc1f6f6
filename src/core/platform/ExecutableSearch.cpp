#include "platform/ExecutableSearch.h"

#include <climits>
#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick {

std::optional<std::string> findExecutable(std::string_view name)
{
    const char* path = std::getenv("PATH");
    if (!path || name.empty())
        return std::nullopt;
    const std::string_view folders(path);
    std::string working;
    for (size_t start = 0; start <= folders.size();) {
        size_t end = folders.find(':', start);
        if (end == std::string_view::npos)
            end = folders.size();
        std::string candidate(folders.substr(start, end - start));
        start = end + 1;
        if (candidate.empty())
            continue;
        if (candidate.front() != '/') {
            if (working.empty()) {
                char buffer[PATH_MAX];
                if (!getcwd(buffer, sizeof buffer))
                    continue;
                working = buffer;
            }
            candidate.insert(0, working + '/');
        }
        while (candidate.size() > 1 && candidate.ends_with('/'))
            candidate.pop_back();
        candidate += '/';
        candidate += name;
        struct stat info;
        if (stat(candidate.c_str(), &info) == 0 && S_ISREG(info.st_mode) && access(candidate.c_str(), X_OK) == 0)
            return candidate;
    }
    return std::nullopt;
}

} // namespace orwick
