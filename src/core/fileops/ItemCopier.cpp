#include "fileops/ItemCopier.h"

#include "fileops/OperationTexts.h"
#include "fileops/SourceRemoval.h"
#include "fileops/TreeCopy.h"
#include "platform/DirectoryReader.h"
#include "platform/ErrorText.h"
#include "platform/UniqueFd.h"

#include <QRandomGenerator>
#include <QSet>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace orwick {

namespace {

constexpr int kMaxAncestors = 4096;

QString insideItselfReason() { return QStringLiteral("it can’t be put inside itself"); }

// A folder's own identity and its ancestors', walking ".." from what the path reaches.
QSet<QPair<quint64, quint64>> folderAndAncestors(const FilePath& folder)
{
    QSet<QPair<quint64, quint64>> chain;
    int fd = ::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    for (int level = 0; fd >= 0 && level < kMaxAncestors; ++level) {
        const auto st = statFd(fd);
        if (!st || chain.contains({st->device, st->inode}))
            break; // the root is its own parent
        chain.insert({st->device, st->inode});
        const int parent = ::openat(fd, "..", O_PATH | O_DIRECTORY | O_CLOEXEC);
        ::close(fd);
        fd = parent;
    }
    if (fd >= 0)
        ::close(fd);
    return chain;
}

} // namespace

CopyResult CopyResult::failedWith(int error)
{
    if (error == ENOENT)
        return {Outcome::vanished, errorReason(error), {}, 0, 0, 0};
    return {Outcome::failed, errorReason(error), {}, 0, 0, 0};
}

FilePath temporarySibling(const FilePath& path, QByteArrayView purpose)
{
    const QByteArray suffix = QByteArray::number(QRandomGenerator::global()->generate64(), 16);
    return path.parent().child(QByteArrayView(".orwick-" + purpose.toByteArray() + "-" + suffix));
}

bool renameNoReplace(const FilePath& from, const FilePath& to)
{
    return renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0;
}

bool liesWithin(const FilePath& folder, const FilePath& item)
{
    if (item.contains(folder))
        return true;
    const auto st = statPath(item);
    if (!st || !st->isDirectory())
        return false;
    return folderAndAncestors(folder).contains({st->device, st->inode});
}

namespace {

// Copies into a temporary sibling of `to`, then renames it there. `manifest` records what was
// copied, for a move.
CopyResult copyInto(const FilePath& from, const FilePath& to, CopyProgress& progress, DataSync sync,
                    CopyManifest* manifest)
{
    SourceMeta meta;
    if (!meta.read(AT_FDCWD, from.c_str()))
        return CopyResult::failedWith(errno);
    if (S_ISDIR(meta.mode) && folderAndAncestors(to.parent()).contains({meta.device, meta.inode}))
        return CopyResult::failedWith(insideItselfReason());
    const FilePath temporary = temporarySibling(to, "copy");
    TreeCopy copier(progress, manifest);
    bool ok = copier.copy(from, temporary, meta);
    if (ok && sync == DataSync::yes) {
        UniqueFd folder(::open(to.parent().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (!folder.ok() || syncfs(folder.get()) != 0)
            ok = copier.failAtTarget(errno);
    }
    if (ok && !renameNoReplace(temporary, to))
        ok = copier.failAtTarget(errno);
    CopyResult result;
    result.notes = copier.notes();
    result.leftOut = copier.leftOut();
    result.attributesLost = copier.attributesLost();
    if (ok)
        return result;
    (void)removeTree(temporary);
    if (copier.cancelled()) {
        result.outcome = CopyResult::Outcome::cancelled;
        return result;
    }
    // Only the source itself vanishing makes a skip; anything else stays a failure.
    result.outcome = copier.error() == ENOENT && !statPath(from) ? CopyResult::Outcome::vanished
                                                                  : CopyResult::Outcome::failed;
    result.reason = copier.reason();
    return result;
}

} // namespace

CopyResult copyItem(const FilePath& from, const FilePath& to, CopyProgress& progress, DataSync sync)
{
    return copyInto(from, to, progress, sync, nullptr);
}

CopyResult moveItem(const FilePath& from, const FilePath& to, CopyProgress& progress, MoveKind* how)
{
    if (how)
        *how = MoveKind::renamed;
    if (renameNoReplace(from, to))
        return {};
    if (errno == EINVAL && liesWithin(to.parent(), from))
        return CopyResult::failedWith(insideItselfReason());
    if (errno == ENOENT && statPath(from))
        return CopyResult::failedWith(writeErrorReason(ENOENT, -1));
    if (errno != EXDEV)
        return CopyResult::failedWith(errno);
    if (how)
        *how = MoveKind::copied;
    CopyManifest manifest;
    CopyResult copied = copyInto(from, to, progress, DataSync::yes, &manifest);
    if (!copied.ok())
        return copied;
    const RemovalResult removed = removeCopiedSource(from, manifest);
    copied.leftInPlace = removed.leftInPlace;
    for (const QByteArray& name : removed.leftNames)
        copied.notes.append(QStringLiteral("%1 changed during the move and was left in place.")
                                .arg(quoted(displayName(name.isEmpty() ? from.fileNameBytes() : name))));
    if (removed.failed > 0)
        return CopyResult::failedWith(QStringLiteral("it was copied, but %1 of the original couldn’t be removed (%2)")
                                          .arg(itemCount(removed.failed), errorReason(removed.firstError)));
    return copied;
}

namespace {

// One open folder of a walk that keeps its own stack instead of the call stack's.
struct TreeFrame {
    DirectoryHandle folder;
    std::vector<DirEntry> entries;
    size_t next = 0;
};

} // namespace

Status removeTree(const FilePath& path)
{
    if (unlink(path.c_str()) == 0 || errno == ENOENT)
        return {};
    if (errno != EISDIR && errno != EPERM)
        return failure(errorReason(errno));
    auto top = DirectoryHandle::open(path, FollowLinks::no);
    if (!top)
        return failure(errorReason(errno));
    fchmod(top->fd(), 0700); // a read-only folder must let its entries go
    std::vector<TreeFrame> stack;
    stack.push_back({std::move(*top), {}, 0});
    int firstError = 0;
    if (!stack.back().folder.readEntries(stack.back().entries))
        firstError = errno ? errno : EIO;
    while (!stack.empty()) {
        TreeFrame& frame = stack.back();
        if (frame.next == frame.entries.size()) {
            stack.pop_back();
            if (!stack.empty()) {
                TreeFrame& parent = stack.back();
                const DirEntry& done = parent.entries[parent.next - 1];
                if (unlinkat(parent.folder.fd(), done.name.constData(), AT_REMOVEDIR) != 0 && errno != ENOENT && !firstError)
                    firstError = errno;
            }
            continue;
        }
        const DirEntry& entry = frame.entries[frame.next++];
        if (unlinkat(frame.folder.fd(), entry.name.constData(), 0) == 0 || errno == ENOENT)
            continue;
        if (errno != EISDIR && errno != EPERM) {
            firstError = firstError ? firstError : errno;
            continue;
        }
        auto child = DirectoryHandle::openChild(frame.folder.fd(), entry.name.constData());
        if (!child) {
            firstError = firstError ? firstError : errno;
            continue;
        }
        fchmod(child->fd(), 0700);
        TreeFrame next{std::move(*child), {}, 0};
        if (!next.folder.readEntries(next.entries))
            firstError = firstError ? firstError : (errno ? errno : EIO);
        stack.push_back(std::move(next));
    }
    if (rmdir(path.c_str()) != 0)
        return failure(errorReason(firstError ? firstError : errno));
    return {};
}

qint64 treeBytes(const FilePath& path, const CopyProgress* cancel)
{
    const auto st = statPath(path);
    if (!st)
        return 0;
    if (st->isRegular())
        return st->size;
    if (!st->isDirectory())
        return 0;
    qint64 total = 0;
    std::vector<TreeFrame> stack;
    if (auto top = DirectoryHandle::open(path, FollowLinks::no)) {
        stack.push_back({std::move(*top), {}, 0});
        stack.back().folder.readEntries(stack.back().entries);
    }
    while (!stack.empty()) {
        if (cancel && cancel->isCancelled())
            return total;
        TreeFrame& frame = stack.back();
        if (frame.next == frame.entries.size() || int(stack.size()) > TreeCopy::kMaxDepth) {
            stack.pop_back();
            continue;
        }
        const DirEntry& entry = frame.entries[frame.next++];
        if (entry.type != DT_DIR && entry.type != DT_REG && entry.type != DT_UNKNOWN)
            continue;
        const auto child = statAt(frame.folder.fd(), entry.name.constData());
        if (child && child->isRegular()) {
            total += child->size;
        } else if (child && child->isDirectory()) {
            if (auto folder = DirectoryHandle::openChild(frame.folder.fd(), entry.name.constData())) {
                TreeFrame next{std::move(*folder), {}, 0};
                next.folder.readEntries(next.entries);
                stack.push_back(std::move(next));
            }
        }
    }
    return total;
}

} // namespace orwick
