#include "files/ListingLoader.h"

#include "files/DirectoryLoader.h"
#include "files/FileItemReader.h"
#include "platform/RecentFiles.h"
#include "platform/Xattr.h"
#include "platform/XdgPaths.h"

#include <QDateTime>
#include <dirent.h>
#include <QElapsedTimer>
#include <algorithm>

namespace orwick::ListingLoader {

namespace {

bool hasHiddenComponent(const FilePath& path)
{
    const QByteArray& bytes = path.native();
    return bytes.contains("/.");
}

ListingResult recents(const CancelFlag* cancel)
{
    ListingResult result;
    const QDateTime since = QDateTime::currentDateTimeUtc().addSecs(-kRecentSeconds);
    for (const RecentFiles::Entry& entry : RecentFiles::read()) {
        if (cancel && cancel->isCancelled())
            break;
        if (!entry.lastUsed.isValid() || entry.lastUsed < since)
            continue;
        const auto st = statPath(entry.path, FollowLinks::yes);
        if (!st)
            continue;
        FileItem item = FileItem::make(entry.path);
        // Folders and applications never count as recently used files.
        if (item.isFolder || item.category == FileCategory::app || item.url.extension() == QLatin1StringView("desktop"))
            continue;
        result.items.append(std::move(item));
    }
    return result;
}

ListingResult screenshots(const CancelFlag* cancel)
{
    const FilePath pictures = xdg::picturesDir();
    FileItems found;
    for (const FileItem& item : DirectoryLoader::load(pictures.child(QByteArrayView("Screenshots")), false, cancel).items)
        if (!item.isFolder)
            found.append(item);
    for (const FileItem& item : DirectoryLoader::load(pictures, false, cancel).items)
        if (!item.isFolder && item.name.startsWith(QLatin1StringView("Screenshot")))
            found.append(item);
    std::stable_sort(found.begin(), found.end(), [](const FileItem& a, const FileItem& b) { return a.modified > b.modified; });
    if (found.size() > kScreenshotLimit)
        found.resize(kScreenshotLimit);
    return {found, std::nullopt, 0};
}

// Folders a tag walk never enters: caches and build output hold no tagged files worth finding.
bool skipWhenWalking(const QByteArray& name)
{
    return name.startsWith('.') || name == "node_modules" || name == "target" || name == "build" || name == "__pycache__";
}

bool hasTag(const QByteArray& tags, const QByteArray& wanted)
{
    for (const QByteArray& tag : tags.split(','))
        if (tag.trimmed().compare(wanted, Qt::CaseInsensitive) == 0)
            return true;
    return false;
}

// Every file and folder under home that carries the tag, walking at most `budget` entries.
ListingResult tagged(const QString& tagName, const CancelFlag* cancel)
{
    ListingResult result;
    const QByteArray wanted = tagName.toUtf8();
    qint64 budget = 200000;
    std::vector<FilePath> pending{xdg::home()};
    while (!pending.empty() && budget > 0) {
        if (cancel && cancel->isCancelled())
            break;
        const FilePath folder = pending.back();
        pending.pop_back();
        const auto handle = DirectoryHandle::open(folder);
        std::vector<DirEntry> entries;
        if (!handle || !handle->readEntries(entries, cancel))
            continue;
        budget -= qint64(entries.size());
        const FileItemReader reader(folder, handle->fd());
        for (const DirEntry& entry : entries) {
            if (skipWhenWalking(entry.name))
                continue;
            const FilePath path = folder.child(QByteArrayView(entry.name));
            if (const auto tags = xattr::get(path, xattr::tags); tags && hasTag(*tags, wanted))
                result.items.append(reader.read(entry));
            if (entry.type == DT_DIR)
                pending.push_back(path);
        }
    }
    return result;
}

} // namespace

ListingResult load(const Listing& listing, bool showHidden, const CancelFlag* cancel)
{
    QElapsedTimer timer;
    timer.start();
    ListingResult result;
    switch (listing.kind) {
    case Listing::Kind::trash:
        result = DirectoryLoader::load(xdg::homeTrash().child(QByteArrayView("files")), showHidden, cancel);
        if (result.error) // no Trash yet is an empty Trash
            result = {};
        break;
    case Listing::Kind::recents: result = recents(cancel); break;
    case Listing::Kind::screenshots: result = screenshots(cancel); break;
    case Listing::Kind::tag: result = tagged(listing.tagName, cancel); break;
    case Listing::Kind::search:
    case Listing::Kind::thisMac: break; // the drives view draws the drives itself
    }
    if (!showHidden && listing.kind != Listing::Kind::trash)
        result.items.removeIf([](const FileItem& item) { return item.isHidden || hasHiddenComponent(item.url); });
    result.durationMs = timer.elapsed();
    return result;
}

} // namespace orwick::ListingLoader
