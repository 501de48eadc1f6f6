// The first matches of Find in Files on screen: the panel is opened on a big home-like tree and
// a query is typed into it; timed from the moment ripgrep's first output reaches this process
// (the search thread's first read of the tool's pipe) to the moment the first file's rows are in
// the panel's list model and painted: the clock stops when the event loop comes back after the
// list viewport's first paint that shows rows, so the paint and its flush to the screen count.
// Each opening is a fresh panel, as after Ctrl+Alt+F; the first warms the caches and isn't
// counted. Target: the first file's matches on screen within 100 ms of rg printing them.
//   bench_ui_find_in_files TREE [QUERY] [RUNS]   (needs a display; bench/find-in-files.sh runs it)

#include "UiBenchHome.h"
#include "UiBenchTiming.h"

#include "disktools/ContentSearchRun.h"
#include "state/PaneState.h"
#include "state/ViewPreferences.h"
#include "ui/panels/FindInFilesPanel.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QMainWindow>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <numeric>

using namespace orwick;

namespace {

QElapsedTimer clock_;
std::atomic<qint64> firstOutputAt{-1}; // ns on clock_, set on the search's thread

void noteFirstOutput()
{
    qint64 unset = -1;
    firstOutputAt.compare_exchange_strong(unset, clock_.nsecsElapsed());
}

// Watches the list's viewport: at its first paint that has rows to show, notes the time the
// paint began and, from a call queued behind it, the time the event loop came back after it.
class PaintWatch : public QObject {
public:
    PaintWatch(QListView* list) : m_list(list) { list->viewport()->installEventFilter(this); }
    qint64 paintBegan = -1;
    qint64 painted = -1;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && paintBegan < 0 && m_list->isVisible()
            && m_list->model()->rowCount() > 0) {
            paintBegan = clock_.nsecsElapsed();
            QMetaObject::invokeMethod(this, [this] { painted = clock_.nsecsElapsed(); }, Qt::QueuedConnection);
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QListView* m_list;
};

void type(QWidget* field, const QString& text)
{
    for (const QChar c : text) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(c));
        QCoreApplication::sendEvent(field, &press);
        QKeyEvent release(QEvent::KeyRelease, 0, Qt::NoModifier, QString(c));
        QCoreApplication::sendEvent(field, &release);
    }
}

} // namespace

int main(int argc, char** argv)
{
    QTemporaryDir home;
    pointHomeAt(home.path());
    QApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: bench_ui_find_in_files TREE [QUERY] [RUNS]\n");
        return 2;
    }
    const FilePath tree = FilePath::fromText(QString::fromLocal8Bit(argv[1]));
    const QString query = argc > 2 ? QString::fromLocal8Bit(argv[2]) : QStringLiteral("plugins");
    const int runs = (argc > 3 ? std::max(1, atoi(argv[3])) : 10) + 1; // the first isn't counted
    clock_.start();
    ContentSearch::setFirstOutputProbe(noteFirstOutput);

    ViewPreferences preferences;
    PaneState pane(tree, &preferences);
    QMainWindow window;
    window.setCentralWidget(new QWidget(&window));
    window.resize(1400, 900);
    window.show();
    if (!waitIdly([&] { return !pane.isLoading(); })) {
        std::printf("the tree did not load\n");
        return 1;
    }

    std::vector<double> shown, paintBegan, received, whole;
    qint64 matches = 0;
    size_t files = 0;
    for (int run = 0; run < runs; ++run) {
        auto* panel = new FindInFilesPanel(&pane, &window);
        auto* list = panel->findChild<QListView*>();
        auto* field = panel->findChild<QLineEdit*>();
        PaintWatch watch(list);
        qint64 receivedAt = -1, finishedAt = -1;
        QObject::connect(list->model(), &QAbstractItemModel::rowsInserted, panel, [&] {
            if (receivedAt < 0)
                receivedAt = clock_.nsecsElapsed();
        });
        QObject::connect(list->model(), &QAbstractItemModel::modelReset, panel, [&] {
            if (receivedAt < 0 && list->model()->rowCount() > 0)
                receivedAt = clock_.nsecsElapsed();
        });
        QObject::connect(panel, &FindInFilesPanel::searchFinished, panel, [&] { finishedAt = clock_.nsecsElapsed(); });
        waitFor([] { return false; }, 100); // the panel on screen, as before the first key
        firstOutputAt = -1;
        type(field, query);
        if (!waitIdly([&] { return finishedAt >= 0 && (panel->results().isEmpty() || watch.painted >= 0); })) {
            std::printf("the search did not finish\n");
            return 1;
        }
        if (panel->results().isEmpty()) {
            std::printf("no matches for \"%s\": %s\n", qPrintable(query), qPrintable(panel->emptyText()));
            return 1;
        }
        const qint64 from = firstOutputAt.load();
        if (run > 0) {
            shown.push_back(double(watch.painted - from) / 1e6);
            paintBegan.push_back(double(watch.paintBegan - from) / 1e6);
            received.push_back(double(receivedAt - from) / 1e6);
            whole.push_back(double(finishedAt - from) / 1e6);
        }
        matches = panel->results().matchCount();
        files = panel->results().files().size();
        panel->closeSheet();
        waitFor([] { return false; }, 100);
    }

    const double median_ = median(shown), worst = *std::max_element(shown.begin(), shown.end());
    std::printf("Find in Files \"%s\" on %s (%lld matches in %zu files; %zu runs after one to warm):\n",
                qPrintable(query), qPrintable(tree.text()), static_cast<long long>(matches), files, shown.size());
    std::printf("  first file's matches on screen after rg's first output: median %.1f ms, mean %.1f ms, worst %.1f ms"
                "  (target <= 100 ms)\n", median_, mean(shown), worst);
    std::printf("  where it goes (medians): rows in the model %.1f ms, their paint began %.1f ms; "
                "the search ended %.1f ms after rg's first output\n",
                median(received), median(paintBegan), median(whole));
    return median_ <= 100 ? 0 : 1;
}
