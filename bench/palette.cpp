// One palette keystroke: ranking 250 commands (more than the catalogue holds), 500 frecent
// folders and 5,000 file candidates (one in seven with accents) for each prefix of a typed
// query, and the preparation done once when the palette opens. Queries whose letters recur
// make the scorer weigh many alignments.
// Target: a keystroke well within one frame (16 ms).

#include "commands/PaletteRanking.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <random>

using namespace orwick;

namespace {

const char* kWords[] = {"report", "photo", "invoice", "notes", "draft", "backup", "data", "build", "config",
                        "chapter", "site", "projects", "music", "archive", "design", "server", "client", "budget",
                        "taxes", "travel", "recipes", "thesis", "scripts", "assets", "docs", "release", "images"};
constexpr int kWordCount = int(std::size(kWords));

QString word(std::mt19937& random) { return QString::fromLatin1(kWords[random() % kWordCount]); }

struct Inputs {
    QList<PaletteCommand> commands;
    std::vector<FrecentFolder> folders;
    std::vector<FilePath> files;
};

const Inputs& inputs()
{
    static const Inputs made = [] {
        setenv("HOME", "/home/user", 1);
        std::mt19937 random(11);
        Inputs in;
        for (int i = 0; i < 250; ++i) {
            QString title = word(random);
            title[0] = title[0].toUpper();
            title += QLatin1Char(' ') + word(random) + (i % 3 == 0 ? QStringLiteral("…") : QString());
            in.commands.append({QStringLiteral("command%1").arg(i), title,
                                i % 2 ? word(random) + QLatin1Char(' ') + word(random) + QLatin1Char(' ') + word(random)
                                      : QString(),
                                QStringLiteral("star"), i % 4 ? QString() : QStringLiteral("Ctrl+Shift+N"), {}, i % 5 != 0});
        }
        for (int i = 0; i < 500; ++i) {
            QString path = QStringLiteral("/home/user");
            const int depth = 1 + int(random() % 5);
            for (int d = 0; d < depth; ++d)
                path += QLatin1Char('/') + word(random) + (random() % 3 ? QString() : QString::number(random() % 100));
            in.folders.push_back({FilePath::fromText(path + QString::number(i)), 500.0 / (i + 1)});
        }
        const FilePath shown = FilePath::fromNative("/home/user/projects/site/content");
        for (int i = 0; i < 5000; ++i)
            in.files.push_back(shown.child(QStringLiteral("%1_%2 %3.md")
                                               .arg(i % 7 ? word(random) : QStringLiteral("R\u00e9sum\u00e9 cr\u00e8me"))
                                               .arg(i)
                                               .arg(word(random))));
        return in;
    }();
    return made;
}

const PaletteCandidates& prepared()
{
    static const PaletteCandidates candidates = [] {
        PaletteCandidates c;
        c.setCommands(inputs().commands);
        c.setFolders(inputs().folders);
        c.setFiles(inputs().files);
        return c;
    }();
    return candidates;
}

// Each keystroke of "projects site" being typed: one letter matches nearly everything.
void keystroke(benchmark::State& state)
{
    const QString typed = QStringLiteral("projects site").left(state.range(0));
    const PaletteCandidates& candidates = prepared();
    qsizetype rows = 0;
    for (auto _ : state) {
        const auto sections = PaletteRanking::rank(FuzzyQuery(typed), candidates);
        rows = 0;
        for (const PaletteSection& section : sections)
            rows += section.items.size();
        benchmark::DoNotOptimize(sections);
    }
    state.counters["rows"] = double(rows);
}
BENCHMARK(keystroke)->Arg(1)->Arg(2)->Arg(4)->Arg(8)->Arg(13)->Unit(benchmark::kMicrosecond);

// Typing a query that folds accents and whose letters recur across every candidate.
void keystrokeRecurring(benchmark::State& state)
{
    const QString typed = QStringLiteral("resume creme reports").left(state.range(0));
    const PaletteCandidates& candidates = prepared();
    for (auto _ : state)
        benchmark::DoNotOptimize(PaletteRanking::rank(FuzzyQuery(typed), candidates));
}
BENCHMARK(keystrokeRecurring)->Arg(2)->Arg(6)->Arg(12)->Arg(20)->Unit(benchmark::kMicrosecond);

// Opening the palette: preparing every candidate once.
void open(benchmark::State& state)
{
    const Inputs& in = inputs();
    for (auto _ : state) {
        PaletteCandidates candidates;
        candidates.setCommands(in.commands);
        candidates.setFolders(in.folders);
        candidates.setFiles(in.files);
        benchmark::DoNotOptimize(candidates);
    }
}
BENCHMARK(open)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
