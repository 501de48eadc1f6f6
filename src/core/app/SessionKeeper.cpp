#include "app/SessionKeeper.h"

#include "async/Background.h"

#include <QCoreApplication>
#include <QEvent>
#include <mutex>

namespace orwick {

namespace {

// Every write of the process is numbered when it is made; a write that reaches the store after
// a newer one has is dropped, so a slow background write never replaces a later session.
std::mutex g_writeMutex;
quint64 g_lastMade = 0;    // GUI thread only
quint64 g_lastWritten = 0; // under g_writeMutex

bool writeInOrder(quint64 number, const QByteArray& bytes)
{
    const std::lock_guard lock(g_writeMutex);
    if (number < g_lastWritten)
        return false;
    g_lastWritten = number;
    if (const Status status = Session::saveEncoded(bytes); !status)
        qWarning("orwick: %s", qPrintable(status.error()));
    return true;
}

} // namespace

SessionKeeper::SessionKeeper(WindowState* window) : QObject(window), m_window(window)
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(kDelayMs);
    connect(&m_timer, &QTimer::timeout, this, &SessionKeeper::saveInBackground);
    connect(window, &WindowState::tabsChanged, this, &SessionKeeper::changed);
    connect(window, &WindowState::selectedTabChanged, this, &SessionKeeper::changed);
    connect(window, &WindowState::showPreviewChanged, this, &SessionKeeper::changed);
    connect(window, &WindowState::closeRequested, this, &SessionKeeper::saveNow);
    if (QCoreApplication* app = QCoreApplication::instance())
        connect(app, &QCoreApplication::aboutToQuit, this, [this] {
            if (hasPendingSave())
                saveNow();
        });
    follow();
}

bool SessionKeeper::restore(WindowState* window, bool restoring)
{
    // A start with folders to open passes its turn without reading the saved session.
    const auto session = Session::forNewWindow(restoring);
    if (!session)
        return false;
    window->restore(*session);
    return true;
}

SessionKeeper* SessionKeeper::keep(WindowState* window, bool restoring, QObject* closing)
{
    restore(window, restoring);
    auto* keeper = new SessionKeeper(window);
    if (closing)
        closing->installEventFilter(keeper);
    return keeper;
}

bool SessionKeeper::eventFilter(QObject* watched, QEvent* event)
{
    // Always, not only with a change pending: the window closed last is the one to reopen.
    if (event->type() == QEvent::Close)
        saveNow();
    return QObject::eventFilter(watched, event);
}

void SessionKeeper::changed()
{
    follow();
    m_timer.start();
}

// Tabs come and go: each change connects the ones that are new (UniqueConnection leaves the
// others as they are). A tab speaks for its panes, also those it makes later.
void SessionKeeper::follow()
{
    for (TabState* tab : m_window->tabs()) {
        connect(tab, &TabState::panesChanged, this, &SessionKeeper::changed, Qt::UniqueConnection);
        connect(tab, &TabState::activePaneChanged, this, &SessionKeeper::changed, Qt::UniqueConnection);
        connect(tab, &TabState::foldersChanged, this, &SessionKeeper::changed, Qt::UniqueConnection);
    }
}

void SessionKeeper::saveNow()
{
    m_timer.stop();
    if (writeInOrder(++g_lastMade, m_window->session().encoded()))
        Q_EMIT saved();
}

void SessionKeeper::saveInBackground()
{
    const quint64 number = ++g_lastMade;
    QByteArray bytes = m_window->session().encoded();
    runInBackground(this, [number, bytes = std::move(bytes)] { return writeInOrder(number, bytes); }, [this](bool written) {
        if (written)
            Q_EMIT saved();
    });
}

} // namespace orwick

#include "moc_SessionKeeper.cpp"
