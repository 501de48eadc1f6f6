#include "files/DirectoryLoader.h"

#include "files/FileItemReader.h"

#include <QElapsedTimer>
#include <QThread>
#include <thread>

namespace orwick::DirectoryLoader {

namespace {
// Below this many entries one thread is quicker than starting another.
constexpr size_t kEntriesPerThread = 8192;
} // namespace

ListingResult load(const FilePath& folder, bool showHidden, const CancelFlag* cancel, LoadFeedback* feedback)
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
                if (cancel && cancel->isCancelled())
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
    // A large folder's first batch goes out before the rest is read.
    size_t start = 0;
    if (feedback && feedback->firstBatch && count > size_t(kFirstBatchSize)) {
        start = size_t(kFirstBatchSize);
        readRange(0, start);
        if (cancel && cancel->isCancelled())
            return result;
        feedback->firstBatch(FileItems(result.items.cbegin(), result.items.cbegin() + kFirstBatchSize));
    }
    const size_t rest = count - start;
    if (threads == 1 || rest < kEntriesPerThread) {
        readRange(start, count);
    } else {
        std::vector<std::thread> workers;
        const size_t chunk = (rest + threads - 1) / threads;
        for (size_t t = 1; t < threads; ++t)
            workers.emplace_back(readRange, start + t * chunk, std::min(count, start + (t + 1) * chunk));
        readRange(start, std::min(count, start + chunk));
        for (auto& worker : workers)
            worker.join();
    }

    result.durationMs = timer.elapsed();
    return result;
}

} // namespace orwick::DirectoryLoader
