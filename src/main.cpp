// orwick: the file manager window.
//
//   orwick [FOLDER|FILE|file://URL]     opens the folder (a file: its folder, with it selected)
//   orwick --show trash|recents|screenshots|drives|tag:NAME

#include "files/Listing.h"
#include "app/Services.h"
#include "commands/Frecency.h"
#include "git/Git.h"
#include "notes/FileProperties.h"
#include "platform/DirectoryReader.h"
#include "platform/XdgPaths.h"
#include "state/WindowState.h"
#include "ui/notes/PaneNotesDecoration.h"
#include "ui/pane/PaneGitDecoration.h"
#include "ui/panels/DiskToolKeys.h"
#include "ui/pane/PaneWidget.h"
#include "ui/window/MainWindow.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTimer>
#include <cstdio>

using namespace orwick;

namespace {

// ORWICK_TRACE_STARTUP=1 prints when the first rows are shown and the memory held then;
// ORWICK_TRACE_STARTUP=quit also quits, for benchmarks.
void traceStartup(MainWindow& window, const QElapsedTimer& sinceStart)
{
    const QByteArray mode = qgetenv("ORWICK_TRACE_STARTUP");
    if (mode.isEmpty())
        return;
    PaneState* pane = window.state()->activePane();
    auto* connection = new QMetaObject::Connection;
    *connection = QObject::connect(pane, &PaneState::itemsChanged, &window, [&window, &sinceStart, connection, mode] {
        QObject::disconnect(*connection);
        delete connection;
        // The rows are painted on the next pass of the event loop.
        QTimer::singleShot(0, &window, [&window, &sinceStart, mode] {
            window.repaint();
            QFile status(QStringLiteral("/proc/self/status"));
            QByteArray rss;
            if (status.open(QIODevice::ReadOnly))
                for (const QByteArray& line : status.readAll().split('\n'))
                    if (line.startsWith("VmRSS:"))
                        rss = line.mid(6).simplified();
            fprintf(stderr, "first rows shown after %lld ms, %d items, resident %s\n", (long long)sinceStart.elapsed(),
                    int(window.state()->activePane()->items().size()), rss.constData());
            if (mode == "quit")
                QTimer::singleShot(200, qApp, &QApplication::quit);
        });
    });
}

} // namespace

int main(int argc, char** argv)
{
    QElapsedTimer sinceStart;
    sinceStart.start();
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Orwick"));
    QApplication::setDesktopFileName(QStringLiteral("orwick"));

    FilePath folder = xdg::home();
    std::optional<FilePath> selecting;
    std::optional<Listing> listing;
    const QStringList arguments = app.arguments().mid(1);
    for (int i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments[i];
        if (argument == QLatin1StringView("--show") && i + 1 < arguments.size()) {
            listing = Listing::fromName(arguments[++i]);
            if (!listing) {
                fprintf(stderr, "orwick: --show takes trash, recents, screenshots, drives or tag:NAME\n");
                return 2;
            }
            continue;
        }
        // Paths arrive as bytes; a URL as a file:// URL.
        const FilePath path = argument.startsWith(QLatin1StringView("file:")) ? FilePath::fromUrl(QUrl(argument))
                                                                              : FilePath::fromNative(QFile::encodeName(argument));
        const auto st = statPath(path, FollowLinks::yes);
        if (st && !st->isDirectory()) {
            folder = path.parent();
            selecting = path;
        } else {
            folder = path;
        }
    }

    ViewPreferences preferences;
    Git git;
    services().git = &git;
    Frecency frecency;
    services().frecency = &frecency;
    FileProperties properties;
    services().properties = &properties;
    WindowState state(folder, &preferences);
    if (listing)
        state.activePane()->show(*listing);
    else if (selecting)
        state.activePane()->reveal({*selecting});
    MainWindow window(&state);
    window.addPaneDecorator([&git](PaneWidget* widget) { new PaneGitDecoration(widget, &git); });
    PaneNotesDecoration::attach(&window, &properties);
    // The disk-tool commands set the window's panel; the sheets draw it.
    DiskToolKeys::follow(state, &window);
    traceStartup(window, sinceStart);
    window.show();
    window.activateWindow(); // window-wide keys need an active window, even with no window manager
    return app.exec();
}
