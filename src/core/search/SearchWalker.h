#pragma once
// SearchWalker: the one engine behind every search — the pane's search listings, the tag
// listing and `orwick-cli search`. It walks its roots with a small, bounded pool of threads,
// reads each folder once (getdents64, statx only where a test asks for it), never follows a
// symbolic link, never enters the build folders of the clean-up rules or ".git", never enters a
// network or pseudo file system mounted inside a root (a root on one is searched), and leaves
// unreadable folders out in silence. Names stay bytes.
//
// The caller's test decides what is a hit. Hits reach the sink in batches, at most one batch
// per `batchIntervalMs` while walking (the first as soon as there is a hit) and one last batch at
// the end, so the first results show while the walk goes on. The sink is called from walker threads, one call at a time; nothing
// is delivered after run() returns. Cancelling stops the walk soon and quietly.

#include "base/CancelFlag.h"
#include "files/FileItem.h"
#include "platform/DirectoryReader.h"

#include <QList>
#include <functional>
#include <optional>
#include <vector>

namespace orwick {

// One entry the walk offers to a test. Its statx is read only when asked for, once.
class SearchCandidate {
public:
    SearchCandidate(int folderFd, const FilePath& folder, const DirEntry& entry)
        : m_fd(folderFd), m_folder(folder), m_entry(entry) {}

    int folderFd() const { return m_fd; }
    const FilePath& folder() const { return m_folder; }
    const QByteArray& name() const { return m_entry.name; }
    bool isFolder() const; // the entry itself, not a link's target
    FilePath path() const { return m_folder.child(QByteArrayView(m_entry.name)); }
    // The entry itself (a link is not followed); nothing when it vanished.
    const std::optional<EntryStat>& stat() const;
    bool isRegularFile() const;

private:
    int m_fd;
    const FilePath& m_folder;
    const DirEntry& m_entry;
    mutable bool m_statRead = false;
    mutable std::optional<EntryStat> m_stat;
};

struct SearchBatch {
    QList<FilePath> paths; // every hit, in the order found
    FileItems items;       // the same hits as items, when the walk makes them
};

namespace SearchWalker {

struct Options {
    std::vector<FilePath> roots;
    bool recursive = true;     // false: only the roots' own entries
    bool showHidden = false;   // false: dot-names are neither offered nor entered
    bool makeItems = true;     // a FileItem per hit (the pane); the command line needs paths only
    int threads = 0;           // 0: one per core, one when the machine is busy
    qint64 batchIntervalMs = 100;
    qint64 limit = 0;          // stop after this many hits (0: no limit); no more are delivered
};

using Test = std::function<bool(const SearchCandidate&)>;
using Sink = std::function<void(SearchBatch&&)>;

// Walks every root; returns the number of hits delivered (whatever was found before a cancel,
// at most the limit).
qint64 run(const Options& options, const Test& test, const Sink& sink, const CancelFlag& cancel);

} // namespace SearchWalker

} // namespace orwick
