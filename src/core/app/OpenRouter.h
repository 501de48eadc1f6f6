#pragma once
// OpenRouter: the one way in for files and folders handed to Orwick from outside — the command
// line (`orwick PATH…`, file:// URLs), orwick:// links, a second `orwick` passing its arguments
// to the running one, and other programs' "Show in folder" over D-Bus. Each becomes an
// OpenRequest and is shown in a window: a folder opened, a file or a reveal selected in its
// parent.
//
//   orwick://open?path=/a/folder   (add &reveal=1 to select it in its parent)
//
// One instance per process, made by the program; the list of windows tells it which window is
// in front. Requests that arrive before any window exists wait in pending() until the first
// window takes them (windowReady), in its first tab.
//
// Signals: delivered() follows every delivery, after the window's state was changed, so the
// window can be brought to the front (for a window being made, windowReady(), before the window
// that draws it exists); newWindowRequested() asks the program for one more window.

#include "app/OpenRequest.h"

#include <QObject>
#include <QStringList>
#include <functional>
#include <optional>

namespace orwick {

class WindowState;

class OpenRouter : public QObject {
    Q_OBJECT
public:
    explicit OpenRouter(QObject* parent = nullptr);
    ~OpenRouter() override;
    // The program's router, set by the program at start (null until then and in most tests).
    static OpenRouter* instance();
    static void setInstance(OpenRouter* router);

    // --- Reading requests (pure)
    // An orwick://open link: its first "path" item ("~" is the home folder, percent-encoded
    // bytes are kept as bytes, a relative path is taken from `base`, the home folder when
    // empty), revealed when "reveal" is exactly "1". Anything else, or no path: nothing.
    static std::optional<OpenRequest> parseLink(QByteArrayView url, const FilePath& base = {});
    static std::optional<OpenRequest> parseLink(const QString& url, const FilePath& base = {});
    static bool isLink(QByteArrayView argument);
    // Paths (relative to `cwd`), file:// URLs and orwick:// links, in order; links without a
    // path are left out.
    static OpenRequests requestsFromArguments(const QList<QByteArray>& arguments, const FilePath& cwd);
    static OpenRequests requestsFromArguments(const QStringList& arguments, const FilePath& cwd);

    // --- Showing them
    // Where a request is shown: a folder itself; a file, a reveal or a missing path in its
    // parent, selecting the item when it is there.
    struct Target {
        FilePath folder;
        QList<FilePath> selecting;
    };
    static Target targetOf(const OpenRequest& request);
    // Shows each request in `window`, in order: a folder the active pane shows already is
    // selected in, not opened again; the first request navigates the active pane when
    // `reusingFirstTab` (the start of the program); every other one gets a new tab.
    static void deliver(const OpenRequests& requests, WindowState& window, bool reusingFirstTab);

    // Where open() delivers: the front window, or null when none is open.
    void setFrontWindow(std::function<WindowState*()> front) { m_frontWindow = std::move(front); }
    // Delivers to the front window, or keeps the requests for the first one.
    void open(const OpenRequests& requests);
    void openLink(const QString& url);
    const OpenRequests& pending() const { return m_pending; }
    // A window was made: it shows `requests`, after any that waited for a window, the first in
    // its first tab.
    void windowReady(WindowState& window, const OpenRequests& requests = {});
    // The desktop's permission for the next window brought up to take the focus, as the program
    // that asked got it (XDG_ACTIVATION_TOKEN, a D-Bus startup id). Used on Wayland, where a
    // window may not take the focus without one; ignored elsewhere.
    static void useActivationToken(const QByteArray& token);
    // Asks for another window showing `requests` (a fresh one when empty).
    void openNewWindow(const OpenRequests& requests = {}) { Q_EMIT newWindowRequested(requests); }

Q_SIGNALS:
    void delivered(orwick::WindowState* window, const orwick::OpenRequests& requests);
    void newWindowRequested(const orwick::OpenRequests& requests);

private:
    std::function<WindowState*()> m_frontWindow;
    OpenRequests m_pending;
};

} // namespace orwick
