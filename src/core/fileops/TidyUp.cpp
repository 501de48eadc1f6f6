#include "fileops/TidyUp.h"

#include "fileops/OperationTexts.h"
#include "platform/DirectoryReader.h"

namespace orwick {

namespace {

// Names browsers and download tools give files still arriving.
bool isDownloadInProgress(const QString& extension)
{
    static const QStringList partial = {QStringLiteral("part"), QStringLiteral("crdownload"), QStringLiteral("download"),
                                        QStringLiteral("partial"), QStringLiteral("opdownload"), QStringLiteral("!ut")};
    return partial.contains(extension);
}

} // namespace

QString tidyFolderName(FileCategory category)
{
    switch (category) {
    case FileCategory::image: return QStringLiteral("Images");
    case FileCategory::video: return QStringLiteral("Videos");
    case FileCategory::audio: return QStringLiteral("Music");
    case FileCategory::pdf: return QStringLiteral("PDFs");
    case FileCategory::archive: return QStringLiteral("Archives");
    case FileCategory::code: return QStringLiteral("Code");
    case FileCategory::data: return QStringLiteral("Data");
    case FileCategory::text: return QStringLiteral("Documents");
    case FileCategory::diskImage: return QStringLiteral("Disk Images");
    case FileCategory::app:
    case FileCategory::package: return QStringLiteral("Applications");
    case FileCategory::folder:
    case FileCategory::other: break;
    }
    return QStringLiteral("Other");
}

TidyPlan planTidyUp(const FilePath& folder)
{
    TidyPlan plan;
    auto handle = DirectoryHandle::open(folder);
    std::vector<DirEntry> entries;
    if (!handle || !handle->readEntries(entries)) {
        plan.error = QStringLiteral("Couldn’t tidy up %1: it can’t be read.").arg(quoted(folder.fileName()));
        return plan;
    }
    for (const DirEntry& entry : entries) {
        if (entry.name.startsWith('.'))
            continue; // hidden, and .DS_Store
        const auto st = statAt(handle->fd(), entry.name.constData());
        if (!st || !st->isRegular())
            continue;
        const FilePath file = folder.child(QByteArrayView(entry.name));
        const QString extension = file.extension();
        if (isDownloadInProgress(extension))
            continue;
        const QString holder = tidyFolderName(categorize(extension, false, false));
        plan.moves.append({file, folder.child(holder).child(QByteArrayView(entry.name))});
    }
    return plan;
}

} // namespace orwick
