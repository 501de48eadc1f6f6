#include "preview/FolderSummary.h"

#include "base/Formatting.h"
#include "files/FileCategory.h"
#include "platform/DirectoryReader.h"

#include <QHash>
#include <QLocale>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace orwick::preview {

namespace {

QString lowerExtension(const QByteArray& name)
{
    const qsizetype dot = name.lastIndexOf('.');
    if (dot <= 0 || dot == name.size() - 1)
        return {};
    return QString::fromUtf8(name.mid(dot + 1)).toLower();
}

// "images" for image, "documents" for text…: how a category reads in a count.
QString plural(FileCategory category)
{
    switch (category) {
    case FileCategory::folder: return QStringLiteral("folders");
    case FileCategory::app: return QStringLiteral("programs");
    case FileCategory::package: return QStringLiteral("packages");
    case FileCategory::image: return QStringLiteral("images");
    case FileCategory::video: return QStringLiteral("videos");
    case FileCategory::audio: return QStringLiteral("audio files");
    case FileCategory::pdf: return QStringLiteral("PDFs");
    case FileCategory::archive: return QStringLiteral("archives");
    case FileCategory::code: return QStringLiteral("source files");
    case FileCategory::data: return QStringLiteral("data files");
    case FileCategory::text: return QStringLiteral("documents");
    case FileCategory::diskImage: return QStringLiteral("disk images");
    case FileCategory::other: break;
    }
    return QStringLiteral("other files");
}

} // namespace

FolderCounts countFolder(const FilePath& folder, const CancelFlag& cancel, qint64 maxItems)
{
    FolderCounts counts;
    const auto handle = DirectoryHandle::open(folder);
    std::vector<DirEntry> entries;
    if (!handle) {
        counts.readable = false;
        return counts;
    }
    if (!handle->readEntries(entries, &cancel) && !cancel.isCancelled())
        counts.readable = false;
    QHash<QString, qint64> byKind;
    for (const DirEntry& entry : entries) {
        if (counts.items >= maxItems) {
            counts.isPartial = true;
            break;
        }
        ++counts.items;
        if (entry.name.startsWith('.'))
            ++counts.hidden;
        bool isFolder = entry.type == DT_DIR;
        if (entry.type == DT_UNKNOWN)
            if (const auto st = statAt(handle->fd(), entry.name.constData()))
                isFolder = st->isDirectory();
        const FileCategory category = categorize(lowerExtension(entry.name), isFolder, false);
        if (isFolder && category == FileCategory::folder)
            ++counts.folders;
        ++byKind[plural(category)];
    }
    for (auto it = byKind.cbegin(); it != byKind.cend(); ++it)
        counts.kinds.append({it.key(), it.value()});
    std::sort(counts.kinds.begin(), counts.kinds.end(),
              [](const auto& a, const auto& b) { return a.second != b.second ? a.second > b.second : a.first < b.first; });
    return counts;
}

FolderSize measureFolder(const FilePath& folder, const PreviewBudget& budget)
{
    FolderSize size;
    const auto root = DirectoryHandle::open(folder);
    if (!root)
        return size;
    const auto rootStat = statFd(root->fd());
    const quint64 device = rootStat ? rootStat->device : 0;
    // Depth first with an explicit stack of open folders, bounded so a deep tree never holds
    // too many descriptors: deeper folders are revisited by path.
    std::vector<FilePath> pending{folder};
    std::vector<DirEntry> entries;
    while (!pending.empty()) {
        if (budget.shouldStop()) {
            size.isPartial = true;
            return size;
        }
        const FilePath current = std::move(pending.back());
        pending.pop_back();
        const auto handle = DirectoryHandle::open(current, FollowLinks::no);
        if (!handle)
            continue;
        entries.clear();
        handle->readEntries(entries);
        for (const DirEntry& entry : entries) {
            const auto st = statForWalk(handle->fd(), entry.name.constData());
            if (!st)
                continue;
            if (st->isDirectory()) {
                size.bytes += st->allocatedBytes();
                if (st->device == device)
                    pending.push_back(current.child(QByteArrayView(entry.name)));
            } else {
                size.bytes += st->allocatedBytes();
                ++size.files;
            }
        }
    }
    return size;
}

QStringList describeCounts(const FolderCounts& counts)
{
    if (!counts.readable)
        return {QStringLiteral("Can’t read this folder")};
    if (counts.items == 0)
        return {QStringLiteral("Empty folder")};
    QStringList kinds;
    for (const auto& [name, count] : counts.kinds)
        kinds.append(QStringLiteral("%1 %2").arg(QLocale(QLocale::English).toString(count), count == 1 ? name.chopped(1) : name));
    QStringList lines{formatCount(counts.items, QStringLiteral("item")) + (counts.isPartial ? QStringLiteral(" or more") : QString())};
    lines.append(kinds.join(QStringLiteral(", ")));
    if (counts.hidden > 0)
        lines.append(QStringLiteral("%1 hidden").arg(QLocale(QLocale::English).toString(counts.hidden)));
    return lines;
}

QString describeSize(const FolderSize& size)
{
    const QString files = formatCount(size.files, QStringLiteral("file"));
    if (size.isPartial)
        return QStringLiteral("More than %1 in %2 so far").arg(formatByteCount(size.bytes), files);
    return QStringLiteral("%1 in %2").arg(formatByteCount(size.bytes), files);
}

} // namespace orwick::preview
