#pragma once
// SpaceNode: one folder or large file in a measured tree, sized by allocated bytes.
//
// A tree is owned from its root; each child points back at its parent (a plain pointer: the
// parent owns the child, so it always outlives it). Files under 1 MB are not kept as nodes but
// folded into their folder's `smallFiles` and `smallCount`. After a walk the tree is plain data:
// hand it to the GUI thread whole and change it there only.

#include "base/FilePath.h"

#include <QByteArray>
#include <memory>
#include <optional>
#include <vector>

namespace orwick {

class SpaceNode {
public:
    QByteArray name;          // the entry's name; for the root, the folder's name
    bool isFolder = false;
    bool isPackage = false;   // a folder shown as one file
    qint64 size = 0;          // allocated bytes of everything under the node
    std::vector<std::unique_ptr<SpaceNode>> children; // largest first once totalled
    qint64 smallFiles = 0;    // allocated bytes of the node's own files under 1 MB
    qint64 smallCount = 0;
    qint64 direct = 0;        // bytes added straight to the node (the folder itself, files when no children are kept)
    int links = 0;            // symbolic links directly in the folder
    SpaceNode* parent = nullptr;
    std::optional<FilePath> rootURL; // on the root only

    // Makes a child owned by this node.
    SpaceNode* addChild(QByteArray childName, bool folder, bool package = false);
    // The node's location: the root's followed by the names on the way down.
    FilePath url() const;
    QString displayName() const;
    // The entries a walk counts for the node: the node itself and everything under it (its
    // kept children, its small files and its links), as SpaceScan::Shared::scanned counts them.
    qint64 entryCount() const;
    // Takes `child` out and subtracts its size from this node and every ancestor.
    void remove(const SpaceNode* child);
};

// Files of this many allocated bytes or more are kept as nodes of their own.
inline constexpr qint64 spaceLargeFileBytes = 1000000;

} // namespace orwick
