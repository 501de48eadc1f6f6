// The terminal panel's frames in the real window, with a real shell on a real pseudo-terminal:
// - flood: `cat` of a large text file in the panel. A probe timer asking to run every 1 ms
//   measures the GUI thread's turns (the longest gap between two of its runs is the longest
//   time no frame could be drawn); each paint of the TerminalView's viewport is timed, and so
//   is each whole-window repaint (the window's UpdateRequest: paint and flush to the screen).
//   Target: no frame over 50 ms while it runs.
// - key to echo: a key posted to the view while the shell waits at its prompt, timed until the
//   shell's echo is in the screen's cell AND a paint of the view has started after that and
//   ended. Target: within one frame (16.7 ms).
// - key during the flood: a key posted to the view while cat floods, timed until the view has
//   received it and painted a frame after it (the echo itself is lost in the flood).
// Beside them it prints the longest single event of each type in the flood (where a long turn
// went: 50 is a socket notifier, the terminal reading output; 77 a window repaint).
//   bench_ui_terminal_frames [MEGABYTES] [KEYS]   (needs a display; bench/terminal-frames.sh
//   runs it under Xvfb). The shell is $SHELL.

#include "UiBenchHome.h"
#include "state/WindowState.h"
#include "state/ViewPreferences.h"
#include "terminal/TabTerminals.h"
#include "terminal/TerminalActions.h"
#include "terminal/TerminalSession.h"
#include "ui/terminal/TerminalView.h"
#include "ui/window/MainWindow.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QKeyEvent>
#include <QPointer>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>
#include <vector>

using namespace orwick;

namespace {

QElapsedTimer g_clock;
qint64 nowNs() { return g_clock.nsecsElapsed(); }

// Times the paints of one widget and the window's repaints as they pass through the
// application; `painted` is called after each paint of the widget with its start and end.
class TimedApplication : public QApplication {
public:
    using QApplication::QApplication;
    QPointer<QWidget> paintTarget;
    std::function<void(qint64 start, qint64 end)> painted;
    std::function<void(QObject* receiver, QEvent* event)> delivered;
    std::vector<double> paintMs, windowFrameMs;
    std::map<int, double> longestEventMs; // by event type, outermost events only
    bool recording = false;

    bool notify(QObject* receiver, QEvent* event) override
    {
        const QEvent::Type type = event->type();
        if (recording && m_depth == 0) {
            const qint64 start = nowNs();
            ++m_depth;
            const bool result = notify(receiver, event);
            --m_depth;
            double& longest = longestEventMs[int(type)];
            longest = std::max(longest, double(nowNs() - start) / 1e6);
            return result;
        }
        const bool paint = type == QEvent::Paint && receiver == paintTarget;
        const bool windowFrame = type == QEvent::UpdateRequest && receiver->isWidgetType()
                                 && static_cast<QWidget*>(receiver)->isWindow();
        if (delivered)
            delivered(receiver, event);
        if (!paint && !windowFrame)
            return QApplication::notify(receiver, event);
        const qint64 start = nowNs();
        const bool result = QApplication::notify(receiver, event);
        const qint64 end = nowNs();
        if (recording)
            (paint ? paintMs : windowFrameMs).push_back(double(end - start) / 1e6);
        if (paint && painted)
            painted(start, end);
        return result;
    }

private:
    int m_depth = 0;
};

// The GUI thread's turns: a timer asking to run every millisecond; a gap between two runs is
// time the thread spent elsewhere.
class Heartbeat {
public:
    Heartbeat()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(1);
        QObject::connect(&m_timer, &QTimer::timeout, [this] { beat(); });
    }
    void start()
    {
        m_gaps.clear();
        m_last = nowNs();
        m_timer.start();
    }
    void stop()
    {
        beat();
        m_timer.stop();
    }
    const std::vector<double>& gapsMs() const { return m_gaps; }

private:
    void beat()
    {
        const qint64 now = nowNs();
        m_gaps.push_back(double(now - m_last) / 1e6);
        m_last = now;
    }
    QTimer m_timer;
    qint64 m_last = 0;
    std::vector<double> m_gaps;
};

// Runs the event loop (blocking between events, as the window's own loop does) until `done`
// holds, checked every 5 ms; false after `timeoutMs`.
bool runUntil(const std::function<bool()>& done, int timeoutMs)
{
    if (done())
        return true;
    QEventLoop loop;
    QTimer check;
    QObject::connect(&check, &QTimer::timeout, &loop, [&] {
        if (done())
            loop.quit();
    });
    check.start(5);
    QTimer::singleShot(timeoutMs, &loop, &QEventLoop::quit);
    loop.exec();
    return done();
}

double quantile(std::vector<double> values, double q)
{
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    return values[std::min(values.size() - 1, size_t(q * double(values.size())))];
}
double maximum(const std::vector<double>& values) { return values.empty() ? 0 : *std::max_element(values.begin(), values.end()); }
int countOver(const std::vector<double>& values, double limit)
{
    return int(std::count_if(values.begin(), values.end(), [&](double v) { return v > limit; }));
}

void makeText(const QString& path, qint64 bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return;
    QByteArray block;
    for (qint64 line = 1; file.size() < bytes; ++line) {
        block += "line " + QByteArray::number(line).rightJustified(9, '0') + ": the quick brown fox jumps over the lazy dog 0123456789 abcdefghijklmnop\n";
        if (block.size() > 1 << 20 || file.size() + block.size() >= bytes) {
            file.write(block.left(bytes - file.size()));
            block.clear();
        }
    }
}

void postKey(QWidget* target, int key, const QString& text)
{
    QCoreApplication::postEvent(target, new QKeyEvent(QEvent::KeyPress, key, Qt::NoModifier, text));
    QCoreApplication::postEvent(target, new QKeyEvent(QEvent::KeyRelease, key, Qt::NoModifier, text));
}

} // namespace

int main(int argc, char** argv)
{
    QTemporaryDir home;
    pointHomeAt(home.path());
    TimedApplication app(argc, argv);
    g_clock.start();
    const int megabytes = argc > 1 ? atoi(argv[1]) : 50;
    const int keys = argc > 2 ? atoi(argv[2]) : 200;
    const QString text = home.path() + "/text.txt";
    makeText(text, qint64(megabytes) * 1024 * 1024);

    ViewPreferences preferences;
    WindowState state(FilePath::fromText(home.path()), &preferences);
    MainWindow window(&state);
    window.resize(1400, 900);
    window.show();
    window.activateWindow();
    runUntil([] { return false; }, 500);
    terminalActions::toggleTerminal(state);
    TabTerminals* terminals = TabTerminals::existing(state.selectedTab());
    TerminalSession* session = terminals ? terminals->selected() : nullptr;
    TerminalView* view = nullptr;
    const bool ready = runUntil([&] {
        view = qobject_cast<TerminalView*>(QApplication::focusWidget());
        return session && view && view->isVisible() && session->isIdleAtPrompt() && !session->screen().screenText().trimmed().isEmpty();
    }, 20000);
    if (!ready) {
        std::printf("the terminal panel did not show a prompt\n");
        return 1;
    }
    runUntil([] { return false; }, 300);
    app.paintTarget = view->viewport();
    const TerminalScreen& screen = session->screen();
    std::printf("platform %s, shell %s, panel %d × %d cells, cell %d × %d px\n", qPrintable(QGuiApplication::platformName()),
                qgetenv("SHELL").constData(), screen.cols(), screen.rows(), view->cellSize().width(), view->cellSize().height());

    // Key to echo at the prompt.
    std::vector<double> echoMs, keyToPaintMs;
    int keysLost = 0;
    for (int i = 0; i < keys; ++i) {
        const int row = screen.cursorRow(), col = screen.cursorCol();
        const char32_t letter = U'a' + char32_t(i % 26);
        qint64 echoed = -1, shown = -1;
        const QMetaObject::Connection arrived = QObject::connect(session, &TerminalSession::outputArrived, [&] {
            if (echoed < 0 && screen.cell(row, col).characters[0] == letter)
                echoed = nowNs();
        });
        app.painted = [&](qint64 start, qint64 end) {
            if (echoed >= 0 && shown < 0 && start >= echoed)
                shown = end;
        };
        const qint64 sent = nowNs();
        postKey(view, Qt::Key_A + int(i % 26), QString(QChar(char16_t(letter))));
        const bool ok = runUntil([&] { return shown >= 0; }, 2000);
        QObject::disconnect(arrived);
        app.painted = nullptr;
        if (!ok) {
            ++keysLost;
        } else {
            echoMs.push_back(double(echoed - sent) / 1e6);
            keyToPaintMs.push_back(double(shown - sent) / 1e6);
        }
        postKey(view, Qt::Key_Backspace, QString(QChar(0x08)));
        runUntil([&] { return screen.cursorCol() == col && screen.cell(row, col).isBlank(); }, 2000);
        runUntil([] { return false; }, 20); // the next key comes a little later, as a typist's would
    }
    const double frame = 1000.0 / 60;
    std::printf("key to echo at the prompt, %zu keys (%d lost):\n", keyToPaintMs.size(), keysLost);
    std::printf("  echo in the screen after: median %.1f ms, 99th %.1f ms\n", quantile(echoMs, 0.5), quantile(echoMs, 0.99));
    std::printf("  echo painted after:       median %.1f ms, 99th %.1f ms, max %.1f ms (target <= %.1f ms, one frame)\n",
                quantile(keyToPaintMs, 0.5), quantile(keyToPaintMs, 0.99), maximum(keyToPaintMs), frame);

    // The flood, with a key posted every 100 ms: timed until the view has it and has painted after.
    const auto flood = [&](bool withKeys, std::vector<double>* keyMs) {
        Heartbeat heartbeat;
        app.paintMs.clear();
        app.windowFrameMs.clear();
        app.longestEventMs.clear();
        std::vector<double> paintEnds;
        qint64 keyPosted = -1, keyReceived = -1;
        app.painted = [&](qint64 start, qint64 end) {
            paintEnds.push_back(double(end) / 1e6);
            if (keyReceived >= 0 && start >= keyReceived) {
                keyMs->push_back(double(end - keyPosted) / 1e6);
                keyPosted = keyReceived = -1;
            }
        };
        app.delivered = [&](QObject* receiver, QEvent* event) {
            if (event->type() == QEvent::KeyPress && receiver == view && keyPosted >= 0 && keyReceived < 0)
                keyReceived = nowNs();
        };
        QTimer keyTimer;
        QObject::connect(&keyTimer, &QTimer::timeout, [&] {
            if (keyPosted >= 0)
                return; // the last one is still on its way
            keyPosted = nowNs();
            postKey(view, Qt::Key_X, QStringLiteral("x"));
        });
        app.recording = true;
        const qint64 start = nowNs();
        heartbeat.start();
        session->write("cat '" + QFile::encodeName(text) + "'\r");
        const bool started = runUntil([&] { return !session->isIdleAtPrompt(); }, 5000);
        if (withKeys)
            keyTimer.start(100);
        const bool ended = started && runUntil([&] { return session->isIdleAtPrompt(); }, 600000);
        keyTimer.stop();
        runUntil([] { return false; }, 100); // the prompt's own frame
        heartbeat.stop();
        app.recording = false;
        app.painted = nullptr;
        app.delivered = nullptr;
        const double seconds = double(nowNs() - start) / 1e9;
        if (!ended) {
            std::printf("cat did not finish\n");
            return false;
        }
        std::vector<double> intervals;
        for (size_t i = 1; i < paintEnds.size(); ++i)
            intervals.push_back(paintEnds[i] - paintEnds[i - 1]);
        const auto& gaps = heartbeat.gapsMs();
        std::printf("cat of %d MB in the panel%s: %.2f s\n", megabytes, withKeys ? " with a key every 100 ms" : "", seconds);
        std::printf("  GUI-thread turns: longest gap %.1f ms; gaps over 50 ms: %d, over 16.7 ms: %d (target: none over 50 ms)\n",
                    maximum(gaps), countOver(gaps, 50), countOver(gaps, frame));
        std::printf("  view paints: %zu, paint time median %.2f ms, 99th %.2f ms, max %.2f ms\n", app.paintMs.size(),
                    quantile(app.paintMs, 0.5), quantile(app.paintMs, 0.99), maximum(app.paintMs));
        std::printf("  window repaints (paint and flush): median %.2f ms, 99th %.2f ms, max %.2f ms\n", quantile(app.windowFrameMs, 0.5),
                    quantile(app.windowFrameMs, 0.99), maximum(app.windowFrameMs));
        std::printf("  between view paints: median %.1f ms, 99th %.1f ms, longest %.1f ms; over 50 ms: %d\n", quantile(intervals, 0.5),
                    quantile(intervals, 0.99), maximum(intervals), countOver(intervals, 50));
        std::printf("  longest events by type (QEvent::Type: ms):");
        for (const auto& [type, ms] : app.longestEventMs)
            if (ms >= 1)
                std::printf(" %d: %.1f;", type, ms);
        std::printf("\n");
        return countOver(gaps, 50) == 0;
    };
    bool pass = flood(false, nullptr);
    std::vector<double> floodKeyMs;
    pass = flood(true, &floodKeyMs) && pass;
    std::printf("key during the flood, %zu keys: painted after median %.1f ms, 99th %.1f ms, max %.1f ms\n", floodKeyMs.size(),
                quantile(floodKeyMs, 0.5), quantile(floodKeyMs, 0.99), maximum(floodKeyMs));
    postKey(view, Qt::Key_U, QStringLiteral("\x15")); // the x's typed during the flood leave the line
    runUntil([] { return false; }, 100);
    pass = pass && keysLost == 0 && quantile(keyToPaintMs, 0.99) <= frame;
    return pass ? 0 : 1;
}
