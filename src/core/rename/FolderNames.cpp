#include "rename/FolderNames.h"

#include "platform/DirectoryReader.h"

#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <sys/stat.h>

namespace orwick {

namespace {

// A stat costs about as much as reading this many entries of a folder.
constexpr qsizetype kEntriesPerStat = 8;
// Folders that report their size in bytes (ext4, xfs, btrfs, tmpfs) spend at least this many on
// an entry; a folder's size over this estimates how many entries it holds.
constexpr qsizetype kBytesPerEntry = 16;

bool hasAsciiLetter(QByteArrayView name)
{
    for (const char c : name)
        if ((c | 0x20) >= 'a' && (c | 0x20) <= 'z')
            return true;
    return false;
}

QByteArray withLetterCaseSwapped(QByteArrayView name)
{
    QByteArray swapped(name.data(), name.size());
    for (char& c : swapped)
        if ((c | 0x20) >= 'a' && (c | 0x20) <= 'z')
            c ^= 0x20;
    return swapped;
}

// Whether the folder tells names apart by letter case, asked of the kernel with one of its own
// names written the other way round: found as the same file means the names fold. Unknown
// (nothing) when no name has a letter to swap or the lookups fail.
std::optional<bool> tellsCaseApart(int folderFd, const std::vector<DirEntry>& entries)
{
    for (const DirEntry& entry : entries) {
        if (!hasAsciiLetter(entry.name))
            continue;
        struct stat original {};
        if (::fstatat(folderFd, entry.name.constData(), &original, AT_SYMLINK_NOFOLLOW) != 0)
            continue; // gone since the read
        struct stat swapped {};
        const QByteArray other = withLetterCaseSwapped(entry.name);
        if (::fstatat(folderFd, other.constData(), &swapped, AT_SYMLINK_NOFOLLOW) != 0)
            return errno == ENOENT ? std::optional(true) : std::nullopt;
        return original.st_ino != swapped.st_ino || original.st_dev != swapped.st_dev;
    }
    return std::nullopt;
}

} // namespace

FolderNames FolderNames::read(const FilePath& folder, qsizetype lookups)
{
    FolderNames names;
    auto handle = DirectoryHandle::open(folder, FollowLinks::yes);
    if (!handle)
        return names;
    const auto self = statFd(handle->fd());
    if (!self || !self->isDirectory())
        return names;
    if (lookups * kEntriesPerStat < self->size / kBytesPerEntry)
        return names; // a few names in a large folder: their stats cost less
    std::vector<DirEntry> entries;
    if (!handle->readEntries(entries))
        return names;
    if (tellsCaseApart(handle->fd(), entries) != true)
        return names;
    qsizetype bytes = 0;
    for (const DirEntry& entry : entries)
        bytes += entry.name.size() + 1;
    if (bytes >= std::numeric_limits<quint32>::max())
        return names;
    names.m_bytes.reserve(bytes);
    names.m_starts.reserve(entries.size());
    for (const DirEntry& entry : entries) {
        names.m_starts.push_back(quint32(names.m_bytes.size()));
        names.m_bytes += entry.name;
        names.m_bytes += '\0';
    }
    // At most half full, so that a lookup finds its name or an empty slot within a few steps.
    size_t slots = 16;
    while (slots < 2 * entries.size())
        slots *= 2;
    names.m_slots.assign(slots, 0);
    for (const quint32 start : names.m_starts) {
        const qsizetype slot = names.slotOf(names.nameAt(start));
        if (names.m_slots[size_t(slot)] == 0)
            names.m_slots[size_t(slot)] = start + 1;
    }
    names.m_known = true;
    return names;
}

QByteArrayView FolderNames::nameAt(quint32 start) const
{
    return QByteArrayView(m_bytes.constData() + start); // up to its closing NUL
}

qsizetype FolderNames::slotOf(QByteArrayView name) const
{
    const size_t mask = m_slots.size() - 1;
    for (size_t slot = qHash(name, QHashSeed::globalSeed()) & mask;; slot = (slot + 1) & mask) {
        const quint32 entry = m_slots[slot];
        if (entry == 0 || nameAt(entry - 1) == name)
            return qsizetype(slot);
    }
}

FolderNames::Answer FolderNames::holds(QByteArrayView name) const
{
    if (!m_known)
        return Answer::unknown;
    if (name.contains('\0'))
        return Answer::free; // no name on disk holds one
    return m_slots[size_t(slotOf(name))] != 0 ? Answer::held : Answer::free;
}

void FolderNamesCache::expect(const QList<FilePath>& paths)
{
    QByteArrayView run; // consecutive paths in one folder are counted together
    qsizetype count = 0;
    const auto countRun = [&] {
        if (count > 0)
            m_expected[run.toByteArray()] += count;
    };
    for (const FilePath& path : paths) {
        const QByteArrayView folder = folderPartOf(path);
        if (folder != run) {
            countRun();
            run = folder;
            count = 0;
        }
        ++count;
    }
    countRun();
}

const FolderNames& FolderNamesCache::around(const FilePath& path)
{
    const QByteArrayView folder = folderPartOf(path);
    if (m_last && folder == m_lastFolder)
        return *m_last;
    m_lastFolder = folder.toByteArray();
    auto& names = m_folders[m_lastFolder];
    if (!names) {
        const FilePath folderPath = FilePath::fromNative(folder.size() > 1 ? folder.chopped(1) : folder);
        names = std::make_shared<const FolderNames>(FolderNames::read(folderPath, m_expected.value(m_lastFolder, 1)));
    }
    m_last = names.get();
    return *m_last;
}

} // namespace orwick
