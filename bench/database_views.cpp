// The database views over a folder of 10,000 notes (front matter with a status, a due date and
// tags; every tenth note shows an image): reading the notes' properties and building the board,
// the month of the calendar, and the gallery's covers, as the window does after a listing; and
// what a moved card costs before it is drawn again (its new value and the whole board built again,
// more than the widget does: it moves the card between its lanes at once).
// Targets: each view within 1 s from the files, within 200 ms once the properties are read; a
// moved card within 16 ms.

#include "notes/BoardView.h"
#include "notes/CalendarView.h"
#include "notes/GalleryView.h"
#include "notes/NoteFile.h"

#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <random>
#include <unistd.h>

using namespace orwick;

namespace {

constexpr int kNotes = 10'000;

struct Vault {
    QTemporaryDir dir;
    FileItems items;
    Vault()
    {
        const FilePath folder = FilePath::fromText(dir.path());
        const char* statuses[] = {"todo", "doing", "done", "blocked"};
        const char* words[] = {"alpha", "beta", "gamma", "delta", "project", "review"};
        std::mt19937 random(5);
        const int picture = ::open(folder.child(QStringLiteral("cover.png")).c_str(), O_WRONLY | O_CREAT, 0644);
        ::close(picture);
        for (int i = 0; i < kNotes; ++i) {
            QByteArray text = "---\ntitle: Note " + QByteArray::number(i) + "\nstatus: " + statuses[random() % 4]
                            + "\ndue: 2024-" + QByteArray::number(1 + random() % 12).rightJustified(2, '0') + '-'
                            + QByteArray::number(1 + random() % 28).rightJustified(2, '0') + "\ntags: [" + words[random() % 6] + ", "
                            + words[random() % 6] + "]\n---\n\n# Note\n\n";
            if (i % 10 == 0)
                text += "![cover](cover.png)\n";
            text += QByteArray("Some text about the project and its review.\n").repeated(40);
            const FilePath path = folder.child(QStringLiteral("note%1.md").arg(i, 5, 10, QLatin1Char('0')));
            const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
            if (fd >= 0) {
                [[maybe_unused]] const auto written = ::write(fd, text.constData(), size_t(text.size()));
                ::close(fd);
            }
            FileItem item;
            item.url = item.destination = path;
            item.name = path.fileName();
            item.category = FileCategory::text;
            items.append(item);
        }
    }
};

const Vault& vault()
{
    static const Vault shared;
    return shared;
}

DatabaseColumns databaseOf(const FileItems& items)
{
    QList<notefile::Target> targets;
    for (const FileItem& item : items)
        targets.append({item.url, false});
    DatabaseColumns database;
    const std::optional<QList<notefile::Loaded>> read = notefile::readAll(targets);
    for (const notefile::Loaded& loaded : *read)
        if (!loaded.values.isEmpty())
            database.values.insert(loaded.path, loaded.values);
    database.settings.groupBy = QStringLiteral("status");
    database.settings.calendarBy = QStringLiteral("due");
    database.settings.shown = {QStringLiteral("due"), QStringLiteral("tags")};
    database.columns = {{QStringLiteral("due"), PropertyType::date, {}, {}},
                        {QStringLiteral("status"), PropertyType::select, {"todo", "doing", "done", "blocked"}, {}},
                        {QStringLiteral("tags"), PropertyType::list, {}, {}}};
    return database;
}

void readProperties(benchmark::State& state)
{
    const FileItems& items = vault().items;
    for (auto _ : state)
        benchmark::DoNotOptimize(databaseOf(items));
}
BENCHMARK(readProperties)->Unit(benchmark::kMillisecond);

void board(benchmark::State& state)
{
    const FileItems& items = vault().items;
    const DatabaseColumns database = databaseOf(items);
    for (auto _ : state)
        benchmark::DoNotOptimize(BoardView::make(database, items));
}
BENCHMARK(board)->Unit(benchmark::kMillisecond);

void calendarMonth(benchmark::State& state)
{
    const FileItems& items = vault().items;
    const DatabaseColumns database = databaseOf(items);
    for (auto _ : state)
        benchmark::DoNotOptimize(CalendarView::make(database, items, QDate(2024, 5, 1)));
}
BENCHMARK(calendarMonth)->Unit(benchmark::kMillisecond);

void galleryCovers(benchmark::State& state)
{
    const FileItems& items = vault().items;
    for (auto _ : state) {
        int found = 0;
        for (const FileItem& item : items)
            found += coverOf(item).has_value();
        benchmark::DoNotOptimize(found);
    }
}
BENCHMARK(galleryCovers)->Unit(benchmark::kMillisecond);

void moveCard(benchmark::State& state)
{
    const FileItems& items = vault().items;
    DatabaseColumns database = databaseOf(items);
    BoardView board = BoardView::make(database, items);
    const FilePath card = items.at(1).url;
    int from = board.laneOf(database.value(card, QStringLiteral("status"))->text());
    for (auto _ : state) {
        const int to = from % 4 + 1;
        const auto value = board.movedValue(database.value(card, QStringLiteral("status")), from, to);
        database.values[card][QStringLiteral("status")] = **value;
        board = BoardView::make(database, items);
        from = to;
    }
}
BENCHMARK(moveCard)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
