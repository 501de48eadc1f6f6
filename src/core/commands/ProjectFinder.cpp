#include "commands/ProjectFinder.h"

#include "base/NaturalCompare.h"
#include "platform/DirectoryReader.h"

#include <algorithm>
#include <deque>
#include <dirent.h>

namespace orwick {

bool isSkippedByProjectWalk(QByteArrayView name)
{
    static constexpr const char* kBuildFolders[] = {"node_modules", "target", "build", "dist", "__pycache__",
                                                    "venv", "vendor", "Pods", "DerivedData"};
    if (name.startsWith('.'))
        return true;
    return std::any_of(std::begin(kBuildFolders), std::end(kBuildFolders),
                       [&](const char* skipped) { return name == QByteArrayView(skipped); });
}

ProjectSearch findProjects(const FilePath& root, const CancelFlag& cancel, ProjectWalkLimits limits)
{
    ProjectSearch result;
    struct Pending {
        FilePath path;
        int depth;
    };
    std::deque<Pending> queue{{root, 0}};
    int read = 0;
    std::vector<DirEntry> entries;
    std::vector<QByteArray> folders;
    while (!queue.empty()) {
        if (cancel.isCancelled() || read >= limits.maxFolders) {
            result.isPartial = true;
            break;
        }
        const Pending current = std::move(queue.front());
        queue.pop_front();
        const auto handle = DirectoryHandle::open(current.path);
        ++read;
        entries.clear();
        if (!handle || !handle->readEntries(entries, &cancel))
            continue; // an unreadable folder is passed over

        bool isRepository = false;
        folders.clear();
        for (const DirEntry& entry : entries) {
            if (entry.name == ".git") {
                isRepository = true;
                break;
            }
            bool isDirectory = entry.type == DT_DIR;
            if (entry.type == DT_UNKNOWN) {
                const auto stat = statAt(handle->fd(), entry.name.constData());
                isDirectory = stat && stat->isDirectory();
            }
            if (isDirectory && !isSkippedByProjectWalk(entry.name))
                folders.push_back(entry.name);
        }
        if (isRepository && current.depth > 0) {
            result.repositories.push_back(current.path);
            continue;
        }
        if (current.depth >= limits.maxDepth) {
            if (!folders.empty())
                result.isPartial = true;
            continue;
        }
        std::sort(folders.begin(), folders.end(), [](const QByteArray& a, const QByteArray& b) {
            return naturalCompare(displayName(a), displayName(b)) < 0;
        });
        for (const QByteArray& name : folders)
            queue.push_back({current.path.child(QByteArrayView(name)), current.depth + 1});
    }
    return result;
}

} // namespace orwick
