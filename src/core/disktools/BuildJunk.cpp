#include "disktools/BuildJunk.h"

#include "disktools/SpaceScan.h"
#include "disktools/WalkPool.h"
#include "platform/DirectoryReader.h"
#include "platform/XdgPaths.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace orwick::BuildJunk {

const std::vector<Rule>& rules()
{
    static const std::vector<Rule> table{
        {"node_modules", "npm", {}},
        {".next", "Next.js", {"package.json"}},
        {".nuxt", "Nuxt", {"package.json"}},
        {".svelte-kit", "SvelteKit", {"package.json"}},
        {".turbo", "Turborepo", {"package.json"}},
        {".parcel-cache", "Parcel", {"package.json"}},
        {"dist", "JavaScript build", {"package.json"}},
        {"coverage", "Test coverage", {"package.json"}},
        {".build", "Swift Package", {"Package.swift"}},
        {"DerivedData", "Xcode", {}},
        {"Pods", "CocoaPods", {"Podfile"}},
        {"target", "Rust", {"Cargo.toml"}},
        {"build", "Gradle", {"build.gradle", "build.gradle.kts"}},
        {".gradle", "Gradle", {"build.gradle", "build.gradle.kts", "settings.gradle", "settings.gradle.kts"}},
        {"__pycache__", "Python", {}},
        {".venv", "Python", {}},
        {".pytest_cache", "Python", {}},
        {".mypy_cache", "Python", {}},
    };
    return table;
}

namespace {

bool markersMatch(const Rule& rule, int parentFd)
{
    if (rule.markers.empty())
        return true;
    struct stat st;
    for (const char* marker : rule.markers)
        if (fstatat(parentFd, marker, &st, AT_SYMLINK_NOFOLLOW) == 0)
            return true;
    return false;
}

const Rule* matchingRule(const QByteArray& name, int parentFd)
{
    for (const Rule& rule : rules())
        if (name == rule.folderName && markersMatch(rule, parentFd))
            return &rule;
    return nullptr;
}

struct Search {
    int maxDepth;
    const CancelFlag& cancel;
    quint64 device = 0;
    std::vector<Found> found;

    // `level` is the depth of the folder's entries below the searched folder (1 for its children).
    void walk(const DirectoryHandle& folder, const FilePath& path, int level)
    {
        std::vector<DirEntry> entries;
        folder.readEntries(entries, &cancel);
        for (const DirEntry& entry : entries) {
            if (cancel.isCancelled())
                return;
            bool isFolder = entry.type == DT_DIR;
            if (entry.type == DT_UNKNOWN) {
                const auto st = statAt(folder.fd(), entry.name.constData());
                isFolder = st && st->isDirectory();
            }
            if (!isFolder || entry.name == ".git" || entry.name == "Library")
                continue;
            if (const Rule* rule = matchingRule(entry.name, folder.fd())) {
                found.push_back({path.child(QByteArrayView(entry.name)), QString::fromUtf8(rule->kind)});
                continue; // a build folder is never searched inside
            }
            if (level >= maxDepth)
                continue;
            auto child = DirectoryHandle::openChild(folder.fd(), entry.name.constData());
            if (!child)
                continue; // unreadable: skipped in silence
            const auto self = statFd(child->fd());
            if (!self || self->device != device)
                continue; // another mounted file system
            walk(*child, path.child(QByteArrayView(entry.name)), level + 1);
        }
    }
};

} // namespace

bool isBuildFolder(const QByteArray& name, int parentFd) { return matchingRule(name, parentFd) != nullptr; }

std::vector<Found> find(const FilePath& folder, int depth, const CancelFlag& cancel)
{
    Search search{depth, cancel, 0, {}};
    auto root = DirectoryHandle::open(folder, FollowLinks::yes);
    if (!root)
        return {};
    const auto self = statFd(root->fd());
    if (!self)
        return {};
    search.device = self->device;
    search.walk(*root, folder, 1);
    return std::move(search.found);
}

std::vector<qint64> measureAll(const std::vector<Found>& found, const CancelFlag& cancel)
{
    std::vector<qint64> sizes(found.size(), 0);
    WalkPool pool;
    for (size_t i = 0; i < found.size(); ++i)
        pool.post([&, i](int) { sizes[i] = SpaceScan::measure(found[i].url, cancel).value_or(0); });
    pool.wait();
    return sizes;
}

FilePath xcodeDerivedData()
{
    return xdg::home().child(QByteArrayView("Library/Developer/Xcode/DerivedData"));
}

} // namespace orwick::BuildJunk
