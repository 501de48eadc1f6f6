// Opening a folder of 100,000 files from inside the window: a pane on a small folder goes into
// the big one (as Return on it would), and we time what the user sees: (1) the first rows painted
// in the view and taking keys, and (2) the full arrangement painted in the view with the cursor
// the user put on a first-batch row still on that item. Both are read at the end of the view's
// paint, so the model reset, the layout, the scroll to the cursor and the drawing are counted.
// Against `orwick-cli list` on the same folder in the same run, a CLI run after each window round
// (the warm-up round of each side is left out). Targets: first rows within 300 ms; the full arrangement within 1.2 × the CLI list.
//   bench_ui_open_folder ORWICK_CLI [ITEMS] [ROUNDS]   (needs a display; bench/ui-open.sh runs it under Xvfb)

#include "UiBenchHome.h"
#include "UiBenchTiming.h"

#include "state/PaneState.h"
#include "state/ViewPreferences.h"
#include "ui/pane/PaneWidget.h"
#include "ui/views/FileListModel.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>
#include <fcntl.h>
#include <numeric>
#include <unistd.h>

using namespace orwick;

namespace {

// Calls `painted` right after each paint of a view's viewport (the filter paints it itself, then
// swallows the event), so a moment read there includes the drawing.
class AfterPaint : public QObject {
public:
    AfterPaint(QWidget* viewport, std::function<void()> painted) : m_viewport(viewport), m_painted(std::move(painted))
    {
        viewport->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched != m_viewport || event->type() != QEvent::Paint || m_inside)
            return false;
        m_inside = true;
        QCoreApplication::sendEvent(m_viewport, event);
        m_inside = false;
        m_painted();
        return true;
    }

private:
    QWidget* m_viewport;
    std::function<void()> m_painted;
    bool m_inside = false;
};

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: bench_ui_open_folder ORWICK_CLI [ITEMS] [ROUNDS]\n");
        return 2;
    }
    const QString cli = QString::fromLocal8Bit(argv[1]);
    const int count = argc > 2 ? atoi(argv[2]) : 100'000;
    const int rounds = argc > 3 ? std::max(1, atoi(argv[3])) : 5;
    QTemporaryDir home;
    pointHomeAt(home.path());
    const QString big = home.path() + "/big";
    const QString small = home.path() + "/small";
    QDir().mkpath(big);
    QDir().mkpath(small);
    QFile(small + "/readme.txt").open(QIODevice::WriteOnly);
    // The names bench/list.sh uses: 60,000 text files, 20,000 pictures, 20,000 sources.
    for (int i = 0; i < count; ++i) {
        const QString name = i < count * 6 / 10 ? QStringLiteral("file%1.txt").arg(i, 6, 10, QLatin1Char('0'))
                           : i < count * 8 / 10 ? QStringLiteral("photo%1.jpg").arg(i, 5, 10, QLatin1Char('0'))
                                                : QStringLiteral("src%1.rs").arg(i, 5, 10, QLatin1Char('0'));
        const int fd = ::open((big + QLatin1Char('/') + name).toUtf8().constData(), O_CREAT | O_WRONLY, 0644);
        if (fd >= 0)
            ::close(fd);
    }
    std::printf("%d files in %s\n", count, qPrintable(big));
    const FilePath bigPath = FilePath::fromText(big);

    ViewPreferences preferences;
    preferences.setGridForMedia(false);
    PaneState pane(FilePath::fromText(small), &preferences);
    PaneWidget widget(&pane);
    widget.resize(1400, 900);
    widget.show();
    waitIdly([&] { return !pane.isLoading(); });
    auto* view = qobject_cast<QAbstractItemView*>(widget.itemsView());
    if (!view) {
        std::printf("the pane shows no item view\n");
        return 1;
    }

    // One round: the moments of the first rows and of the full arrangement on screen.
    QElapsedTimer clock;
    bool timing = false;
    double firstAt = -1, fullAt = -1;
    std::optional<FilePath> chosen; // the first-batch row the user moved the cursor to
    bool cursorKept = true;
    AfterPaint watch(view->viewport(), [&] {
        if (!timing || pane.url() != bigPath)
            return;
        const int rows = widget.model()->rowCount();
        const double now = double(clock.nsecsElapsed()) / 1e6;
        if (firstAt < 0 && rows > 0) {
            firstAt = now;
            // Seeing the first rows, the user steps down one; the full arrangement must keep it.
            if (pane.showsFirstBatch()) {
                pane.moveCursor(1, false);
                chosen = pane.cursor();
            }
        }
        if (fullAt < 0 && rows == count && !pane.isLoading()) {
            fullAt = now;
            const int cursorRow = chosen ? pane.row(*chosen) : -1;
            cursorKept = chosen && pane.cursor() == chosen && cursorRow >= 0 && view->currentIndex().row() == cursorRow;
        }
    });

    // The CLI's listing of the same folder, one run beside each window round, so that both see
    // the same load on the machine.
    auto listWithCli = [&] {
        QProcess process;
        process.setStandardOutputFile(QProcess::nullDevice());
        QElapsedTimer timer;
        timer.start();
        process.start(cli, {QStringLiteral("list"), big});
        process.waitForFinished(60000);
        return double(timer.nsecsElapsed()) / 1e6;
    };

    std::vector<double> firstRows, full, loads, cliTimes;
    for (int run = 0; run <= rounds; ++run) {
        firstAt = fullAt = -1;
        chosen.reset();
        timing = true;
        clock.start();
        pane.navigate(bigPath);
        if (!waitIdly([&] { return fullAt >= 0; })) {
            std::printf("the folder did not load\n");
            return 1;
        }
        timing = false;
        if (!chosen) {
            std::printf("the first rows came with the whole folder: no first batch was shown\n");
            return 1;
        }
        if (!cursorKept) {
            std::printf("the full arrangement lost the cursor\n");
            return 1;
        }
        if (run > 0) { // the first run warms the caches, as the CLI's warm-up does
            firstRows.push_back(firstAt);
            full.push_back(fullAt);
            loads.push_back(double(pane.lastLoadTime()));
        }
        pane.navigate(FilePath::fromText(small));
        waitIdly([&] { return !pane.isLoading(); });
        waitIdly([] { return false; }, 300); // the big list is freed in the background
        const double listed = listWithCli();
        if (run > 0)
            cliTimes.push_back(listed);
    }

    auto rounded = [](const std::vector<double>& values) {
        QString text;
        for (double v : values)
            text += QString::number(v, 'f', 0) + QLatin1Char(' ');
        return text.trimmed();
    };
    std::printf("opening the folder from the window (%d rounds after a warm-up; mean / median):\n", rounds);
    std::printf("  first rows on screen   %7.1f / %7.1f ms   (target <= 300 ms)   [%s]\n", mean(firstRows), median(firstRows),
                qPrintable(rounded(firstRows)));
    std::printf("  full arrangement       %7.1f / %7.1f ms   (reading the folder %.1f / %.1f ms)   [%s]\n", mean(full), median(full),
                mean(loads), median(loads), qPrintable(rounded(full)));
    std::printf("  orwick-cli list        %7.1f / %7.1f ms   [%s]\n", mean(cliTimes), median(cliTimes), qPrintable(rounded(cliTimes)));
    const double meanRatio = mean(full) / mean(cliTimes), medianRatio = median(full) / median(cliTimes);
    std::printf("  full / cli list = %.2f (mean), %.2f (median)   (target <= 1.20)\n", meanRatio, medianRatio);
    return median(firstRows) <= 300 && medianRatio <= 1.2 ? 0 : 1;
}
