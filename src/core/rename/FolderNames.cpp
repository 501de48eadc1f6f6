#include "rename/FolderNames.h"

#include "platform/DirectoryReader.h"
#include "platform/RawEntries.h"

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <limits>
#include <memory>
#include <string_view>
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
// (nothing) when no name has a letter to swap or the lookups fail. `names` are NUL-closed.
std::optional<bool> tellsCaseApart(int folderFd, const QByteArray& names)
{
    for (qsizetype start = 0; start < names.size();) {
        const QByteArrayView name(names.constData() + start); // up to its NUL
        start += name.size() + 1;
        if (!hasAsciiLetter(name))
            continue;
        struct stat original {};
        if (::fstatat(folderFd, name.data(), &original, AT_SYMLINK_NOFOLLOW) != 0)
            continue; // gone since the read
        struct stat swapped {};
        const QByteArray other = withLetterCaseSwapped(name);
        if (::fstatat(folderFd, other.constData(), &swapped, AT_SYMLINK_NOFOLLOW) != 0)
            return errno == ENOENT ? std::optional(true) : std::nullopt;
        return original.st_ino != swapped.st_ino || original.st_dev != swapped.st_dev;
    }
    return std::nullopt;
}

// Appends the names of the open folder `fd` but "." and ".." to `names`, each closed by a NUL,
// straight from getdents64's buffer; false when the folder can't be read or is too large to
// index with 32 bits.
bool readNames(int fd, QByteArray& names)
{
    constexpr size_t kBufferSize = 256 * 1024;
    const std::unique_ptr<char[]> buffer(new char[kBufferSize]);
    return forEachRawEntry(fd, buffer.get(), kBufferSize, nullptr, [&names](const char* name, size_t length, unsigned char, ino64_t) {
        const qsizetype stored = qsizetype(length) + 1; // with its NUL
        if (names.size() + stored >= qsizetype(std::numeric_limits<quint32>::max()))
            return false;
        names.append(name, stored);
        return true;
    });
}

} // namespace

size_t nameHash(QByteArrayView name)
{
    return std::hash<std::string_view>{}(std::string_view(name.data(), size_t(name.size())));
}

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
    names.m_bytes.reserve(qsizetype(std::min<qint64>(self->size, 64 << 20)));
    if (!readNames(handle->fd(), names.m_bytes) || tellsCaseApart(handle->fd(), names.m_bytes) != true) {
        names.m_bytes = {};
        return names;
    }
    qsizetype count = 0;
    for (const char c : std::as_const(names.m_bytes))
        count += c == '\0';
    // At most half full, so that a lookup finds its name or an empty slot within a few steps.
    size_t slots = 16;
    while (slots < 2 * size_t(count))
        slots *= 2;
    names.m_slots.assign(slots, 0);
    for (qsizetype start = 0; start < names.m_bytes.size();) {
        const QByteArrayView name(names.m_bytes.constData() + start);
        const qsizetype slot = names.slotOf(name);
        if (names.m_slots[size_t(slot)] == 0)
            names.m_slots[size_t(slot)] = quint32(start) + 1;
        start += name.size() + 1;
    }
    names.m_known = true;
    return names;
}

bool FolderNames::isNameAt(quint32 start, QByteArrayView name) const
{
    // The name there is followed by its NUL, so equal bytes and a NUL after them are one name.
    const qsizetype end = qsizetype(start) + name.size();
    return end < m_bytes.size() && m_bytes.at(end) == '\0'
        && std::memcmp(m_bytes.constData() + start, name.data(), size_t(name.size())) == 0;
}

qsizetype FolderNames::slotOf(QByteArrayView name) const
{
    const size_t mask = m_slots.size() - 1;
    for (size_t slot = nameHash(name) & mask;; slot = (slot + 1) & mask) {
        const quint32 entry = m_slots[slot];
        if (entry == 0 || isNameAt(entry - 1, name))
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
