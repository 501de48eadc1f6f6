// Arranging a 100,000-item folder: the first arrangement after a load (prepares the names),
// re-sorting and re-filtering the same load (reuses the prepared names), grouping by date.
// Targets: a fresh arrangement by name under 150 ms; a filter keystroke under 30 ms.

#include "files/Arrangement.h"

#include <QDateTime>
#include <benchmark/benchmark.h>
#include <random>

using namespace orwick;

namespace {

constexpr int kItems = 100'000;

// Names like a large real folder: words, digit runs, extensions, some folders, some accents.
const FileItems& folderItems()
{
    static const FileItems items = [] {
        const char* words[] = {"report", "IMG", "photo", "Invoice", "notes", "draft", "backup", "résumé",
                               "data", "Screenshot", "track", "chapter", "build", "README", "config", "test"};
        const char* extensions[] = {".jpg", ".png", ".pdf", ".md", ".txt", ".cpp", ".json", ".mp4", ""};
        const char* kinds[] = {"JPEG image", "PNG image", "PDF document", "Markdown document", "Plain text",
                               "C++ source code", "JSON document", "MPEG-4 video", "Document"};
        std::mt19937 random(42);
        const FilePath folder = FilePath::fromNative("/home/user/big");
        const qint64 now = QDateTime::currentMSecsSinceEpoch();
        FileItems result;
        result.reserve(kItems);
        for (int i = 0; i < kItems; ++i) {
            FileItem item;
            const int e = int(random() % 9);
            item.name = QStringLiteral("%1_%2 %3%4")
                            .arg(QString::fromUtf8(words[random() % 16]))
                            .arg(random() % 5000)
                            .arg(QString::fromUtf8(words[random() % 16]))
                            .arg(QString::fromLatin1(extensions[e]));
            item.url = folder.child(item.name + QString::number(i));
            item.destination = item.url;
            item.isFolder = (i % 20) == 0;
            if (!item.isFolder)
                item.size = qint64(random() % 10'000'000);
            item.modified = now - qint64(random() % (3LL * 365 * 24 * 3600 * 1000));
            item.kind = item.isFolder ? QStringLiteral("Folder") : QString::fromLatin1(kinds[e]);
            result.append(item);
        }
        return result;
    }();
    return items;
}

std::shared_ptr<const PreparedItems> prepared()
{
    static const auto p = prepareItems(folderItems());
    return p;
}

void freshByName(benchmark::State& state)
{
    ArrangeInput input;
    input.items = folderItems();
    for (auto _ : state)
        benchmark::DoNotOptimize(arrange(input));
}
BENCHMARK(freshByName)->Unit(benchmark::kMillisecond);

void resort(benchmark::State& state)
{
    ArrangeInput input;
    input.items = folderItems();
    input.prepared = prepared();
    input.sortKey = SortKey(state.range(0));
    input.ascending = false;
    for (auto _ : state)
        benchmark::DoNotOptimize(arrange(input));
}
BENCHMARK(resort)->Arg(int(SortKey::name))->Arg(int(SortKey::modified))->Arg(int(SortKey::size))->Arg(int(SortKey::kind))
    ->Unit(benchmark::kMillisecond);

// Each keystroke of a filter being typed, from one letter (matches most names) to many.
void refilter(benchmark::State& state)
{
    const QString typed = QStringLiteral("report pdf");
    ArrangeInput input;
    input.items = folderItems();
    input.prepared = prepared();
    input.filter = typed.left(state.range(0));
    qsizetype shown = 0;
    for (auto _ : state) {
        auto result = arrange(input);
        shown = result->items.size();
        benchmark::DoNotOptimize(result);
    }
    state.counters["shown"] = double(shown);
}
BENCHMARK(refilter)->DenseRange(1, 10, 3)->Unit(benchmark::kMillisecond);

void groupByDate(benchmark::State& state)
{
    ArrangeInput input;
    input.items = folderItems();
    input.prepared = prepared();
    input.groupByDate = true;
    input.now = QDateTime::currentMSecsSinceEpoch();
    for (auto _ : state)
        benchmark::DoNotOptimize(arrange(input));
}
BENCHMARK(groupByDate)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
