// Writing zip archives with libarchive.

#include "fileops/ArchiveFiles.h"

#include "fileops/ItemCopier.h"
#include "fileops/OperationTexts.h"
#include "platform/DirectoryReader.h"
#include "platform/ErrorText.h"

#include <archive.h>
#include <archive_entry.h>
#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick {

namespace {

struct ZipWriter {
    archive* zip = archive_write_new();
    archive_entry* entry = archive_entry_new();
    CopyProgress& progress;
    QString error;

    explicit ZipWriter(CopyProgress& p) : progress(p) {}
    ~ZipWriter()
    {
        archive_entry_free(entry);
        archive_write_free(zip);
    }

    bool failWith(const QString& reason)
    {
        if (error.isEmpty())
            error = reason;
        return false;
    }

    // Adds the item `name` of the folder `dirFd` under the archive path `path`.
    bool add(int dirFd, const QByteArray& name, const QByteArray& path)
    {
        if (progress.isCancelled())
            return false;
        struct stat st;
        if (fstatat(dirFd, name.constData(), &st, AT_SYMLINK_NOFOLLOW) != 0)
            return errno == ENOENT || failWith(errorReason(errno)); // vanished meanwhile: left out
        archive_entry_clear(entry);
        archive_entry_copy_pathname(entry, path.constData());
        archive_entry_copy_stat(entry, &st);
        if (S_ISLNK(st.st_mode)) {
            const auto target = readLinkAt(dirFd, name.constData());
            if (!target)
                return failWith(errorReason(errno));
            archive_entry_copy_symlink(entry, target->constData());
            return writeHeader();
        }
        if (S_ISDIR(st.st_mode)) {
            auto folder = DirectoryHandle::openChild(dirFd, name.constData());
            std::vector<DirEntry> entries;
            if (!folder || !folder->readEntries(entries))
                return failWith(errorReason(errno));
            if (!writeHeader())
                return false;
            for (const DirEntry& child : entries)
                if (!add(folder->fd(), child.name, path + '/' + child.name))
                    return false;
            return true;
        }
        if (!S_ISREG(st.st_mode))
            return true; // devices, sockets and pipes have no place in a zip
        const int fd = openat(dirFd, name.constData(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
        if (fd < 0)
            return failWith(errorReason(errno));
        const bool ok = writeHeader() && writeData(fd, name);
        ::close(fd);
        return ok;
    }

    bool writeHeader()
    {
        if (archive_write_header(zip, entry) != ARCHIVE_OK)
            return failWith(QString::fromUtf8(archive_error_string(zip)));
        return true;
    }

    bool writeData(int fd, const QByteArray& name)
    {
        thread_local std::unique_ptr<char[]> buffer(new char[1 << 20]);
        progress.startFile(name, archive_entry_size(entry));
        for (;;) {
            if (progress.isCancelled())
                return false;
            const ssize_t n = ::read(fd, buffer.get(), 1 << 20);
            if (n < 0)
                return failWith(errorReason(errno));
            if (n == 0)
                return true;
            if (archive_write_data(zip, buffer.get(), size_t(n)) != n)
                return failWith(QString::fromUtf8(archive_error_string(zip)));
            progress.advance(n);
        }
    }
};

} // namespace

ArchiveResult compressToZip(const QList<FilePath>& items, const FilePath& archive, CopyProgress& progress)
{
    ArchiveResult result;
    const QString failed = QStringLiteral("Couldn’t compress ") + itemCount(items.size());
    if (items.isEmpty())
        return result;
    qint64 total = 0;
    for (const FilePath& item : items)
        total += treeBytes(item, &progress);
    progress.setTotalBytes(total);

    const FilePath temporary = temporarySibling(archive, "zip");
    auto folder = DirectoryHandle::open(items.first().parent());
    ZipWriter writer(progress);
    archive_write_set_format_zip(writer.zip);
    bool ok = folder && archive_write_open_filename(writer.zip, temporary.c_str()) == ARCHIVE_OK;
    if (!ok)
        writer.failWith(folder ? QString::fromUtf8(archive_error_string(writer.zip)) : errorReason(errno));
    for (const FilePath& item : items)
        ok = ok && writer.add(folder->fd(), item.fileNameBytes(), item.fileNameBytes());
    if (ok && archive_write_close(writer.zip) != ARCHIVE_OK)
        ok = writer.failWith(QString::fromUtf8(archive_error_string(writer.zip)));
    if (ok && !renameNoReplace(temporary, archive))
        ok = writer.failWith(errorReason(errno));
    if (ok) {
        result.made = archive;
        return result;
    }
    archive_write_close(writer.zip); // lets go of the file before it is removed
    (void)removeTree(temporary);
    if (progress.isCancelled())
        result.cancelled = true;
    else
        result.error = writer.error.isEmpty() ? failed : failed + QStringLiteral(": ") + writer.error + QStringLiteral(".");
    return result;
}

} // namespace orwick
