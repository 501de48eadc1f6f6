#include "disktools/SpaceNode.h"

#include <algorithm>

namespace orwick {

SpaceNode* SpaceNode::addChild(QByteArray childName, bool folder, bool package)
{
    auto child = std::make_unique<SpaceNode>();
    child->name = std::move(childName);
    child->isFolder = folder;
    child->isPackage = package;
    child->parent = this;
    children.push_back(std::move(child));
    return children.back().get();
}

FilePath SpaceNode::url() const
{
    if (rootURL)
        return *rootURL;
    if (!parent)
        return FilePath::fromNative(name);
    return parent->url().child(QByteArrayView(name));
}

QString SpaceNode::displayName() const { return orwick::displayName(name); }

qint64 SpaceNode::entryCount() const
{
    qint64 count = 1 + smallCount + links;
    for (const auto& child : children)
        count += child->entryCount();
    return count;
}

void SpaceNode::remove(const SpaceNode* child)
{
    const auto found = std::find_if(children.begin(), children.end(), [&](const auto& c) { return c.get() == child; });
    if (found == children.end())
        return;
    const qint64 removed = (*found)->size;
    children.erase(found);
    for (SpaceNode* node = this; node; node = node->parent)
        node->size -= removed;
}

} // namespace orwick
