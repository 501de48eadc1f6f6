#include "files/ListingLoader.h"

#include "files/DirectoryLoader.h"
#include "places/KnownTags.h"
#include "platform/AllTrashes.h"
#include "platform/RecentFiles.h"
#include "platform/Trash.h"
#include "platform/XdgPaths.h"
#include "search/QuerySearch.h"

#include <QDateTime>
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

// Where each trashed item came from and when it was deleted, from its .trashinfo.
void addTrashRecords(FileItems& items, const CancelFlag* cancel)
{
    for (FileItem& item : items) {
        if (cancel && cancel->isCancelled())
            return;
        if (const auto record = trash::record(item.url)) {
            item.trashedFrom = record->originalPath.value_or(FilePath());
            item.deleted = record->deletionDate.value_or(kDistantPast);
        }
    }
}

// Every hit of a walk, gathered into one result.
template <class Run>
ListingResult gather(Run run)
{
    ListingResult result;
    run([&result](SearchBatch&& batch) { result.items.append(std::move(batch.items)); });
    return result;
}

} // namespace

ListingResult load(const Listing& listing, bool showHidden, const CancelFlag* cancel, LoadFeedback* feedback)
{
    QElapsedTimer timer;
    timer.start();
    ListingResult result;
    switch (listing.kind) {
    case Listing::Kind::trash:
        // Every Trash of the user: the home's and those of the other mounted drives. A Trash
        // that can't be read adds nothing; no Trash yet is an empty Trash.
        for (const FilePath& folder : trash::allTrashFolders()) {
            ListingResult part = DirectoryLoader::load(folder.child(QByteArrayView("files")), showHidden, cancel,
                                                       feedback && !feedback->firstBatch ? feedback : nullptr);
            if (!part.error)
                result.items.append(std::move(part.items));
        }
        addTrashRecords(result.items, cancel);
        break;
    case Listing::Kind::recents: result = recents(cancel); break;
    case Listing::Kind::screenshots: result = screenshots(cancel); break;
    case Listing::Kind::tag:
        // Once the home has been read for tags, the tagged files are known: read just those.
        if (const auto known = showHidden ? std::nullopt : KnownTags::tagged(listing.tagName, xdg::home())) {
            for (const FilePath& file : *known) {
                if (cancel && cancel->isCancelled())
                    break;
                if (statPath(file, FollowLinks::no))
                    result.items.append(FileItem::make(file));
            }
            break;
        }
        result = gather([&](const SearchWalker::Sink& sink) {
            CancelFlag never;
            QuerySearch::runTag(listing.tagName, xdg::home(), showHidden, sink, cancel ? *cancel : never);
        });
        break;
    case Listing::Kind::search:
        result = gather([&](const SearchWalker::Sink& sink) {
            CancelFlag never;
            QuerySearch::Options options;
            options.showHidden = showHidden;
            QuerySearch::run(listing.query, options, sink, cancel ? *cancel : never);
        });
        break;
    case Listing::Kind::thisMac: break; // the drives view draws the drives itself
    }
    if (!showHidden && listing.kind != Listing::Kind::trash)
        result.items.removeIf([](const FileItem& item) { return item.isHidden || hasHiddenComponent(item.url); });
    result.durationMs = timer.elapsed();
    return result;
}

} // namespace orwick::ListingLoader
