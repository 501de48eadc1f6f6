#pragma once
// FinderTags: the tags of the files Orwick has seen, kept so that the file rows' colour dots,
// the tag commands and the sidebar's Tags section are current without reading the disk again
// for every paint or walking the home folder again for every click.
//
// `cache` maps a folder to the tagged files in it and their tags (untagged files are not kept).
// It is fed once by a walk of the home folder (scanHome), then by every folder a pane shows, as
// it loads and whenever its watcher reloads it (refreshFolder), by the items of listings
// (refreshItems), and by Orwick's own tag changes, undo and redo included (follow). It holds at
// most kMaxFolders folders and kMaxFiles files; the folders cached longest ago go first
// (`folderOrder`). Reading runs on the thread pool; results are applied on the GUI thread, where
// every member must be called. The home walk stops when the application is about to quit.
//
// Once the home walk has finished, the cache knows every tagged file under home that Orwick can
// know of, and the shared instance hands that to the tag listing (through KnownTags.h),
// so a click on a tag reads only the tagged files instead of walking the home again. Dropping a
// folder with tagged files to stay within bounds ends that: the listing walks again.
//
// Signals: changed() follows every change of a file's tags as the cache knows them, after
// `revision` increased; it is not emitted when a reading finds what the cache already held, nor
// when a folder is read for the first time without tagged files (its rows' dots don't change:
// every pane redraws its rows' decorations at each change).

#include "base/CancelFlag.h"
#include "base/FilePath.h"
#include "places/TagList.h"

#include <QHash>
#include <QObject>
#include <optional>

namespace orwick {

class FileOperations;

class FinderTags : public QObject {
    Q_OBJECT
public:
    static constexpr int kMaxFolders = 2000;
    static constexpr int kMaxFiles = 100000;
    using FolderTags = QHash<FilePath, TagList>; // file → its tags

    explicit FinderTags(QObject* parent = nullptr);
    // Stops a walk of the home that is still running (so that quitting never waits for it).
    ~FinderTags() override;
    // The application's one instance.
    static FinderTags& shared();

    quint64 revision() const { return m_revision; }
    const QHash<FilePath, FolderTags>& cache() const { return m_cache; }
    const QList<FilePath>& folderOrder() const { return m_folderOrder; }
    // A file's tags as last read; empty when it has none or was not read.
    TagList tagsOf(const FilePath& file) const;
    // Every tag some cached file carries: colour tags first, in their order, then the others by name.
    QList<FinderTag> inUse() const;

    // Walks the home folder once for tagged files (later calls do nothing); the folders a pane
    // has read meanwhile keep their newer readings.
    void scanHome();
    // Whether the cache holds every tagged file of the home: the walk finished and no folder
    // with tagged files has been dropped since.
    bool isComplete() const { return m_complete; }
    // Reads the tags of every entry of the folder again.
    void refreshFolder(const FilePath& folder);
    // Reads the tags of these files again (they may lie in many folders).
    void refreshItems(const QList<FilePath>& files);
    // Refreshes whatever `operations` tags, untags or moves.
    void follow(FileOperations* operations);

    // Apply readings (also what the background readers call): the whole of a folder, or some
    // files (an empty TagList drops the file).
    void storeFolder(const FilePath& folder, FolderTags tagged, bool keepNewer = false);
    void storeFiles(const FolderTags& files);

Q_SIGNALS:
    void changed();

private:
    // storeFolder() without the signal: true when a file's tags changed.
    bool putFolder(const FilePath& folder, FolderTags tagged, bool keepNewer);
    void touch(const FilePath& folder);
    // Drops the folders cached longest ago beyond the bounds; true when tagged files went.
    bool trim();
    void bump();
    void publish() const;

    quint64 m_revision = 0;
    mutable std::optional<QList<FinderTag>> m_inUse; // worked out when first asked after a change
    QHash<FilePath, FolderTags> m_cache;
    QList<FilePath> m_folderOrder;
    qsizetype m_files = 0;
    bool m_scanned = false;
    bool m_complete = false;
    CancelToken m_stop = makeCancelToken(); // the home walk's
};

} // namespace orwick
