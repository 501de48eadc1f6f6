#include "preview/ArchiveListing.h"

#include "platform/UniqueFd.h"

#include <archive.h>
#include <archive_entry.h>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace orwick::preview {

namespace {

// Feeds libarchive from the file and stops it (an error it reports) when the load is
// cancelled, out of time, or has read its share of bytes.
struct Source {
    int fd = -1;
    const PreviewBudget* budget = nullptr;
    qint64 remaining = 0;
    QByteArray buffer = QByteArray(64 * 1024, Qt::Uninitialized);
    bool stopped = false;
};

la_ssize_t readSource(struct archive* archive, void* data, const void** block)
{
    auto* source = static_cast<Source*>(data);
    if (source->budget->shouldStop() || source->remaining <= 0) {
        source->stopped = true;
        archive_set_error(archive, ECANCELED, "stopped");
        return -1;
    }
    for (;;) {
        const ssize_t got = ::read(source->fd, source->buffer.data(), size_t(source->buffer.size()));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0) {
            archive_set_error(archive, errno, "read failed");
            return -1;
        }
        source->remaining -= got;
        *block = source->buffer.constData();
        return got;
    }
}

la_int64_t skipSource(struct archive*, void* data, la_int64_t request)
{
    auto* source = static_cast<Source*>(data);
    const off_t before = ::lseek(source->fd, 0, SEEK_CUR);
    if (before < 0 || ::lseek(source->fd, request, SEEK_CUR) < 0)
        return 0; // not seekable: libarchive reads through instead
    return request;
}

} // namespace

bool isUnsafeEntryName(QByteArrayView name)
{
    if (name.startsWith('/'))
        return true;
    qsizetype start = 0;
    while (start <= name.size()) {
        qsizetype end = name.indexOf('/', start);
        if (end < 0)
            end = name.size();
        const QByteArrayView part = name.sliced(start, end - start);
        if (part == "..")
            return true;
        start = end + 1;
    }
    return false;
}

ArchiveListing listArchive(const FilePath& path, const PreviewLimits& limits, const CancelFlag& cancel)
{
    ArchiveListing listing;
    UniqueFd fd(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    if (!fd.ok()) {
        listing.problem = QStringLiteral("Can’t read “%1”.").arg(path.fileName());
        return listing;
    }
    const PreviewBudget budget(cancel, limits.milliseconds);
    Source source{fd.get(), &budget, limits.archiveBytes};
    struct archive* archive = archive_read_new();
    archive_read_support_filter_all(archive);
    archive_read_support_format_all(archive);
    archive_read_set_read_callback(archive, readSource);
    archive_read_set_skip_callback(archive, skipSource);
    archive_read_set_callback_data(archive, &source);
    if (archive_read_open1(archive) != ARCHIVE_OK) {
        listing.problem = QStringLiteral("“%1” isn’t an archive Orwick can read.").arg(path.fileName());
        archive_read_free(archive);
        return listing;
    }
    listing.opened = true;
    struct archive_entry* entry = nullptr;
    for (;;) {
        if (listing.entries.size() >= limits.archiveEntries) {
            listing.isPartial = true;
            break;
        }
        const int status = archive_read_next_header(archive, &entry);
        if (status == ARCHIVE_EOF)
            break;
        if (status < ARCHIVE_WARN) {
            listing.isPartial = true;
            if (!source.stopped)
                listing.problem = listing.entries.isEmpty() ? QStringLiteral("“%1” is damaged or isn’t an archive Orwick can read.").arg(path.fileName())
                                                            : QStringLiteral("The archive is damaged after this.");
            break;
        }
        if (listing.format.isEmpty())
            listing.format = QString::fromUtf8(archive_format_name(archive));
        const char* raw = archive_entry_pathname(entry);
        const QByteArray name = raw ? QByteArray(raw) : QByteArray();
        ArchiveEntry shown;
        shown.name = visibleName(name);
        shown.isFolder = archive_entry_filetype(entry) == AE_IFDIR;
        shown.isLink = archive_entry_filetype(entry) == AE_IFLNK;
        shown.size = archive_entry_size_is_set(entry) ? archive_entry_size(entry) : -1;
        shown.isUnsafe = isUnsafeEntryName(name);
        listing.entries.append(shown);
        // Data is skipped, never written anywhere.
        if (archive_read_data_skip(archive) < ARCHIVE_WARN) {
            listing.isPartial = true;
            if (!source.stopped)
                listing.problem = QStringLiteral("The archive is damaged after this.");
            break;
        }
    }
    if (source.stopped && !cancel.isCancelled())
        listing.problem = QStringLiteral("Stopped after %1 entries").arg(listing.entries.size());
    archive_read_free(archive);
    return listing;
}

} // namespace orwick::preview
