#include "app/OpenRouter.h"

#include "platform/DirectoryReader.h"
#include "state/WindowState.h"

#include <QGuiApplication>
#include <QPointer>

namespace orwick {

namespace {
QPointer<OpenRouter> sharedRouter;
}

OpenRouter::OpenRouter(QObject* parent) : QObject(parent) {}

OpenRouter::~OpenRouter() = default;

OpenRouter* OpenRouter::instance() { return sharedRouter; }

void OpenRouter::setInstance(OpenRouter* router) { sharedRouter = router; }

OpenRouter::Target OpenRouter::targetOf(const OpenRequest& request)
{
    const auto stat = statPath(request.path, FollowLinks::yes);
    if (stat && stat->isDirectory() && !request.reveal)
        return {request.path, {}};
    // Revealing the root shows it, with nothing to select.
    if (!stat || request.path.isRoot())
        return {request.path.parent(), {}};
    return {request.path.parent(), {request.path}};
}

void OpenRouter::deliver(const OpenRequests& requests, WindowState& window, bool reusingFirstTab)
{
    bool first = true;
    for (const OpenRequest& request : requests) {
        const auto [folder, selecting] = targetOf(request);
        PaneState* pane = window.activePane();
        if (pane->url() == folder && !pane->listing())
            pane->reveal(selecting);
        else if (reusingFirstTab && first)
            pane->navigate(folder, selecting);
        else
            window.newTab(folder)->activePane()->reveal(selecting);
        first = false;
    }
}

void OpenRouter::useActivationToken(const QByteArray& token)
{
    // Qt's Wayland window takes the token from the environment when it is next activated.
    if (!token.isEmpty() && QGuiApplication::platformName().startsWith(QLatin1StringView("wayland")))
        qputenv("XDG_ACTIVATION_TOKEN", token);
}

void OpenRouter::open(const OpenRequests& requests)
{
    if (requests.isEmpty())
        return;
    WindowState* front = m_frontWindow ? m_frontWindow() : nullptr;
    if (!front) {
        m_pending.append(requests);
        return;
    }
    deliver(requests, *front, false);
    Q_EMIT delivered(front, requests);
}

void OpenRouter::openLink(const QString& url)
{
    if (auto request = parseLink(url))
        open({*request});
}

void OpenRouter::windowReady(WindowState& window, const OpenRequests& requests)
{
    const OpenRequests all = std::exchange(m_pending, {}) + requests;
    if (all.isEmpty())
        return;
    deliver(all, window, true);
    Q_EMIT delivered(&window, all);
}

} // namespace orwick

#include "moc_OpenRouter.cpp"
