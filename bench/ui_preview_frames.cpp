// GUI-thread frames and preview latency while the cursor moves down 1,000 mixed files with the
// preview column open: source, notes with pictures and tables, PNG and large JPEG pictures, CSV
// tables, a 2 MB log, zip archives, binaries and folders. Each step sends Down to the list and
// waits until the preview shows the new item; a probe timer asking to run every 4 ms measures
// the longest time the GUI thread was busy. Targets: no frame over 16 ms, every preview shown
// within 50 ms of its key.
//   bench_ui_preview_frames [FILES]   (needs a display; bench/preview-frames.sh runs it under Xvfb)

#include "UiBenchHome.h"
#include "app/Settings.h"
#include "state/ViewPreferences.h"
#include "state/WindowState.h"
#include "ui/pane/PaneWidget.h"
#include "ui/preview/PreviewPanel.h"
#include "ui/preview/PreviewView.h"
#include "ui/window/MainWindow.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QKeyEvent>
#include <QPainter>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <archive.h>
#include <archive_entry.h>
#include <cstdio>
#include <ctime>

using namespace orwick;

namespace {

void write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes);
}

void writeZip(const QString& path, int entries)
{
    struct archive* a = archive_write_new();
    archive_write_set_format_zip(a);
    archive_write_open_filename(a, QFile::encodeName(path).constData());
    for (int i = 0; i < entries; ++i) {
        struct archive_entry* e = archive_entry_new();
        const QByteArray name = "folder/file-" + QByteArray::number(i) + ".txt";
        const QByteArray data(200 + i, 'x');
        archive_entry_set_pathname(e, name.constData());
        archive_entry_set_filetype(e, AE_IFREG);
        archive_entry_set_perm(e, 0644);
        archive_entry_set_size(e, data.size());
        archive_write_header(a, e);
        archive_write_data(a, data.constData(), size_t(data.size()));
        archive_entry_free(e);
    }
    archive_write_close(a);
    archive_write_free(a);
}

// The mixed folder: ten kinds in turn, each file a little different.
void makeFiles(const QString& folder, int count)
{
    QImage photo(3000, 2000, QImage::Format_RGB32);
    QPainter(&photo).fillRect(photo.rect(), QLinearGradient(0, 0, 3000, 2000));
    for (int y = 0; y < photo.height(); y += 7)
        for (int x = 0; x < photo.width(); x += 5)
            photo.setPixel(x, y, qRgb(x % 256, y % 256, (x * y) % 256));
    photo.save(folder + "/shared-photo.jpg", "jpeg", 85);
    const QByteArray jpeg = [&] { QFile f(folder + "/shared-photo.jpg"); f.open(QIODevice::ReadOnly); return f.readAll(); }();
    QImage picture(800, 600, QImage::Format_RGB32);
    picture.fill(Qt::darkCyan);
    picture.save(folder + "/shared-picture.png");
    QByteArray source;
    for (int i = 0; i < 150; ++i)
        source += "def function_" + QByteArray::number(i) + "(value):\n    # adds one\n    return value + " + QByteArray::number(i) + "\n\n";
    QByteArray log;
    while (log.size() < 2 * 1024 * 1024)
        log += "2026-11-23 12:00:00 INFO a line of a long log file that goes on for a while\n";
    QByteArray csv = "id,name,amount,city\n";
    for (int i = 0; i < 300; ++i)
        csv += QByteArray::number(i) + ",Name " + QByteArray::number(i) + "," + QByteArray::number(i * 3) + ",\"Lisbon, PT\"\n";
    const QByteArray note = "---\nstatus: open\n---\n# A note\n\nSome **bold** text and a [link](https://example.org).\n\n"
                            "- [ ] first task\n- [x] second task\n\n| a | b |\n|---|---|\n| 1 | 2 |\n\n"
                            "```python\nprint('hello')\n```\n\n![picture](shared-picture.png)\n";
    QByteArray binary(64 * 1024, '\0');
    for (int i = 0; i < binary.size(); ++i)
        binary[i] = char((i * 31) & 0xFF);
    for (int i = 0; i < count; ++i) {
        const QString stem = folder + QStringLiteral("/%1").arg(i, 5, 10, QLatin1Char('0'));
        switch (i % 10) {
        case 0: write(stem + ".py", source + "# " + QByteArray::number(i) + "\n"); break;
        case 1: write(stem + ".md", note); break;
        case 2: QFile::copy(folder + "/shared-picture.png", stem + ".png"); break;
        case 3: write(stem + ".jpg", jpeg); break;
        case 4: write(stem + ".csv", csv); break;
        case 5: write(stem + ".log", log); break;
        case 6: writeZip(stem + ".zip", 50); break;
        case 7: write(stem + ".bin", binary); break;
        case 8: QDir().mkpath(stem + " folder/inner"); write(stem + " folder/a.txt", "a"); break;
        case 9: write(stem + ".txt", "short text " + QByteArray::number(i) + "\n"); break;
        }
    }
}

qint64 threadCpuNs()
{
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return qint64(t.tv_sec) * 1'000'000'000 + t.tv_nsec;
}

bool waitFor(const std::function<bool()>& done, int timeoutMs = 10000)
{
    QElapsedTimer timer;
    timer.start();
    while (!done()) {
        if (timer.elapsed() > timeoutMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 2);
    }
    return true;
}

// With ORWICK_SLOW_EVENTS set, every event that keeps the GUI thread for more than 4 ms is
// printed with its receiver and nesting depth: where a long frame went.
class TimedApplication : public QApplication {
public:
    using QApplication::QApplication;
    bool notify(QObject* receiver, QEvent* event) override
    {
        static const bool report = qEnvironmentVariableIsSet("ORWICK_SLOW_EVENTS");
        if (!report)
            return QApplication::notify(receiver, event);
        QElapsedTimer timer;
        timer.start();
        ++m_depth;
        const int type = event->type();
        const bool result = QApplication::notify(receiver, event);
        --m_depth;
        if (timer.nsecsElapsed() > 4'000'000)
            std::printf("    slow event %d on %s (%s) at depth %d: %.1f ms\n", type, receiver->metaObject()->className(),
                        qPrintable(receiver->objectName()), m_depth, timer.nsecsElapsed() / 1e6);
        return result;
    }

private:
    int m_depth = 0;
};

} // namespace

int main(int argc, char** argv)
{
    QTemporaryDir home;
    pointHomeAt(home.path());
    TimedApplication app(argc, argv);
    const int count = argc > 1 ? atoi(argv[1]) : 1000;
    const QString folder = home.path() + "/mixed";
    QDir().mkpath(folder);
    makeFiles(folder, count);

    ViewPreferences preferences;
    preferences.setGridForMedia(false);
    WindowState state(FilePath::fromText(folder), &preferences);
    MainWindow window(&state);
    window.resize(1400, 900);
    window.show();
    window.activateWindow();
    PaneState* pane = state.activePane();
    if (!waitFor([&] { return !pane->isLoading() && pane->items().size() >= count; }, 30000)) {
        std::printf("the folder did not load\n");
        return 1;
    }
    // ORWICK_NO_PREVIEW: the same moves with the preview closed, for the list's own share.
    const bool withPreview = !qEnvironmentVariableIsSet("ORWICK_NO_PREVIEW");
    state.setShowPreview(withPreview);
    PreviewView* view = window.previewPanel()->view();
    QWidget* list = window.activePaneWidget()->focusTarget();
    list->setFocus();
    waitFor([] { return false; }, 500);

    // The probe: the longest gap between two runs of a 4 ms timer is the longest frame.
    QElapsedTimer clock;
    clock.start();
    qint64 last = 0, longest = 0, stepLongest = 0;
    qint64 lastCpu = threadCpuNs(), longestCpu = 0; // the GUI thread's own CPU time in its longest stretch
    QTimer probe;
    probe.setInterval(4);
    QObject::connect(&probe, &QTimer::timeout, [&] {
        const qint64 now = clock.nsecsElapsed();
        const qint64 cpu = threadCpuNs();
        if (now - last > longest)
            longestCpu = cpu - lastCpu;
        lastCpu = cpu;
        longest = std::max(longest, now - last);
        stepLongest = std::max(stepLongest, now - last);
        last = now;
    });
    std::vector<double> latencies;
    std::vector<std::pair<double, QString>> slowest; // the longest frame of each step, with its item
    std::vector<std::pair<double, QString>> latest;  // each step's latency, with its item
    int late = 0, missing = 0;
    last = clock.nsecsElapsed();
    probe.start();
    const int steps = std::min<int>(count, int(pane->items().size()) - 1);
    for (int i = 0; i < steps; ++i) {
        QElapsedTimer shown;
        shown.start();
        stepLongest = 0;
        QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
        QApplication::sendEvent(list, &down);
        QKeyEvent up(QEvent::KeyRelease, Qt::Key_Down, Qt::NoModifier);
        QApplication::sendEvent(list, &up);
        const FilePath target = pane->cursor().value_or(FilePath());
        if (!withPreview) {
            waitFor([&] { return shown.elapsed() >= 12; });
            continue;
        }
        if (!waitFor([&] { return view->shownPath() == target; }, 5000)) {
            ++missing;
            continue;
        }
        const double ms = double(shown.nsecsElapsed()) / 1e6;
        latencies.push_back(ms);
        slowest.emplace_back(double(stepLongest) / 1e6, target.fileName());
        latest.emplace_back(ms, target.fileName());
        late += ms > 50;
    }
    probe.stop();
    longest = std::max(longest, clock.nsecsElapsed() - last);
    std::sort(latencies.begin(), latencies.end());
    auto at = [&](double q) { return latencies.empty() ? 0.0 : latencies[std::min(latencies.size() - 1, size_t(q * latencies.size()))]; };
    std::printf("%d cursor moves over %d mixed files with the preview %s\n", steps, count, withPreview ? "open" : "closed");
    std::printf("  longest GUI-thread frame: %.1f ms, of which the GUI thread's own CPU time %.1f ms (target <= 16 ms)\n",
                double(longest) / 1e6, double(longestCpu) / 1e6);
    std::printf("  preview shown after: median %.1f ms, 95th %.1f ms, 99th %.1f ms, max %.1f ms (target <= 50 ms)\n", at(0.5), at(0.95),
                at(0.99), latencies.empty() ? 0.0 : latencies.back());
    std::printf("  later than 50 ms: %d; never shown: %d\n", late, missing);
    std::sort(slowest.begin(), slowest.end(), [](const auto& a, const auto& b) { return a.first > b.first; });
    std::printf("  longest frames by item:");
    for (size_t i = 0; i < std::min<size_t>(6, slowest.size()); ++i)
        std::printf(" %s %.1f ms;", qPrintable(slowest[i].second), slowest[i].first);
    std::printf("\n");
    std::sort(latest.begin(), latest.end(), [](const auto& a, const auto& b) { return a.first > b.first; });
    std::printf("  slowest previews:");
    for (size_t i = 0; i < std::min<size_t>(6, latest.size()); ++i)
        std::printf(" %s %.1f ms;", qPrintable(latest[i].second), latest[i].first);
    std::printf("\n");
    if (!withPreview)
        return 0;
    return longest <= 16'000'000 && late == 0 && missing == 0 ? 0 : 1;
}
