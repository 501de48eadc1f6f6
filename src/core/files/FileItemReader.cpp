#include "files/FileItemReader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick {

namespace {

QString folderKind() { return QStringLiteral("Folder"); }

} // namespace

QString brokenLinkMessage(const FileItem& item)
{
    return QStringLiteral("“") + item.name + QStringLiteral("” is a broken link");
}

FileItemReader::FileItemReader(const FilePath& folder, int folderFd, QSet<QByteArray> hiddenNames)
    : m_folder(folder), m_fd(folderFd), m_hidden(std::move(hiddenNames))
{
}

FileItem FileItemReader::read(const DirEntry& entry) const
{
    FileItem item;
    item.url = m_folder.child(QByteArrayView(entry.name));
    item.destination = item.url;
    item.name = visibleName(entry.name);
    item.isHidden = entry.name.startsWith('.') || m_hidden.contains(entry.name);

    const QString extension = item.url.extension();
    bool isDirectory = false;
    const auto st = statAt(m_fd, entry.name.constData(), FollowLinks::no);
    if (st) {
        item.modified = st->modifiedMs();
        isDirectory = st->isDirectory();
        if (st->isSymlink()) {
            const QByteArray stored = readLinkAt(m_fd, entry.name.constData()).value_or(QByteArray());
            const FilePath resolved = stored.startsWith('/') ? FilePath::fromNative(stored) : m_folder.child(QByteArrayView(stored));
            const auto target = statAt(m_fd, entry.name.constData(), FollowLinks::yes);
            if (!target) {
                item.brokenTarget = displayName(stored);
                item.kind = kBrokenLinkKind;
                item.category = categorize(extension, false, false);
                item.size = st->size;
                return item;
            }
            item.destination = resolved;
            isDirectory = target->isDirectory();
            if (!isDirectory)
                item.size = target->size;
        } else if (!isDirectory) {
            item.size = st->size;
        }
    }
    // A package is a folder with a bundle extension; the link's target names it.
    item.isPackage = isDirectory && isPackageExtension(item.destination.extension());
    item.isFolder = isDirectory && !item.isPackage;
    if (item.isPackage)
        item.size.reset();
    item.category = categorize(item.isPackage ? item.destination.extension() : extension, item.isFolder, item.isPackage);
    item.kind = item.isFolder ? folderKind() : typeOfExtension(extension).kind;
    return item;
}

QSet<QByteArray> readHiddenFile(int folderFd)
{
    QSet<QByteArray> names;
    const int fd = openat(folderFd, ".hidden", O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return names;
    QByteArray content;
    char buffer[8192];
    ssize_t n;
    while ((n = ::read(fd, buffer, sizeof buffer)) > 0 && content.size() < (1 << 20))
        content.append(buffer, n);
    ::close(fd);
    for (const QByteArray& line : content.split('\n'))
        if (!line.isEmpty())
            names.insert(line);
    return names;
}

FileItem FileItem::make(const FilePath& url)
{
    const FilePath folder = url.parent();
    const int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) {
        FileItem item;
        item.url = item.destination = url;
        item.name = url.fileName();
        item.isHidden = url.fileNameBytes().startsWith('.');
        item.category = categorize(url, false, false);
        return item;
    }
    FileItem item = FileItemReader(folder, fd, readHiddenFile(fd)).read(url.isRoot() ? QByteArray(".") : url.fileNameBytes());
    ::close(fd);
    if (url.isRoot()) {
        item.url = item.destination = url;
        item.name = QStringLiteral("/");
    }
    return item;
}

} // namespace orwick
