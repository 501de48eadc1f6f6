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

ListingResult load(const FilePath& folder, bool showHidden, const CancelFlag* cancel)
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
        for (size_t i = begin; i < end; ++i) {
            if ((i & 1023) == 0 && cancel && cancel->isCancelled())
                return;
            out[i] = reader.read(entries[i]);
        }
    };
    if (threads == 1) {
        readRange(0, count);
    } else {
        std::vector<std::thread> workers;
        const size_t chunk = (count + threads - 1) / threads;
        for (size_t t = 1; t < threads; ++t)
            workers.emplace_back(readRange, t * chunk, std::min(count, (t + 1) * chunk));
        readRange(0, std::min(count, chunk));
        for (auto& worker : workers)
            worker.join();
    }
    result.durationMs = timer.elapsed();
    return result;
}

} // namespace orwick::DirectoryLoader
