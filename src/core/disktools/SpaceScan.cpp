#include "disktools/SpaceScan.h"

#include "disktools/DiskNames.h"
#include "disktools/WalkPool.h"
#include "platform/DirectoryReader.h"

#include <algorithm>
#include <dirent.h>

namespace orwick::SpaceScan {

namespace {

// Sub-folders above this depth are walked as tasks of their own.
constexpr int kParallelDepth = 3;

class Walker {
public:
    Walker(Shared& shared, bool keepsChildren, WalkPool* pool) : m_shared(shared), m_keeps(keepsChildren), m_pool(pool) {}

    // Walks the folder at `path` (the root may be reached through a link).
    bool walkRoot(const FilePath& path, SpaceNode& node)
    {
        auto folder = DirectoryHandle::open(path, FollowLinks::yes);
        if (!folder)
            return true; // an unreadable folder counts as empty
        auto self = statFd(folder->fd());
        if (!self)
            return true;
        m_device = self->device;
        return walk(*folder, path.native(), node, 0);
    }

private:
    struct Subfolder {
        QByteArray name;
        bool isPackage;
    };

    bool walk(const DirectoryHandle& folder, const QByteArray& path, SpaceNode& node, int depth)
    {
        const auto self = statFd(folder.fd());
        if (!self || (depth > 0 && self->device != m_device))
            return true; // another mounted file system contributes nothing
        node.direct += self->allocatedBytes();

        std::vector<DirEntry> entries;
        folder.readEntries(entries, &m_shared.cancel);
        std::vector<Subfolder> subfolders;
        for (const DirEntry& entry : entries) {
            unsigned type = entry.type;
            std::optional<EntryStat> st;
            if (type != DT_DIR && type != DT_LNK) {
                st = statForWalk(folder.fd(), entry.name.constData());
                if (!st)
                    continue;
                type = st->isDirectory() ? DT_DIR : st->isSymlink() ? DT_LNK : DT_REG;
            }
            if (type == DT_LNK) {
                if (m_keeps)
                    ++node.links;
            } else if (type == DT_DIR) {
                subfolders.push_back({entry.name, isPackageFolderName(entry.name)});
            } else if (!m_keeps) {
                node.direct += st->allocatedBytes();
            } else if (st->allocatedBytes() >= spaceLargeFileBytes) {
                node.addChild(entry.name, false)->size = st->allocatedBytes();
            } else {
                node.smallFiles += st->allocatedBytes();
                ++node.smallCount;
            }
        }
        if (!m_shared.add(qint64(entries.size())))
            return false;

        if (!m_keeps) {
            for (const Subfolder& sub : subfolders)
                if (auto child = DirectoryHandle::openChild(folder.fd(), sub.name.constData()))
                    if (!walk(*child, {}, node, depth + 1))
                        return false;
            return true;
        }
        const bool parallel = m_pool && depth < kParallelDepth && subfolders.size() >= 2;
        for (const Subfolder& sub : subfolders) {
            SpaceNode* child = node.addChild(sub.name, true, sub.isPackage);
            if (parallel) {
                QByteArray childPath = path + '/' + sub.name;
                m_pool->post([this, childPath = std::move(childPath), child, depth](int) {
                    if (m_shared.cancel.isCancelled())
                        return;
                    if (auto folder = DirectoryHandle::open(FilePath::fromNative(childPath), FollowLinks::no))
                        walk(*folder, childPath, *child, depth + 1);
                });
            } else if (auto handle = DirectoryHandle::openChild(folder.fd(), sub.name.constData())) {
                if (!walk(*handle, path + '/' + sub.name, *child, depth + 1))
                    return false;
            }
        }
        return !m_shared.cancel.isCancelled();
    }

    Shared& m_shared;
    bool m_keeps;
    WalkPool* m_pool;
    quint64 m_device = 0;
};

} // namespace

std::unique_ptr<SpaceNode> scan(const FilePath& folder, Shared& shared, int threads)
{
    auto root = std::make_unique<SpaceNode>();
    root->name = folder.isRoot() ? QByteArray("/") : folder.fileNameBytes();
    root->isFolder = true;
    root->rootURL = folder;
    WalkPool pool(threads > 0 ? threads : metadataWalkThreads());
    Walker walker(shared, true, &pool);
    pool.post([&](int) { walker.walkRoot(folder, *root); });
    pool.wait();
    if (shared.cancel.isCancelled())
        return nullptr;
    total(*root);
    return root;
}

std::optional<qint64> measure(const FilePath& folder, const CancelFlag& cancel)
{
    Shared shared(cancel);
    SpaceNode node;
    Walker walker(shared, false, nullptr);
    if (!walker.walkRoot(folder, node) || cancel.isCancelled())
        return std::nullopt;
    return node.direct;
}

qint64 total(SpaceNode& node)
{
    qint64 size = node.direct + node.smallFiles;
    for (auto& child : node.children)
        size += child->isFolder ? total(*child) : child->size;
    std::stable_sort(node.children.begin(), node.children.end(),
                     [](const auto& a, const auto& b) { return a->size > b->size; });
    node.size = size;
    return size;
}

} // namespace orwick::SpaceScan
