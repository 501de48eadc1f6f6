#include "cli/StatusReport.h"

#include "git/ChangeKind.h"
#include "git/GitEnvironment.h"
#include "git/GitFolder.h"
#include "git/StatusRecords.h"
#include "platform/ChildProcess.h"
#include "platform/ExecutableSearch.h"

#include <climits>
#include <cstdio>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace orwick::cli {

namespace {

// The report's file lines as the records come, and what the summary counts.
struct Report {
    BranchInfo branch;
    bool hasBranch = false;
    std::string lines;
    int counts[changeKinds] = {};
    int changed = 0;
    int ignored = 0;

    void add(const StatusEntry& entry)
    {
        if (entry.x == '!' && entry.y == '!') {
            ++ignored;
            return;
        }
        const Change change = changeOf(entry.x, entry.y);
        ++counts[int(change)];
        ++changed;
        lines += changeKeyword(change);
        lines += isStagedChange(entry.x) ? "\tstaged" : "\t-";
        lines += isUnstagedChange(entry.y) ? "\tunstaged\t" : "\t-\t";
        lines += entry.path;
        lines += '\n';
    }

    std::string text(std::string_view operation) const
    {
        std::string text = "branch " + (branch.branch.empty() ? std::string("(unknown)") : branch.branch) + ", ahead "
            + std::to_string(branch.ahead) + ", behind " + std::to_string(branch.behind) + '\n';
        if (!operation.empty())
            text.append(operation).append("\n");
        text += lines;
        text += std::to_string(changed) + " changed";
        std::string kinds;
        for (int kind = 0; kind < changeKinds; ++kind) {
            if (counts[kind] == 0)
                continue;
            if (!kinds.empty())
                kinds += ", ";
            kinds.append(std::to_string(counts[kind])).append(" ").append(changeKeyword(Change(kind)));
        }
        if (!kinds.empty())
            text += " (" + kinds + ")";
        text += ", " + std::to_string(ignored) + " ignored\n";
        return text;
    }
};

// `argument` as an absolute path without "." parts and repeated slashes; none when it has a ".."
// part (which the programs with Qt resolve) or is empty.
std::optional<std::string> absoluteFolder(const char* argument)
{
    std::string joined;
    if (argument[0] != '/') {
        char working[PATH_MAX];
        if (!getcwd(working, sizeof working))
            return std::nullopt;
        joined = working;
        joined += '/';
    }
    joined += argument;
    std::string path;
    for (size_t start = 0; start < joined.size();) {
        size_t end = joined.find('/', start);
        if (end == std::string::npos)
            end = joined.size();
        const std::string_view part = std::string_view(joined).substr(start, end - start);
        start = end + 1;
        if (part.empty() || part == ".")
            continue;
        if (part == "..")
            return std::nullopt;
        path += '/';
        path += part;
    }
    return path.empty() ? std::string("/") : path;
}

} // namespace

std::optional<StatusFailure> reportStatus(const std::string& git, const std::string& root)
{
    std::vector<std::string> arguments{git, "-C", root, "-c", "core.quotepath=off", "status", "--porcelain=v1", "-z", "-b", "--ignored"};
    std::vector<std::string> environment;
    for (char** entry = environ; *entry; ++entry)
        environment.emplace_back(*entry);
    environment = withGitSettings(std::move(environment));
    std::vector<char*> argv = nullTerminated(arguments);
    std::vector<char*> envp = nullTerminated(environment);

    Report report;
    StatusRecordReader reader;
    const StatusRecordReader::Sink sink{[&](std::string_view line) {
                                             report.branch = parseBranchLine(line);
                                             report.hasBranch = true;
                                         },
                                         [&](const StatusEntry& entry) { report.add(entry); }};
    ChildIo io;
    io.onOutput = [&](std::string_view piece) { reader.feed(piece, sink); };
    ChildEnd end = runChild(git.c_str(), argv.data(), envp.data(), io);
    if (end.status != 0)
        return StatusFailure{end.status, end.startError, std::move(end.errors)};
    reader.finish(sink);
    const std::string text = report.text(operationUnderWay(root));
    std::fwrite(text.data(), 1, text.size(), stdout);
    return std::nullopt;
}

std::optional<int> runStatusBeforeQt(int argc, char** argv)
{
    if (argc != 3 || std::strcmp(argv[1], "status") != 0 || argv[2][0] == '\0' || argv[2][0] == '-')
        return std::nullopt;
    const std::optional<std::string> folder = absoluteFolder(argv[2]);
    struct stat info;
    if (!folder || folder->size() >= PATH_MAX || stat(folder->c_str(), &info) != 0 || !S_ISDIR(info.st_mode))
        return std::nullopt;
    const std::optional<std::string> git = findExecutable("git");
    if (!git)
        return std::nullopt;
    const std::optional<std::string> root = findGitRoot(*folder);
    if (!root || reportStatus(*git, *root))
        return std::nullopt;
    return 0;
}

} // namespace orwick::cli
