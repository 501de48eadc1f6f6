#pragma once
// ArchiveListing: the entries of an archive (zip, tar and its compressed kinds, 7z, …) read
// through libarchive's headers alone — never extracted, nothing written. Bounded by entries,
// compressed bytes read and time; a damaged archive lists what came before the damage.
// Entries whose names would land outside a folder they were extracted into ("../x", "/etc/x")
// are listed and counted, never followed. Safe on any thread.

#include "base/FilePath.h"
#include "preview/PreviewLimits.h"

#include <QList>
#include <QString>

namespace orwick::preview {

struct ArchiveEntry {
    QString name;       // as stored (shown text of its bytes)
    qint64 size = -1;   // unknown: -1
    bool isFolder = false;
    bool isLink = false;
    bool isUnsafe = false; // absolute, or climbing out with ".."
};

struct ArchiveListing {
    QList<ArchiveEntry> entries;
    QString format;     // "ZIP 2.0 (deflation)", "GNU tar format"…
    QString problem;    // why the listing stopped early: damaged, cancelled, a limit
    bool isPartial = false;
    bool opened = false; // false: not an archive libarchive can read
};

ArchiveListing listArchive(const FilePath& path, const PreviewLimits& limits, const CancelFlag& cancel);

// True for names that would escape the folder they are extracted into.
bool isUnsafeEntryName(QByteArrayView name);

} // namespace orwick::preview
