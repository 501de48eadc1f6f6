#pragma once
// Windows: the program's open windows — each a WindowState drawn by a MainWindow — and which
// one is in front (the one active most recently). Owns both halves of every window it opens;
// a window that closes takes its state with it.
//
// serve() connects the open router: requests from outside go to the front window, which is
// then brought up, and New Window opens another one.
//
// Every window ends through its close event, whether the user closes it, the program quits or
// its event loop has ended with the window still open (the destructor closes those), so that an
// editor's unsaved text is saved first and the window's session is kept.
//
// Signals: opened() follows every window made, after it is shown; closed() follows every
// window that went, after it left all() and front().

#include "app/OpenRequest.h"
#include "base/FilePath.h"

#include <QObject>
#include <QPointer>
#include <functional>
#include <memory>

namespace orwick {

class MainWindow;
class OpenRouter;
class ViewPreferences;
class WindowState;

class Windows : public QObject {
    Q_OBJECT
public:
    explicit Windows(ViewPreferences* preferences, QObject* parent = nullptr);
    ~Windows() override;

    // Runs on every window's state as it is made, before the window that draws it (so that a
    // restored session is drawn once).
    void setPrepare(std::function<void(WindowState&)> prepare) { m_prepare = std::move(prepare); }
    // Runs on every window made, before it is shown (git marks, notes, disk-tool keys…).
    void setDecorate(std::function<void(MainWindow&)> decorate) { m_decorate = std::move(decorate); }

    // A new window on `folder`, shown and active.
    MainWindow* open(const FilePath& folder);
    // A new window showing `requests` (its first request in its first tab, after the prepare
    // hook, so in a restored session's active pane), after any requests that waited for a
    // window; the home folder when there are none.
    MainWindow* open(const OpenRequests& requests);
    const QList<MainWindow*>& all() const { return m_windows; }
    MainWindow* front() const;
    WindowState* frontState() const;
    // Brings the window up and gives it the keyboard.
    void raise(MainWindow* window);

    // Takes requests from `router`: the front window gets them, New Window opens one.
    void serve(OpenRouter& router);

    // Ends the program through every window's close event, without the question about tabs
    // (the session keeps them): editors' text is saved first, the front window closes last (its
    // session reopens), and the event loop ends once the last window has gone. A refused save
    // keeps its window, and the program, running.
    void quit();

    // How long the end of the program waits for editors still saving.
    static constexpr int kSaveWaitMs = 10000;

Q_SIGNALS:
    void opened(orwick::MainWindow* window);
    void closed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void forget(MainWindow* window, WindowState* state);
    void closeEach();
    void closeForTheEnd();

    ViewPreferences* m_preferences;
    QPointer<OpenRouter> m_router;
    // Makes a window on `folder`; `showFirst` moves its panes before they read their folders.
    MainWindow* make(const FilePath& folder, const std::function<void(WindowState&)>& showFirst);

    std::function<void(WindowState&)> m_prepare;
    std::function<void(MainWindow&)> m_decorate;
    QList<MainWindow*> m_windows;  // in the order they were opened
    QList<MainWindow*> m_recent;   // most recently active first
    std::vector<std::unique_ptr<WindowState>> m_states;
    bool m_quitting = false;
};

} // namespace orwick
