#include "git/GitFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick {

namespace {

bool exists(const std::string& path) { return access(path.c_str(), F_OK) == 0; }

std::string_view trimmed(std::string_view text)
{
    const size_t first = text.find_first_not_of(" \t\r\n\v\f");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t\r\n\v\f") - first + 1);
}

} // namespace

std::optional<std::string> findGitRoot(std::string_view folder)
{
    std::string current(folder);
    while (current.size() > 1 && current.ends_with('/'))
        current.pop_back();
    while (!current.empty() && current != "/") {
        if (exists(current + "/.git"))
            return current;
        const size_t slash = current.rfind('/');
        if (slash == std::string::npos)
            break;
        current.resize(slash == 0 ? 1 : slash);
    }
    return std::nullopt;
}

std::string gitFolderOf(std::string_view root)
{
    std::string dotGit(root);
    dotGit += "/.git";
    struct stat info;
    if (stat(dotGit.c_str(), &info) != 0 || S_ISDIR(info.st_mode))
        return dotGit;
    // A worktree or submodule: ".git" is a file reading "gitdir: <path>".
    char buffer[4096 + 16];
    const int fd = open(dotGit.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return dotGit;
    const ssize_t n = read(fd, buffer, sizeof buffer);
    close(fd);
    const std::string_view text(buffer, size_t(n > 0 ? n : 0));
    const std::string_view line = trimmed(text.substr(0, text.find('\n')));
    if (!line.starts_with("gitdir: ") || line.size() == 8)
        return dotGit;
    const std::string_view target = line.substr(8);
    return target.starts_with('/') ? std::string(target) : std::string(root) + '/' + std::string(target);
}

std::string_view operationUnderWay(std::string_view root)
{
    const std::string folder = gitFolderOf(root) + '/';
    if (exists(folder + "rebase-merge") || exists(folder + "rebase-apply"))
        return "Rebasing";
    if (exists(folder + "MERGE_HEAD"))
        return "Merging";
    if (exists(folder + "CHERRY_PICK_HEAD"))
        return "Cherry-picking";
    return {};
}

} // namespace orwick
