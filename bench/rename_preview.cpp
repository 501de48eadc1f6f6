// The batch rename panel's preview over 10,000 files: what one keystroke in the Find field costs
// on the interface thread (the rule compiled, then the rows on screen worked out, as
// BatchRenameModel does), and the whole preview that follows in the background (every new name
// checked against the others and the disk). Target: a keystroke under 16 ms.

#include "rename/RenamePreview.h"

#include <QDir>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

using namespace orwick;

namespace {

constexpr int kFiles = 10'000;
constexpr int kVisibleRows = 40; // a tall panel's rows on screen

// 10,000 empty files IMG_00000.jpg … in a temporary folder, made once.
const QList<FilePath>& files()
{
    static QTemporaryDir folder(QDir::tempPath() + QStringLiteral("/orwick-bench-rename-preview-XXXXXX"));
    static const QList<FilePath> items = [] {
        QList<FilePath> made;
        const FilePath root = FilePath::fromNative(folder.path().toUtf8());
        for (int i = 0; i < kFiles; ++i) {
            const FilePath path = root.child(QByteArrayView(QByteArray("IMG_") + QByteArray::number(i).rightJustified(5, '0') + ".jpg"));
            const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
            if (fd >= 0)
                ::close(fd);
            made.append(path);
        }
        return made;
    }();
    return items;
}

// The Find field as it is typed: each keystroke's pattern.
QList<QString> keystrokes()
{
    const QString pattern = QStringLiteral("IMG_(\\d+)");
    QList<QString> typed;
    for (qsizetype i = 1; i <= pattern.size(); ++i)
        typed.append(pattern.left(i));
    return typed;
}

BatchRename rule(const QString& find)
{
    BatchRename rule;
    rule.mode = BatchRename::Mode::replace;
    rule.usesRegex = true;
    rule.find = find;
    rule.replacement = QStringLiteral("photo-$1");
    return rule;
}

// One keystroke: the rule compiled and the visible rows worked out.
void keystroke(benchmark::State& state)
{
    const QList<FilePath>& items = files();
    const QList<QString> typed = keystrokes();
    qsizetype next = 0;
    for (auto _ : state) {
        const BatchRenamer renamer(rule(typed[next++ % typed.size()]));
        for (int row = 0; row < kVisibleRows; ++row)
            benchmark::DoNotOptimize(quickEntry(renamer, items[row], row, kFiles));
    }
    state.counters["target_ms"] = 16;
}

// The whole preview the background works out after a keystroke.
void wholePreview(benchmark::State& state)
{
    const QList<FilePath>& items = files();
    const BatchRenamer renamer(rule(QStringLiteral("IMG_(\\d+)")));
    for (auto _ : state)
        benchmark::DoNotOptimize(previewRenames(renamer, items));
}

} // namespace

BENCHMARK(keystroke)->Unit(benchmark::kMillisecond);
BENCHMARK(wholePreview)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
