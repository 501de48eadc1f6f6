#pragma once
// Compressing to zip and extracting archives with libarchive, in process, on the worker thread.
//
// compressToZip writes through a temporary name and renames the finished archive into place.
// extractArchive unpacks into a temporary folder beside the archive, refusing entries that would
// land outside it (absolute paths, "..", links pointing out), dropping "__MACOSX", stopping when
// the expansion passes its cap (a zip bomb), and then moves the one item it holds — or the
// folder, named after the archive — beside the archive under a free name. The temporary folder
// is removed in every case. Progress is by bytes (of the items read, or of the archive read).

#include "base/FilePath.h"
#include "fileops/CopyProgress.h"

#include <QList>

namespace orwick {

struct ArchiveResult {
    FilePath made;     // the archive made, or the item extracted
    QString error;     // a full sentence; empty on success
    int refused = 0;   // entries left out because they pointed outside the target
    bool cancelled = false;
};

// Zips `items` (all in one folder) into `archive`, which must be free.
ArchiveResult compressToZip(const QList<FilePath>& items, const FilePath& archive, CopyProgress& progress);

// The name an archive's contents get as a folder: "photos.tar.gz" → "photos".
QByteArray archiveBaseName(const QByteArray& archiveName);

// The default cap on what one archive may expand to: 200 × its size, at least 1 GiB.
qint64 defaultExpansionLimit(qint64 archiveSize);

// Extracts `archive` beside itself; `limit` caps the bytes written (0 = the default).
ArchiveResult extractArchive(const FilePath& archive, CopyProgress& progress, qint64 limit = 0);

} // namespace orwick
