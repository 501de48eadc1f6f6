#include "ui/window/Windows.h"

#include "app/OpenRouter.h"
#include "platform/XdgPaths.h"
#include "state/WindowState.h"
#include "ui/window/MainWindow.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QTimer>
#include <algorithm>

namespace orwick {

Windows::Windows(ViewPreferences* preferences, QObject* parent) : QObject(parent), m_preferences(preferences) {}

Windows::~Windows()
{
    // The event loop may have ended with windows still open (ended rather than quit): they close
    // through their close event all the same, so that no editor's text is dropped.
    closeForTheEnd();
    // Windows first, then the states they draw.
    for (MainWindow* window : std::exchange(m_windows, {})) {
        window->removeEventFilter(this);
        disconnect(window, nullptr, this, nullptr);
        delete window;
    }
    m_recent.clear();
    m_states.clear();
}

MainWindow* Windows::open(const FilePath& folder) { return make(folder, {}); }

MainWindow* Windows::make(const FilePath& folder, const std::function<void(WindowState&)>& showFirst)
{
    // The first pane waits: the prepare hook may restore a session in its place, and the
    // requests may move the session's panes; only then do the shown panes read their folders.
    auto state = std::make_unique<WindowState>(folder, m_preferences, nullptr, PaneState::Start::whenShown);
    if (m_prepare)
        m_prepare(*state);
    if (showFirst)
        showFirst(*state);
    state->selectedTab()->loadPanes();
    auto* window = new MainWindow(state.get());
    window->setAttribute(Qt::WA_DeleteOnClose);
    WindowState* drawn = state.get();
    m_states.push_back(std::move(state));
    m_windows.append(window);
    m_recent.prepend(window);
    window->installEventFilter(this);
    connect(window, &QObject::destroyed, this, [this, window, drawn] { forget(window, drawn); });
    connect(drawn, &WindowState::quitRequested, this, &Windows::quit);
    if (m_decorate)
        m_decorate(*window);
    window->show();
    raise(window);
    Q_EMIT opened(window);
    return window;
}

MainWindow* Windows::open(const OpenRequests& requests)
{
    // Made on the first request's folder, so that no other folder is read first.
    const OpenRequests all = (m_router ? m_router->pending() : OpenRequests()) + requests;
    return make(all.isEmpty() ? xdg::home() : OpenRouter::targetOf(all.first()).folder, [this, &requests](WindowState& state) {
        if (m_router)
            m_router->windowReady(state, requests);
        else
            OpenRouter::deliver(requests, state, true);
    });
}

MainWindow* Windows::front() const { return m_recent.isEmpty() ? nullptr : m_recent.first(); }

WindowState* Windows::frontState() const
{
    MainWindow* window = front();
    return window ? window->state() : nullptr;
}

void Windows::raise(MainWindow* window)
{
    if (!window)
        return;
    if (window->isMinimized())
        window->showNormal();
    window->raise();
    window->activateWindow(); // window-wide keys need an active window, even with no window manager
    m_recent.removeOne(window);
    m_recent.prepend(window);
}

void Windows::serve(OpenRouter& router)
{
    m_router = &router;
    router.setFrontWindow([this] { return frontState(); });
    connect(&router, &OpenRouter::delivered, this, [this](WindowState* state, const OpenRequests&) {
        for (MainWindow* window : std::as_const(m_windows))
            if (window->state() == state)
                raise(window);
    });
    connect(&router, &OpenRouter::newWindowRequested, this, [this](const OpenRequests& requests) { open(requests); });
}

void Windows::quit()
{
    m_quitting = true;
    if (m_windows.isEmpty()) {
        QCoreApplication::quit();
        return;
    }
    closeEach();
}

void Windows::closeEach()
{
    // The front window closes last, so that its session is the one that reopens.
    const QList<MainWindow*> order = m_recent;
    for (auto it = order.rbegin(); it != order.rend(); ++it)
        if (m_windows.contains(*it))
            (*it)->closeWithoutAsking();
}

void Windows::closeForTheEnd()
{
    QList<QPointer<MainWindow>> open;
    for (MainWindow* window : std::as_const(m_windows))
        if (window->isVisible())
            open.append(window);
    if (open.isEmpty())
        return;
    closeEach();
    // A window whose editor is saving closes once the engine has written the text; its reply
    // comes through the event loop, which has ended, so events are handed on here a while.
    QElapsedTimer waited;
    waited.start();
    QTimer wake; // the wait for events looks at the clock at least this often
    wake.start(50);
    auto stillOpen = [&open] {
        return std::any_of(open.begin(), open.end(), [](const QPointer<MainWindow>& window) { return window && window->isVisible(); });
    };
    while (stillOpen() && waited.elapsed() < kSaveWaitMs)
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    if (stillOpen())
        qWarning("orwick: a window's editor could not save its text before the end");
}

bool Windows::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::WindowActivate) {
        auto* window = static_cast<MainWindow*>(watched);
        m_recent.removeOne(window);
        m_recent.prepend(window);
    }
    return QObject::eventFilter(watched, event);
}

void Windows::forget(MainWindow* window, WindowState* state)
{
    m_windows.removeOne(window);
    m_recent.removeOne(window);
    // The window is gone, so nothing draws the state any more; it goes after the event in hand.
    for (auto it = m_states.begin(); it != m_states.end(); ++it) {
        if (it->get() == state) {
            it->release()->deleteLater();
            m_states.erase(it);
            break;
        }
    }
    Q_EMIT closed();
    if (m_quitting && m_windows.isEmpty())
        QCoreApplication::quit();
}

} // namespace orwick
