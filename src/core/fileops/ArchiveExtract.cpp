// Extracting archives with libarchive: every format it reads (zip, tar and compressed tar, 7z…).

#include "fileops/ArchiveFiles.h"

#include "fileops/ItemCopier.h"
#include "fileops/OperationTexts.h"
#include "fileops/UniqueName.h"
#include "platform/DirectoryReader.h"
#include "platform/ErrorText.h"

#include <QLocale>
#include <QUuid>
#include <archive.h>
#include <archive_entry.h>
#include <cerrno>
#include <sys/stat.h>

namespace orwick {

namespace {

constexpr qint64 kMinimumLimit = qint64(1) << 30;
constexpr qint64 kExpansionRatio = 200;
constexpr int kMaxEntries = 1000000;

// The entry path made safe: relative, no "..", no "." parts; empty when it would land outside.
QByteArray safeRelativePath(QByteArrayView path)
{
    if (path.startsWith('/'))
        return {};
    QByteArray out;
    for (QByteArrayView part : QByteArray(path.toByteArray()).split('/')) {
        if (part.isEmpty() || part == ".")
            continue;
        if (part == "..")
            return {};
        if (!out.isEmpty())
            out += '/';
        out += part;
    }
    return out;
}

// True when a link stored at `entryPath` with `target` stays inside the extraction folder.
bool linkStaysInside(const QByteArray& entryPath, QByteArrayView target)
{
    if (target.startsWith('/'))
        return false;
    int depth = int(entryPath.count('/')); // folders above the link inside the target
    for (QByteArrayView part : QByteArray(target.toByteArray()).split('/')) {
        if (part.isEmpty() || part == ".")
            continue;
        depth += part == ".." ? -1 : 1;
        if (depth < 0)
            return false;
    }
    return true;
}

QString sizeText(qint64 bytes) { return QLocale::system().formattedDataSize(bytes, 0, QLocale::DataSizeTraditionalFormat); }

struct Reader {
    archive* in = archive_read_new();
    archive* out = archive_write_disk_new();
    ~Reader()
    {
        archive_read_free(in);
        archive_write_free(out);
    }
};

// Unpacks into `folder`; returns the reason it stopped, or an empty text.
QString unpack(const FilePath& archivePath, const FilePath& folder, CopyProgress& progress, qint64 limit, int& refused)
{
    const qint64 archiveSize = progress.snapshot().totalBytes;
    Reader r;
    archive_read_support_filter_all(r.in);
    archive_read_support_format_all(r.in);
    archive_write_disk_set_options(r.out, ARCHIVE_EXTRACT_TIME | ARCHIVE_EXTRACT_PERM | ARCHIVE_EXTRACT_SECURE_NODOTDOT
                                              | ARCHIVE_EXTRACT_SECURE_SYMLINKS | ARCHIVE_EXTRACT_UNLINK);
    if (archive_read_open_filename(r.in, archivePath.c_str(), 1 << 16) != ARCHIVE_OK)
        return QStringLiteral("It can’t be read: %1.").arg(QString::fromUtf8(archive_error_string(r.in)));
    qint64 written = 0;
    qint64 reported = 0; // archive bytes counted as progress
    int entries = 0;
    archive_entry* entry = nullptr;
    for (;;) {
        if (progress.isCancelled())
            return {};
        const int status = archive_read_next_header(r.in, &entry);
        if (status == ARCHIVE_EOF)
            break;
        if (status < ARCHIVE_WARN)
            return QStringLiteral("The archive is damaged: %1.").arg(QString::fromUtf8(archive_error_string(r.in)));
        if (archive_entry_is_encrypted(entry))
            return QStringLiteral("It is protected by a password, and Orwick can’t open protected archives.");
        if (++entries > kMaxEntries)
            return QStringLiteral("It holds more than %1 items, which looks like an archive bomb, so extraction stopped.")
                .arg(QLocale::system().toString(kMaxEntries));
        const char* name = archive_entry_pathname(entry);
        if (!name)
            name = archive_entry_pathname_utf8(entry);
        const QByteArray path = safeRelativePath(name ? QByteArrayView(name) : QByteArrayView());
        if (path.isEmpty()) { // outside the folder, or the folder itself ("./")
            const QByteArrayView raw = name ? QByteArrayView(name) : QByteArrayView();
            refused += raw.startsWith('/') || raw.contains("..") ? 1 : 0;
            continue;
        }
        if (path == "__MACOSX" || path.startsWith("__MACOSX/"))
            continue;
        if (const char* target = archive_entry_symlink(entry); target && !linkStaysInside(path, target)) {
            ++refused;
            continue;
        }
        if (const char* hardlink = archive_entry_hardlink(entry)) {
            const QByteArray linked = safeRelativePath(hardlink);
            if (linked.isEmpty()) {
                ++refused;
                continue;
            }
            archive_entry_copy_hardlink(entry, folder.child(QByteArrayView(linked)).c_str());
        }
        archive_entry_copy_pathname(entry, folder.child(QByteArrayView(path)).c_str());
        progress.startFile(path.mid(path.lastIndexOf('/') + 1), archive_entry_size(entry));
        if (archive_write_header(r.out, entry) < ARCHIVE_WARN)
            return QStringLiteral("The file couldn't be taken out of the archive. ") + QString::fromUtf8(archive_error_string(r.out));
        const void* block = nullptr;
        size_t size = 0;
        la_int64_t offset = 0;
        for (;;) {
            if (progress.isCancelled())
                return {};
            const int read = archive_read_data_block(r.in, &block, &size, &offset);
            if (read == ARCHIVE_EOF)
                break;
            if (read < ARCHIVE_WARN) {
                if (archive_entry_is_encrypted(entry) || archive_read_has_encrypted_entries(r.in) > 0)
                    return QStringLiteral("It is protected by a password, and Orwick can’t open protected archives.");
                return QStringLiteral("The file couldn't be taken out of the archive. ") + QString::fromUtf8(archive_error_string(r.in));
            }
            written += qint64(size);
            if (written > limit)
                return QStringLiteral("It would expand to more than %1 from %2, which looks like a zip bomb, so extraction stopped.")
                    .arg(sizeText(limit), sizeText(archiveSize));
            if (archive_write_data_block(r.out, block, size, offset) < ARCHIVE_WARN)
                return QStringLiteral("The file couldn't be taken out of the archive. ") + QString::fromUtf8(archive_error_string(r.out));
            const qint64 consumed = archive_filter_bytes(r.in, -1);
            if (consumed > reported) {
                progress.addFinished(consumed - reported);
                reported = consumed;
            }
        }
        if (archive_write_finish_entry(r.out) < ARCHIVE_WARN)
            return QStringLiteral("The file couldn't be taken out of the archive. ") + QString::fromUtf8(archive_error_string(r.out));
    }
    if (archive_write_close(r.out) < ARCHIVE_WARN) // sets the folders' times and permissions
        return QString::fromUtf8(archive_error_string(r.out));
    return {};
}

} // namespace

QByteArray archiveBaseName(const QByteArray& archiveName)
{
    const qsizetype tar = archiveName.lastIndexOf(".tar");
    if (tar > 0)
        return archiveName.left(tar);
    const qsizetype dot = archiveName.lastIndexOf('.');
    return dot > 0 ? archiveName.left(dot) : archiveName;
}

qint64 defaultExpansionLimit(qint64 archiveSize) { return std::max(kMinimumLimit, archiveSize * kExpansionRatio); }

ArchiveResult extractArchive(const FilePath& archive, CopyProgress& progress, qint64 limit)
{
    ArchiveResult result;
    const QString failed = QStringLiteral("Couldn’t extract ") + quoted(archive.fileName());
    const auto st = statPath(archive, FollowLinks::yes);
    if (!st) {
        result.error = failed + QStringLiteral(". ") + errorReason(errno) + QStringLiteral(".");
        return result;
    }
    progress.setTotalBytes(st->size);
    if (limit <= 0)
        limit = defaultExpansionLimit(st->size);
    const FilePath temporary = archive.parent().child(
        QByteArrayView(".orwick-extract-" + QUuid::createUuid().toString(QUuid::WithoutBraces).toLatin1()));
    if (::mkdir(temporary.c_str(), 0700) != 0) {
        result.error = failed + QStringLiteral(": ") + errorReason(errno) + QStringLiteral(".");
        return result;
    }
    const QString reason = unpack(archive, temporary, progress, limit, result.refused);
    if (progress.isCancelled()) {
        result.cancelled = true;
    } else if (!reason.isEmpty()) {
        result.error = failed + QStringLiteral(". ") + reason;
    } else {
        std::vector<DirEntry> entries;
        if (auto folder = DirectoryHandle::open(temporary))
            folder->readEntries(entries);
        std::erase_if(entries, [](const DirEntry& e) { return e.name == "__MACOSX"; });
        bool moved = false;
        if (entries.size() == 1) {
            result.made = uniqueURL(archive.parent().child(QByteArrayView(entries.front().name)), false);
            moved = renameNoReplace(temporary.child(QByteArrayView(entries.front().name)), result.made);
        } else {
            result.made = uniqueURL(archive.parent().child(QByteArrayView(archiveBaseName(archive.fileNameBytes()))), false);
            ::chmod(temporary.c_str(), 0755); // made private while it filled
            moved = renameNoReplace(temporary, result.made);
        }
        if (!moved) {
            result.error = failed + QStringLiteral(": ") + errorReason(errno) + QStringLiteral(".");
            result.made = {};
        }
    }
    (void)removeTree(temporary);
    return result;
}

} // namespace orwick
