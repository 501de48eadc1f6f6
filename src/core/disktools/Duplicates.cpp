#include "disktools/Duplicates.h"

#include "disktools/DiskNames.h"
#include "disktools/DuplicatesWalk.h"
#include "disktools/FileHasher.h"
#include "disktools/WalkPool.h"

#include <QLocale>
#include <algorithm>
#include <thread>

namespace orwick::Duplicates {

namespace {

struct Candidate {
    File file;
    qint64 size = 0;
    quint64 device = 0;
    quint64 inode = 0;
    std::optional<Sha256Digest> digest;
};

using Bucket = std::vector<size_t>; // indexes into the candidates, all of one size (and digest)

// Runs fn(index, hasher) for every index, on `threads` threads, taking indexes in order so that
// the disk is read in the order given.
template <class Fn>
void hashInParallel(const std::vector<size_t>& order, int threads, const CancelFlag& cancel, Progress* progress, Fn fn)
{
    std::atomic<size_t> next{0};
    auto work = [&] {
        FileHasher hasher;
        for (;;) {
            const size_t i = next.fetch_add(1, std::memory_order_relaxed);
            if (i >= order.size() || cancel.isCancelled())
                return;
            fn(order[i], hasher);
            if (progress)
                progress->filesHashed.fetch_add(1, std::memory_order_relaxed);
        }
    };
    const int helpers = std::min<int>(threads, int(order.size())) - 1;
    std::vector<std::thread> pool;
    for (int i = 0; i < helpers; ++i)
        pool.emplace_back(work);
    work();
    for (std::thread& thread : pool)
        thread.join();
}

// Members of every bucket, in inode order: neighbouring inodes tend to lie near each other on
// disk, so the heads are read with few seeks.
std::vector<size_t> diskOrder(const std::vector<Candidate>& candidates, const std::vector<Bucket>& buckets)
{
    std::vector<size_t> order;
    for (const Bucket& bucket : buckets)
        order.insert(order.end(), bucket.begin(), bucket.end());
    std::sort(order.begin(), order.end(), [&](size_t a, size_t b) {
        return std::tie(candidates[a].device, candidates[a].inode) < std::tie(candidates[b].device, candidates[b].inode);
    });
    return order;
}

// Splits each bucket by digest; files without a digest (gone, changed, unreadable) drop out.
std::vector<Bucket> splitByDigest(const std::vector<Candidate>& candidates, const std::vector<Bucket>& buckets)
{
    std::vector<Bucket> out;
    for (Bucket bucket : buckets) {
        std::erase_if(bucket, [&](size_t i) { return !candidates[i].digest; });
        std::sort(bucket.begin(), bucket.end(), [&](size_t a, size_t b) { return *candidates[a].digest < *candidates[b].digest; });
        for (size_t start = 0; start < bucket.size();) {
            size_t end = start + 1;
            while (end < bucket.size() && *candidates[bucket[end]].digest == *candidates[bucket[start]].digest)
                ++end;
            if (end - start >= 2)
                out.emplace_back(bucket.begin() + qsizetype(start), bucket.begin() + qsizetype(end));
            start = end;
        }
    }
    return out;
}

// Files of one size, one per inode (hard links of one file are one file: the first path keeps it).
std::vector<Bucket> sizeBuckets(WalkResult& walk, std::vector<Candidate>& candidates)
{
    struct Ref {
        qint64 size;
        quint32 part;
        quint32 index;
    };
    std::vector<Ref> refs;
    for (quint32 p = 0; p < walk.parts.size(); ++p)
        for (quint32 i = 0; i < walk.parts[p].files.size(); ++i)
            refs.push_back({walk.parts[p].files[i].size, p, i});
    std::sort(refs.begin(), refs.end(), [](const Ref& a, const Ref& b) { return a.size < b.size; });

    std::vector<Bucket> buckets;
    for (size_t start = 0; start < refs.size();) {
        size_t end = start + 1;
        while (end < refs.size() && refs[end].size == refs[start].size)
            ++end;
        if (end - start >= 2) {
            const size_t first = candidates.size();
            for (size_t r = start; r < end; ++r) {
                const WalkedPart& part = walk.parts[refs[r].part];
                const WalkedFile& f = part.files[refs[r].index];
                candidates.push_back({{part.folders[f.folder].child(QByteArrayView(f.name)), f.modifiedNs}, f.size, f.device, f.inode, {}});
            }
            std::sort(candidates.begin() + qsizetype(first), candidates.end(), [](const Candidate& a, const Candidate& b) {
                return std::tie(a.device, a.inode, a.file.url) < std::tie(b.device, b.inode, b.file.url);
            });
            Bucket bucket;
            for (size_t i = first; i < candidates.size(); ++i)
                if (i == first || candidates[i].inode != candidates[i - 1].inode || candidates[i].device != candidates[i - 1].device)
                    bucket.push_back(i);
            if (bucket.size() >= 2)
                buckets.push_back(std::move(bucket));
        }
        start = end;
    }
    return buckets;
}

Group makeGroup(const std::vector<Candidate>& candidates, const Bucket& bucket)
{
    Group group;
    group.size = candidates[bucket.front()].size;
    for (size_t i : bucket)
        group.files.push_back(candidates[i].file);
    std::sort(group.files.begin(), group.files.end(), [](const File& a, const File& b) {
        if (a.modifiedNs != b.modifiedNs)
            return a.modifiedNs < b.modifiedNs;
        return a.url.native() < b.url.native();
    });
    return group;
}

void setStage(const Options& options, Progress* progress, Stage stage, qint64 toHash)
{
    if (options.stageStarted)
        options.stageStarted(stage);
    if (!progress)
        return;
    progress->filesHashed.store(0);
    progress->filesToHash.store(toHash);
    progress->stage.store(stage);
}

} // namespace

QString Group::id() const
{
    return QString::number(size) + u':' + (files.empty() ? QString() : files.front().url.text()) + u':'
        + QString::number(files.size());
}

void orderGroups(std::vector<Group>& groups)
{
    std::stable_sort(groups.begin(), groups.end(), [](const Group& a, const Group& b) {
        if (a.wastedBytes() != b.wastedBytes())
            return a.wastedBytes() > b.wastedBytes();
        // Equal waste: the later first path comes first.
        return a.files.front().url.native() > b.files.front().url.native();
    });
}

Scan find(const FilePath& folder, const Options& options, const CancelFlag& cancel, Progress* progress)
{
    const int threads = options.threads > 0 ? options.threads : diskWalkThreads();
    Scan scan;
    WalkResult walk = walkTree(folder, options, cancel, progress);
    scan.files = walk.files;
    scan.isPartial = walk.isPartial;

    std::vector<Candidate> candidates;
    const std::vector<Bucket> bySize = sizeBuckets(walk, candidates);
    walk = {};

    // Heads.
    std::vector<size_t> order = diskOrder(candidates, bySize);
    setStage(options, progress, Stage::comparingHeads, qint64(order.size()));
    hashInParallel(order, threads, cancel, progress, [&](size_t i, FileHasher& hasher) {
        candidates[i].digest = hasher.head(candidates[i].file.url, candidates[i].size, headBytes);
    });
    std::vector<Bucket> wholeNeeded;
    for (Bucket& bucket : splitByDigest(candidates, bySize)) {
        if (candidates[bucket.front()].size <= headBytes)
            scan.groups.push_back(makeGroup(candidates, bucket)); // the head was the whole file
        else
            wholeNeeded.push_back(std::move(bucket));
    }

    // Whole files.
    order = diskOrder(candidates, wholeNeeded);
    setStage(options, progress, Stage::comparingWholeFiles, qint64(order.size()));
    hashInParallel(order, threads, cancel, progress, [&](size_t i, FileHasher& hasher) {
        candidates[i].digest = hasher.whole(candidates[i].file.url, candidates[i].size, cancel, readChunk);
    });
    for (const Bucket& bucket : splitByDigest(candidates, wholeNeeded))
        scan.groups.push_back(makeGroup(candidates, bucket));

    orderGroups(scan.groups);
    setStage(options, progress, Stage::done, 0);
    return scan;
}

bool isNamedLikeCopy(const FilePath& path)
{
    QString name = path.fileName();
    const qsizetype dot = name.lastIndexOf(u'.');
    if (dot > 0)
        name.truncate(dot);
    name = name.toLower();
    if (name.endsWith(QLatin1StringView(" copy")) || name.contains(QLatin1StringView(" copy "))
        || name.startsWith(QLatin1StringView("copy of")))
        return true;
    // A number in parentheses at the end: "report (2)".
    if (!name.endsWith(u')'))
        return false;
    qsizetype i = name.size() - 2;
    while (i >= 0 && name[i].isDigit())
        --i;
    return i >= 0 && i < name.size() - 2 && name[i] == u'(';
}

const File& suggestedKeep(const Group& group)
{
    for (const File& file : group.files)
        if (!isNamedLikeCopy(file.url))
            return file;
    return group.files.front();
}

QString summary(const Scan* scan)
{
    if (!scan)
        return QStringLiteral("Same size first, then the same first bytes, then the whole file: most are never read.");
    QString looked = QStringLiteral("Looked through ") + QLocale().toString(scan->files)
        + (scan->files == 1 ? QStringLiteral(" file") : QStringLiteral(" files"));
    if (scan->isPartial)
        looked += QStringLiteral(" (stopped there)");
    if (scan->groups.empty())
        return looked;
    qint64 wasted = 0;
    for (const Group& group : scan->groups)
        wasted += group.wastedBytes();
    return QString::number(scan->groups.size()) + (scan->groups.size() == 1 ? QStringLiteral(" group, ") : QStringLiteral(" groups, "))
        + byteCountText(wasted)
        + QStringLiteral(" in extra copies · ") + looked;
}

} // namespace orwick::Duplicates
