#include "search/NameWalk.h"

#include "disktools/BuildJunk.h"
#include "platform/DirectoryReader.h"
#include "search/SearchRoots.h"
#include "search/SearchWalker.h"

#include <QHash>
#include <deque>
#include <mutex>
#include <thread>

namespace orwick::NameWalk {
namespace {

// Whether the search walker goes into this folder (as SearchWalker decides).
bool isEnteredFolder(const SearchCandidate& folder, const QSet<QByteArray>& closedMounts)
{
    if (folder.name() == ".git" || BuildJunk::isBuildFolder(folder.name(), folder.folderFd()))
        return false;
    return closedMounts.isEmpty() || !closedMounts.contains(folder.path().native());
}

// Takes the walker's entries from any thread into one table.
class TableBuilder {
public:
    TableBuilder(const std::vector<FilePath>& roots, qsizetype maxNames, const CancelFlag& cancel)
        : m_maxNames(maxNames), m_cancel(cancel), m_closed(SearchRoots::closedMountPoints())
    {
        for (const FilePath& root : roots)
            m_folders.insert(root.native(), m_table.addRoot(root));
    }

    const CancelFlag& stop() const { return m_stop; }

    void record(const SearchCandidate& candidate)
    {
        // Outside the lock: these may read the entry's statx or a marker file beside it.
        const bool isFolder = candidate.isFolder();
        const bool isEntered = isFolder && isEnteredFolder(candidate, m_closed);
        std::lock_guard lock(m_mutex);
        if (m_cancel.isCancelled() || m_table.size() >= m_maxNames) {
            m_stop.cancel();
            return;
        }
        Place& place = placeOfThisThread();
        if (place.folder != candidate.folder().native()) {
            place.folder = candidate.folder().native();
            place.entry = m_folders.value(place.folder, NameTable::kNone);
        }
        if (place.entry == NameTable::kNone)
            return;
        const quint32 entry = m_table.add(place.entry, candidate.name(), isFolder, isEntered);
        if (isEntered)
            m_folders.insert(candidate.folder().child(QByteArrayView(candidate.name())).native(), entry);
    }

    Result finish()
    {
        std::lock_guard lock(m_mutex);
        m_folders.clear();
        return {m_table.compacted(), m_stop.isCancelled()};
    }

private:
    // The folder a walker thread is in (it offers one folder's entries one after another).
    struct Place {
        std::thread::id thread;
        QByteArray folder;
        quint32 entry = NameTable::kNone;
    };

    Place& placeOfThisThread()
    {
        const std::thread::id self = std::this_thread::get_id();
        for (Place& place : m_places)
            if (place.thread == self)
                return place;
        m_places.push_back({self, {}, NameTable::kNone});
        return m_places.back();
    }

    const qsizetype m_maxNames;
    const CancelFlag& m_cancel;
    const QSet<QByteArray> m_closed;
    CancelFlag m_stop;
    std::mutex m_mutex;
    NameTable m_table;
    QHash<QByteArray, quint32> m_folders; // folder path → its entry, while walking
    std::deque<Place> m_places;
};

} // namespace

Result walk(const std::vector<FilePath>& roots, const CancelFlag& cancel, qsizetype maxNames, int threads)
{
    TableBuilder builder(roots, maxNames, cancel);
    SearchWalker::Options options;
    options.roots = roots;
    options.makeItems = false;
    options.threads = threads;
    SearchWalker::run(options, [&](const SearchCandidate& candidate) {
        builder.record(candidate);
        return false; // nothing is a hit: the names went into the table
    }, [](SearchBatch&&) {}, builder.stop());
    Result result = builder.finish();
    result.isPartial = result.isPartial || cancel.isCancelled();
    return result;
}

std::vector<FolderEntries> list(const std::vector<FilePath>& folders, const CancelFlag& cancel)
{
    std::vector<FolderEntries> found(folders.size());
    QHash<QByteArray, size_t> slots;
    for (size_t i = 0; i < folders.size(); ++i) {
        found[i].folder = folders[i];
        slots.insert(folders[i].native(), i);
    }
    std::mutex mutex;
    const QSet<QByteArray> closed = SearchRoots::closedMountPoints();
    SearchWalker::Options options;
    options.roots = folders;
    options.recursive = false;
    options.makeItems = false;
    options.threads = 1;
    SearchWalker::run(options, [&](const SearchCandidate& candidate) {
        const bool isFolder = candidate.isFolder();
        const bool isEntered = isFolder && isEnteredFolder(candidate, closed);
        std::lock_guard lock(mutex);
        const auto slot = slots.constFind(candidate.folder().native());
        if (slot != slots.constEnd())
            found[*slot].entries.push_back({candidate.name(), isFolder, isEntered});
        return false;
    }, [](SearchBatch&&) {}, cancel);
    for (FolderEntries& folder : found) {
        const auto stat = statPath(folder.folder, FollowLinks::yes);
        folder.exists = stat && stat->isDirectory();
    }
    return found;
}

} // namespace orwick::NameWalk
