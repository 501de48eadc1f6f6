#include "fileops/MadeState.h"

#include "fileops/FileVersions.h"
#include "platform/DirectoryReader.h"
#include "platform/UniqueFd.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>

namespace orwick::madestate {

namespace {

// Deeper than any real tree; what lies below is summed up as one mark, not walked.
constexpr int kDeepest = 256;

void addNumber(fileversions::Digester& hash, qint64 value)
{
    hash.add(QByteArrayView(reinterpret_cast<const char*>(&value), sizeof value));
}

void addEntryStamp(fileversions::Digester& hash, const EntryStat& st, bool withInode)
{
    addNumber(hash, st.mode & S_IFMT);
    if (st.isDirectory())
        return; // a folder's own size and times move with what happens inside it
    addNumber(hash, st.size);
    addNumber(hash, st.modifiedNs);
    if (withInode)
        addNumber(hash, qint64(st.inode));
}

// Adds every entry below `folder`, by name so that the order of the disk doesn't count.
void addTree(fileversions::Digester& hash, const DirectoryHandle& folder, int depth)
{
    std::vector<DirEntry> entries;
    if (depth > kDeepest || !folder.readEntries(entries)) {
        hash.add("\x01unread");
        return;
    }
    std::sort(entries.begin(), entries.end(), [](const DirEntry& a, const DirEntry& b) { return a.name < b.name; });
    for (const DirEntry& entry : entries) {
        hash.add(entry.name);
        hash.add(QByteArrayView("\0", 1));
        const auto st = statForWalk(folder.fd(), entry.name.constData());
        if (!st) {
            hash.add("\x01gone");
            continue;
        }
        // Inside a folder the inode is left out: a copy taken back from the Trash across disks
        // gets new ones without anyone having changed it.
        addEntryStamp(hash, *st, false);
        if (st->isDirectory()) {
            hash.add("\x02");
            if (const auto child = DirectoryHandle::openChild(folder.fd(), entry.name.constData()))
                addTree(hash, *child, depth + 1);
            else
                hash.add("\x01unopened");
            hash.add("\x03");
        }
    }
}

std::optional<QByteArray> stampOf(const FilePath& item, const EntryStat& st)
{
    fileversions::Digester hash;
    addEntryStamp(hash, st, true);
    if (st.isDirectory()) {
        const auto folder = DirectoryHandle::open(item, FollowLinks::no);
        if (!folder)
            return std::nullopt;
        addTree(hash, *folder, 0);
    }
    return hash.result();
}

std::optional<QByteArray> contentsDigest(const FilePath& item)
{
    const UniqueFd fd(::open(item.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    struct stat st {};
    if (!fd.ok() || ::fstat(fd.get(), &st) != 0 || !S_ISREG(st.st_mode) || st.st_size > kDigestLimit)
        return std::nullopt;
    return fileversions::digestOfFile(fd.get());
}

} // namespace

std::optional<State> of(const FilePath& item, Contents contents)
{
    const auto st = statPath(item, FollowLinks::no);
    if (!st)
        return std::nullopt;
    auto stamp = stampOf(item, *st);
    if (!stamp)
        return std::nullopt;
    State state{*stamp, {}};
    if (contents == Contents::digest && st->isRegular() && st->size <= kDigestLimit)
        state.digest = contentsDigest(item).value_or(QByteArray());
    return state;
}

bool unchanged(const State& made, const FilePath& item)
{
    if (!made.stamp.isEmpty()) {
        const auto st = statPath(item, FollowLinks::no);
        if (st && stampOf(item, *st) == std::optional(made.stamp))
            return true;
    }
    return !made.digest.isEmpty() && contentsDigest(item) == std::optional(made.digest);
}

} // namespace orwick::madestate
