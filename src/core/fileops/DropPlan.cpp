#include "fileops/DropPlan.h"

#include "fileops/FileClipboard.h"
#include "fileops/ItemCopier.h"
#include "fileops/OperationTexts.h"
#include "platform/DirectoryReader.h"

namespace orwick {

namespace {

const QString kOnlyLocalFiles = QStringLiteral("Only files on this computer can be dropped here.");

// The dropped URLs as paths; empty when one of them is not a file on this computer.
std::optional<QList<FilePath>> localPaths(const QList<QUrl>& urls)
{
    QList<FilePath> paths;
    for (const QUrl& url : urls) {
        const FilePath path = isLocalFileUrl(url) ? FilePath::fromUrl(url) : FilePath();
        if (path.isEmpty())
            return std::nullopt;
        if (!paths.contains(path))
            paths.append(path);
    }
    return paths;
}

bool sameEntry(const EntryStat& a, const EntryStat& b) { return a.device == b.device && a.inode == b.inode; }

DropAction chosenAction(Qt::KeyboardModifiers modifiers)
{
    const bool control = modifiers & Qt::ControlModifier;
    const bool shift = modifiers & Qt::ShiftModifier;
    if (control && shift)
        return DropAction::link;
    if (control)
        return DropAction::copy;
    if (shift)
        return DropAction::move;
    return DropAction::none; // up to the file systems
}

} // namespace

DropPlan planDrop(const QList<QUrl>& urls, const FilePath& folder, Qt::KeyboardModifiers modifiers)
{
    DropPlan plan;
    plan.folder = folder;
    const auto items = localPaths(urls);
    if (!items) {
        plan.refusal = kOnlyLocalFiles;
        return plan;
    }
    if (items->isEmpty())
        return plan;
    const auto target = statPath(folder, FollowLinks::yes);
    if (!target || !target->isDirectory()) {
        plan.refusal = QStringLiteral("%1 is no longer a folder.").arg(quoted(folder.fileName()));
        return plan;
    }
    for (const FilePath& item : *items) {
        if (liesWithin(folder, item)) {
            plan.refusal = quoted(item.fileName()) + QStringLiteral(" can't be put inside itself.");
            return plan;
        }
    }
    plan.action = chosenAction(modifiers);
    if (plan.action == DropAction::none) {
        plan.action = DropAction::move;
        for (const FilePath& item : *items) {
            const auto st = statPath(item);
            if (st && st->device != target->device)
                plan.action = DropAction::copy;
        }
    }
    for (const FilePath& item : *items) {
        // Moving an item into the folder it is in already leaves it be.
        const auto holder = plan.action == DropAction::move ? statPath(item.parent(), FollowLinks::yes) : std::nullopt;
        if (!holder || !sameEntry(*holder, *target))
            plan.items.append(item);
    }
    if (plan.items.isEmpty())
        plan.action = DropAction::none;
    return plan;
}

TabDropPlan planTabDrop(const QList<QUrl>& urls)
{
    TabDropPlan plan;
    const auto items = localPaths(urls);
    if (!items) {
        plan.refusal = kOnlyLocalFiles;
        return plan;
    }
    for (const FilePath& item : *items)
        if (const auto st = statPath(item, FollowLinks::yes); st && st->isDirectory())
            plan.folders.append(item);
    if (plan.folders.isEmpty() && !items->isEmpty())
        plan.refusal = QStringLiteral("Only folders open in tabs; drop a folder here.");
    return plan;
}

} // namespace orwick
