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

// The keepers of the open windows, the front window's first (GUI thread only).
QList<SessionKeeper*>& keepers()
{
    static QList<SessionKeeper*> list;
    return list;
}

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
    connect(window, &WindowState::closeRequested, this, [this] {
        if (!m_drawn)
            left(); // no window to follow: the request stands for the close
    });
    if (QCoreApplication* app = QCoreApplication::instance())
        connect(app, &QCoreApplication::aboutToQuit, this, [this] {
            if (isFront())
                saveNow();
        });
    keepers().prepend(this); // a new window comes up in front
    follow();
}

SessionKeeper::~SessionKeeper() { keepers().removeOne(this); }

bool SessionKeeper::isFront() const { return !keepers().isEmpty() && keepers().first() == this; }

bool SessionKeeper::restore(WindowState* window)
{
    const auto session = Session::forNewWindow(true);
    if (!session)
        return false;
    window->restore(*session, WindowState::Load::later);
    return true;
}

SessionKeeper* SessionKeeper::keep(WindowState* window, bool restoring, QObject* closing)
{
    if (!restoring)
        Session::forNewWindow(false); // the run's restore is used up
    else if (restore(window))
        window->selectedTab()->loadPanes();
    auto* keeper = new SessionKeeper(window);
    if (closing) {
        keeper->m_drawn = closing;
        closing->installEventFilter(keeper);
    }
    return keeper;
}

bool SessionKeeper::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Hide:
        // Closed (a minimized window is hidden by the desktop): always written, not only with a
        // change pending.
        if (!event->spontaneous())
            left();
        break;
    case QEvent::WindowActivate:
        if (!isFront()) { // also a window that was hidden and is shown again
            keepers().removeOne(this);
            keepers().prepend(this);
            m_timer.start();
        }
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void SessionKeeper::left()
{
    // The store ends up with the front one of the windows left, or this one's when it was last.
    m_timer.stop();
    keepers().removeOne(this);
    (keepers().isEmpty() ? this : keepers().first())->saveNow();
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
    if (!isFront())
        return; // the front window's session is the one kept
    const quint64 number = ++g_lastMade;
    QByteArray bytes = m_window->session().encoded();
    runInBackground(this, [number, bytes = std::move(bytes)] { return writeInOrder(number, bytes); }, [this](bool written) {
        if (written)
            Q_EMIT saved();
    });
}

} // namespace orwick

#include "moc_SessionKeeper.cpp"
