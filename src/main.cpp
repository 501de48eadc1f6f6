// orwick: the file manager window.
//
//   orwick [--new-window] [FOLDER|FILE|file://URL|orwick://open?path=…]…
//   orwick --show trash|recents|screenshots|drives|tag:NAME
//   orwick --help | --version
//
// One Orwick runs per user and display: a later `orwick` hands its arguments to the running one,
// which opens them in its front window (or a new one), and returns at once.

#include "app/CommandLine.h"
#include "app/OpenRouter.h"
#include "app/Settings.h"
#include "app/Services.h"
#include "app/SessionKeeper.h"
#include "app/ShowInFolderService.h"
#include "app/SingleInstance.h"
#include "async/Background.h"
#include "commands/ExternalPrograms.h"
#include "commands/Frecency.h"
#include "git/Git.h"
#include "help/FirstStartWelcome.h"
#include "images/ImageFormats.h"
#include "fileops/FileOperations.h"
#include "fileops/LinkUpdater.h"
#include "notes/FileProperties.h"
#include "places/FinderTags.h"
#include "platform/XdgPaths.h"
#include "state/WindowState.h"
#include "theme/SystemColorScheme.h"
#include "theme/ThemeStore.h"
#include "ui/notes/PaneDatabaseViews.h"
#include "ui/notes/PaneNotesDecoration.h"
#include "ui/pane/PaneGitDecoration.h"
#include "ui/pane/PaneTagDecoration.h"
#include "ui/panels/DiskToolKeys.h"
#include "ui/panels/SettingsPanel.h"
#include "ui/theme/IconThemeFallback.h"
#include "ui/theme/ThemeApplier.h"
#include "ui/pane/PaneWidget.h"
#include "ui/window/MainWindow.h"
#include "ui/window/RowsShown.h"
#include "ui/window/Windows.h"

#include <QApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QFile>
#include <QTimer>
#include <QWindow>
#include <cstdio>

using namespace orwick;

namespace {

// ORWICK_TRACE_STARTUP=1 prints when the first rows are shown and the memory held then;
// ORWICK_TRACE_STARTUP=quit also quits, for benchmarks.
void traceStartup(Windows& windows, MainWindow& window, const QElapsedTimer& sinceStart)
{
    const QByteArray mode = qgetenv("ORWICK_TRACE_STARTUP");
    if (mode.isEmpty())
        return;
    whenRowsShown(window, window.state()->activePane(), [&windows, &window, &sinceStart, mode] {
        QFile status(QStringLiteral("/proc/self/status"));
        QByteArray rss;
        if (status.open(QIODevice::ReadOnly))
            for (const QByteArray& line : status.readAll().split('\n'))
                if (line.startsWith("VmRSS:"))
                    rss = line.mid(6).simplified();
        fprintf(stderr, "first rows shown after %lld ms, %d items, resident %s\n", (long long)sinceStart.elapsed(),
                int(window.state()->activePane()->items().size()), rss.constData());
        // Quits as the end of a session does: the windows close without asking about their tabs.
        if (mode == "quit")
            QTimer::singleShot(200, &windows, [&windows] { windows.quit(); });
    });
}

// ORWICK_TRACE_OPEN=1 prints every request a window was given, and when its rows were shown
// (milliseconds since the epoch, to compare with the clock of the `orwick` that sent it).
void traceOpen(Windows& windows, OpenRouter& router)
{
    if (qgetenv("ORWICK_TRACE_OPEN").isEmpty())
        return;
    // Reports the rows of the active pane of the window that draws `state`.
    auto reportRows = [&windows](WindowState* state) {
        MainWindow* window = windows.front();
        if (!window || window->state() != state)
            return;
        PaneState* pane = state->activePane();
        auto report = [pane = QPointer<PaneState>(pane)] {
            if (pane)
                fprintf(stderr, "open: rows of %s shown at %lld, %d selected\n", pane->url().c_str(),
                        (long long)QDateTime::currentMSecsSinceEpoch(), int(pane->selection().size()));
        };
        if (pane->isLoading())
            whenRowsShown(*window, pane, report);
        else
            report();
    };
    QObject::connect(&router, &OpenRouter::delivered, &windows, [&windows, reportRows](WindowState* state, const OpenRequests& requests) {
        const bool made = windows.frontState() == state; // else the window is being made for them
        for (const OpenRequest& request : requests)
            fprintf(stderr, "open: %s%s in window %d\n", request.path.c_str(), request.reveal ? " (reveal)" : "",
                    int(made ? windows.all().indexOf(windows.front()) + 1 : windows.all().size() + 1));
        if (made) {
            reportRows(state);
            return;
        }
        auto* connection = new QMetaObject::Connection;
        *connection = QObject::connect(&windows, &Windows::opened, &windows, [connection, state, reportRows](MainWindow* window) {
            if (window->state() != state)
                return;
            QObject::disconnect(*connection);
            delete connection;
            reportRows(state);
        });
    });
}

// What a start of `orwick` asked for, in the running program: its items in the front window
// (or a new one), a listing in a new tab.
void follow(const CommandLine& line, const FilePath& workingFolder, Windows& windows, OpenRouter& router)
{
    const OpenRequests requests = line.requests(workingFolder);
    OpenRouter::useActivationToken(line.activationToken);
    if (line.newWindow || !windows.front()) {
        router.openNewWindow(requests);
    } else if (!requests.isEmpty()) {
        router.open(requests);
    }
    WindowState* front = windows.frontState();
    if (line.listing && front)
        (line.newWindow || windows.all().size() == 1 ? front->activePane() : front->newTab()->activePane())->show(*line.listing);
    windows.raise(windows.front());
}

// A user's first plain start shows the welcome sheet, once (help/FirstStartWelcome.h). A traced
// start is being measured (benchmarks, the start-up tests), so nothing is added to it.
void welcomeAtFirstStart(const CommandLine& line, bool reopened, Windows& windows)
{
    using firstStart::Start;
    const bool traced = !qgetenv("ORWICK_TRACE_STARTUP").isEmpty() || !qgetenv("ORWICK_TRACE_OPEN").isEmpty();
    const Start start = traced ? Start::measured : !line.items.isEmpty() || line.listing || reopened ? Start::shows : Start::plain;
    WindowState* front = windows.frontState();
    if (front && start == Start::plain && firstStart::takeWelcome(*openSettings(), start)) // else the store isn't even read
        front->setWelcoming(true);
}

} // namespace

int main(int argc, char** argv)
{
    QElapsedTimer sinceStart;
    sinceStart.start();
    QList<QByteArray> arguments; // bytes: a name need not be UTF-8
    for (int i = 1; i < argc; ++i)
        arguments.append(QByteArray(argv[i]));
    const Result<CommandLine> line = CommandLine::parse(arguments);
    if (!line) {
        fprintf(stderr, "%s\n", qPrintable(line.error()));
        return 2;
    }
    if (line->action != CommandLine::Action::open) {
        fputs(qPrintable(line->action == CommandLine::Action::help ? CommandLine::helpText() : CommandLine::versionText()), stdout);
        return 0;
    }

    // A running Orwick takes the request, and this start ends here.
    const FilePath workingFolder = FilePath::fromNative(".");
    const Result<FilePath> socket = SingleInstance::socketPath();
    QString alone; // why this Orwick won't take later starts' requests
    if (socket) {
        // The desktop's leave to take the focus goes along, for the window that shows the items.
        QList<QByteArray> passedOn = arguments;
        if (const QByteArray token = qgetenv("XDG_ACTIVATION_TOKEN"); !token.isEmpty())
            passedOn.append("--activation-token=" + token);
        const auto handed = SingleInstance::handOver(*socket, {workingFolder, passedOn});
        if (handed && *handed == SingleInstance::HandOver::done)
            return 0;
        if (!handed)
            alone = handed.error();
    } else {
        alone = socket.error();
    }

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Orwick"));
    QApplication::setDesktopFileName(QStringLiteral("orwick"));
    useIconFallbackTheme();
    // Qt finds its image plugins (the picture commands ask which formats it can write) on a
    // worker thread while this one makes the window, instead of in the middle of making it.
    runInBackground(&app, [] { return writableImageFormats(); }, [](const QList<QByteArray>&) {});
    SingleInstance instance;
    if (alone.isEmpty())
        if (const Status listening = instance.listen(*socket); !listening)
            alone = listening.error();
    if (!alone.isEmpty())
        fprintf(stderr, "orwick: %s, so this Orwick runs on its own: a later “orwick” won't open its folders here\n", qPrintable(alone));

    ViewPreferences preferences;
    Git git;
    services().git = &git;
    Frecency frecency;
    services().frecency = &frecency;
    FileProperties properties;
    services().properties = &properties;
    ExternalPrograms programs;
    services().programs = &programs;

    // The tag cache follows Orwick's own tag changes, and walks the home once the first window
    // has loaded its folder.
    FinderTags::shared().follow(&FileOperations::shared());
    LinkUpdater::shared(); // rewrites notes' links after the engine's moves
    QTimer::singleShot(2000, &FinderTags::shared(), [] { FinderTags::shared().scanHome(); });
    // Colours come from the chosen theme; "Match System" follows the desktop through the settings
    // portal, else the light or dark of the desktop style's palette.
    SystemColorScheme colorScheme(QDBusConnection::sessionBus(), &theme::systemPaletteAppearance);
    ThemeStore themes({}, &colorScheme);
    ThemeStore::setShared(&themes);

    Windows windows(&preferences);
    // The first window reopens the last session before it is drawn; what the start asked for is
    // then shown in it, the first folder in the session's active pane.
    bool reopened = false; // the first window took the stored session
    windows.setPrepare([&reopened](WindowState& state) { reopened = SessionKeeper::restore(&state) || reopened; });
    windows.setDecorate([&git, &properties](MainWindow& window) {
        window.addPaneDecorator([&git](PaneWidget* widget) { new PaneGitDecoration(widget, &git); });
        window.addPaneDecorator([](PaneWidget* widget) { new PaneTagDecoration(widget, &FinderTags::shared()); });
        PaneNotesDecoration::attach(&window, &properties);
        PaneDatabaseViews::attach(&window, &properties);
        // The disk-tool commands set the window's panel; the sheets draw it.
        DiskToolKeys::follow(*window.state(), &window);
        SettingsPanel::follow(*window.state(), &window);
        SessionKeeper::keep(window.state(), false, &window); // every window's session is kept
    });
    OpenRouter router;
    OpenRouter::setInstance(&router);
    windows.serve(router);
    traceOpen(windows, router);
    ShowInFolderService showInFolder(&router);

    follow(*line, workingFolder, windows, router);
    welcomeAtFirstStart(*line, reopened, windows);
    traceStartup(windows, *windows.front(), sinceStart);
    QObject::connect(&instance, &SingleInstance::received, &windows, [&](const SingleInstance::Request& request) {
        if (const Result<CommandLine> later = CommandLine::parse(request.arguments); later && later->action == CommandLine::Action::open)
            follow(*later, request.workingFolder, windows, router);
    });
    return app.exec();
}
