#include "files/DirectoryLoader.h"

#include "files/FileItemReader.h"
#include "files/NameOrder.h"

#include <QElapsedTimer>
#include <QThread>
#include <thread>

namespace orwick::DirectoryLoader {

namespace {
// Below this many entries one thread is quicker than starting another.
constexpr size_t kEntriesPerThread = 8192;
// The readers take the entries in chunks of this many, so that none waits while work is left.
constexpr size_t kChunk = 1024;

bool cancelled(const CancelFlag* cancel) { return cancel && cancel->isCancelled(); }

// The entries' indices in natural order of the names a pane shows for them.
std::vector<int> nameOrderOf(const std::vector<DirEntry>& entries, const CancelFlag* cancel)
{
    FoldedNames names;
    names.offsets.reserve(entries.size() + 1);
    for (const DirEntry& entry : entries)
        names.append(visibleName(entry.name));
    return rankNames(names, cancel).order;
}
} // namespace

ListingResult load(const FilePath& folder, bool showHidden, const CancelFlag* cancel, LoadFeedback* feedback, Order order)
{
    QElapsedTimer timer;
    timer.start();
    ListingResult result;
    const auto handle = DirectoryHandle::open(folder);
    std::vector<DirEntry> entries;
    if (!handle || !handle->readEntries(entries, cancel)) {
        result.error = emptyText::cantOpen;
        result.durationMs = timer.elapsed();
        return result;
    }
    QSet<QByteArray> hiddenNames = readHiddenFile(handle->fd());
    if (!showHidden) {
        std::erase_if(entries, [&](const DirEntry& e) { return e.name.startsWith('.') || hiddenNames.contains(e.name); });
    }
    const FileItemReader reader(folder, handle->fd(), std::move(hiddenNames));

    const size_t count = entries.size();
    const size_t threads = std::clamp<size_t>(count / kEntriesPerThread, 1, size_t(QThread::idealThreadCount()));
    result.items.resize(qsizetype(count));
    FileItem* out = result.items.data(); // detached once, here, before the threads write
    auto readRange = [&](size_t begin, size_t end) {
        size_t unreported = 0;
        for (size_t i = begin; i < end; ++i) {
            if (++unreported == 256) {
                if (cancelled(cancel))
                    return;
                if (feedback)
                    feedback->itemsRead.fetch_add(256, std::memory_order_relaxed);
                unreported = 0;
            }
            out[i] = reader.read(entries[i]);
        }
        if (feedback)
            feedback->itemsRead.fetch_add(qint64(unreported), std::memory_order_relaxed);
    };
    const bool byName = order == Order::byName && count > 1;
    // The name order needs only the names: for a large folder a thread of its own works it out
    // while the others read (from the first batch on), then reads along.
    const bool orderBeside = byName && count >= kEntriesPerThread;
    std::vector<int> nameOrder;
    std::atomic<size_t> nextChunk{0};
    std::atomic<bool> chunksOpen{false}; // the first batch is read: the chunks after it are free
    auto readChunks = [&] {
        while (!cancelled(cancel)) {
            const size_t begin = nextChunk.fetch_add(kChunk);
            if (begin >= count)
                return;
            readRange(begin, std::min(count, begin + kChunk));
        }
    };
    std::vector<std::thread> workers;
    if (orderBeside)
        workers.emplace_back([&] {
            nameOrder = nameOrderOf(entries, cancel);
            chunksOpen.wait(false);
            readChunks();
        });

    // A large folder's first batch goes out before the rest is read.
    size_t start = 0;
    if (feedback && feedback->firstBatch && count > size_t(kFirstBatchSize)) {
        start = size_t(kFirstBatchSize);
        readRange(0, start);
        if (!cancelled(cancel))
            feedback->firstBatch(FileItems(result.items.cbegin(), result.items.cbegin() + kFirstBatchSize));
    }

    // The rest, in chunks each reader takes in turn.
    nextChunk = start;
    chunksOpen = true;
    chunksOpen.notify_all();
    const size_t readers = count - start < kEntriesPerThread ? 1 : threads;
    for (size_t t = orderBeside ? 2 : 1; t < readers; ++t) // the orderer is a reader once done
        workers.emplace_back(readChunks);
    readChunks();
    for (auto& worker : workers)
        worker.join();
    if (byName && !orderBeside)
        nameOrder = nameOrderOf(entries, cancel);
    if (cancelled(cancel))
        return result;

    // Into name order: the items move (no copies), large folders in two halves at once.
    if (byName && nameOrder.size() == count) {
        FileItems ordered;
        ordered.resize(qsizetype(count));
        FileItem* into = ordered.data();
        auto place = [&](size_t begin, size_t end) {
            for (size_t k = begin; k < end; ++k)
                into[k] = std::move(out[nameOrder[k]]);
        };
        if (readers > 1) {
            std::thread firstHalf(place, 0, count / 2);
            place(count / 2, count);
            firstHalf.join();
        } else {
            place(0, count);
        }
        result.items = std::move(ordered);
    }
    result.durationMs = timer.elapsed();
    return result;
}

} // namespace orwick::DirectoryLoader
