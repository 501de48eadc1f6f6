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
#include <QFileInfo>
#include <QImage>
#include <QKeyEvent>
#include <QMap>
#include <QMetaEnum>
#include <QPaintEvent>
#include <QPainter>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>
#include <algorithm>
#include <archive.h>
#include <archive_entry.h>
#include <cstdio>
#include <ctime>
#include <sys/resource.h>

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

// The GUI thread's waits (blocked: a lock, a reply of the X server) and preemptions (another
// thread or program had the core) so far.
std::pair<long, long> threadSwitches()
{
    rusage usage{};
    getrusage(RUSAGE_THREAD, &usage);
    return {usage.ru_nvcsw, usage.ru_nivcsw};
}

qint64 threadCpuNs()
{
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return qint64(t.tv_sec) * 1'000'000'000 + t.tv_nsec;
}

// Runs the event loop until `done` holds (true) or `timeoutMs` has passed (false), looking after
// each event. The loop sleeps between events as the window's own does (the probe's 4 ms timer
// wakes it): spinning through processEvents() would keep one of the machine's two cores busy
// and slow the loader's threads and the X server, which the user's window never does.
bool waitFor(const std::function<bool()>& done, int timeoutMs = 10000)
{
    QElapsedTimer timer;
    timer.start();
    QTimer wake; // wakes the loop to look at the time when nothing else happens
    wake.start(5);
    while (!done()) {
        if (timer.elapsed() > timeoutMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    return true;
}

// With ORWICK_SLOW_EVENTS set, the GUI thread's events of each step that took over half a millisecond
// (outermost ones, with their receiver) are kept, and those of the steps with the longest
// frames printed with the widgets each step painted: where a long frame went. ORWICK_SLOW_EVENTS=csv prints those of the first
// steps onto .csv files as well.
class TimedApplication : public QApplication {
public:
    using QApplication::QApplication;
    bool notify(QObject* receiver, QEvent* event) override
    {
        static const bool report = qEnvironmentVariableIsSet("ORWICK_SLOW_EVENTS");
        if (!report || QThread::currentThread() != thread()) // other threads' events (loads, timers) run beside the frames
            return QApplication::notify(receiver, event);
        QElapsedTimer timer;
        timer.start();
        ++m_depth;
        const QEvent::Type type = event->type();
        if (type == QEvent::Paint && receiver->isWidgetType()) { // what each frame paints, by widget
            const QRect area = static_cast<QPaintEvent*>(event)->rect();
            stepPaints += QStringLiteral("%1 %2x%3").arg(QString::fromLatin1(receiver->metaObject()->className())).arg(area.width()).arg(area.height());
        }
        const bool result = QApplication::notify(receiver, event);
        --m_depth;
        if (m_depth == 0 && timer.nsecsElapsed() > 500'000)
            stepEvents += QStringLiteral("%1 on %2 %3 ms")
                              .arg(QString::fromLatin1(QMetaEnum::fromType<QEvent::Type>().valueToKey(type)),
                                   QString::fromLatin1(receiver->metaObject()->className()))
                              .arg(timer.nsecsElapsed() / 1e6, 0, 'f', 1);
        return result;
    }

    QStringList stepEvents;
    QStringList stepPaints;

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
    std::pair<long, long> lastSwitches = threadSwitches(), longestSwitches{0, 0};
    int over16 = 0;       // stretches over 16 ms
    quint64 ticks = 0;    // runs of the probe
    QTimer probe;
    probe.setInterval(4);
    QObject::connect(&probe, &QTimer::timeout, [&] {
        const qint64 now = clock.nsecsElapsed();
        const qint64 cpu = threadCpuNs();
        const std::pair<long, long> switches = threadSwitches();
        if (now - last > longest) {
            longestCpu = cpu - lastCpu;
            longestSwitches = {switches.first - lastSwitches.first, switches.second - lastSwitches.second};
        }
        lastCpu = cpu;
        lastSwitches = switches;
        longest = std::max(longest, now - last);
        stepLongest = std::max(stepLongest, now - last);
        over16 += now - last > 16'000'000;
        ++ticks;
        last = now;
    });
    std::vector<double> latencies;
    std::vector<std::pair<double, QString>> slowest; // the longest frame of each step, with its item
    std::vector<std::pair<double, QString>> latest;  // each step's latency, with its item
    QHash<QString, QString> eventsOf;                 // ORWICK_SLOW_EVENTS: each item's long events
    QMap<QString, std::vector<double>> cpuOf;         // the GUI thread's CPU time of each step, by kind
    int late = 0, missing = 0;
    last = clock.nsecsElapsed();
    probe.start();
    const int steps = std::min<int>(count, int(pane->items().size()) - 1);
    for (int i = 0; i < steps; ++i) {
        QElapsedTimer shown;
        shown.start();
        const qint64 stepCpu = threadCpuNs();
        stepLongest = 0;
        app.stepEvents.clear();
        app.stepPaints.clear();
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
        // The step ends at the probe's next run, after the shown preview was painted.
        const quint64 tick = ticks;
        waitFor([&] { return ticks > tick; });
        cpuOf[QFileInfo(target.fileName()).suffix().isEmpty() ? QStringLiteral("folder") : QFileInfo(target.fileName()).suffix()]
            .push_back(double(threadCpuNs() - stepCpu) / 1e6);
        latencies.push_back(ms);
        slowest.emplace_back(double(stepLongest) / 1e6, target.fileName());
        if (!app.stepEvents.isEmpty())
            eventsOf[target.fileName()] = app.stepEvents.join(QStringLiteral("; ")) + QStringLiteral("\n      painted: ")
                                          + app.stepPaints.join(QStringLiteral(", "));
        latest.emplace_back(ms, target.fileName());
        late += ms > 50;
    }
    probe.stop();
    longest = std::max(longest, clock.nsecsElapsed() - last);
    std::sort(latencies.begin(), latencies.end());
    auto at = [&](double q) { return latencies.empty() ? 0.0 : latencies[std::min(latencies.size() - 1, size_t(q * latencies.size()))]; };
    std::printf("%d cursor moves over %d mixed files with the preview %s\n", steps, count, withPreview ? "open" : "closed");
    std::printf("  longest GUI-thread frame: %.1f ms, of which the GUI thread's own CPU time %.1f ms; it waited %ld times and was "
                "preempted %ld times (target <= 16 ms)\n",
                double(longest) / 1e6, double(longestCpu) / 1e6, longestSwitches.first, longestSwitches.second);
    std::printf("  preview shown after: median %.1f ms, 95th %.1f ms, 99th %.1f ms, max %.1f ms (target <= 50 ms)\n", at(0.5), at(0.95),
                at(0.99), latencies.empty() ? 0.0 : latencies.back());
    std::printf("  later than 50 ms: %d; never shown: %d; GUI-thread stretches over 16 ms: %d\n", late, missing, over16);
    std::printf("  GUI thread's CPU per step (median / max ms):");
    for (auto it = cpuOf.begin(); it != cpuOf.end(); ++it) {
        std::sort(it->begin(), it->end());
        std::printf(" %s %.1f / %.1f;", qPrintable(it.key()), (*it)[it->size() / 2], it->back());
    }
    std::printf("\n");
    std::sort(slowest.begin(), slowest.end(), [](const auto& a, const auto& b) { return a.first > b.first; });
    std::printf("  longest frames by item:");
    for (size_t i = 0; i < std::min<size_t>(6, slowest.size()); ++i)
        std::printf(" %s %.1f ms;", qPrintable(slowest[i].second), slowest[i].first);
    std::printf("\n");
    for (size_t i = 0; i < std::min<size_t>(6, slowest.size()); ++i)
        if (eventsOf.contains(slowest[i].second))
            std::printf("    %s: %s\n", qPrintable(slowest[i].second), qPrintable(eventsOf[slowest[i].second]));
    std::sort(latest.begin(), latest.end(), [](const auto& a, const auto& b) { return a.first > b.first; });
    std::printf("  slowest previews:");
    for (size_t i = 0; i < std::min<size_t>(6, latest.size()); ++i)
        std::printf(" %s %.1f ms;", qPrintable(latest[i].second), latest[i].first);
    std::printf("\n");
    if (const QString kind = qEnvironmentVariable("ORWICK_SLOW_EVENTS"); kind.size() > 1) {
        int shownSteps = 0;
        for (auto it = eventsOf.cbegin(); it != eventsOf.cend() && shownSteps < 8; ++it)
            if (it.key().endsWith(QLatin1Char('.') + kind) && ++shownSteps)
                std::printf("    %s: %s\n", qPrintable(it.key()), qPrintable(it.value()));
    }
    if (!withPreview)
        return 0;
    return longest <= 16'000'000 && late == 0 && missing == 0 ? 0 : 1;
}
