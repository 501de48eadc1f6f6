#pragma once
// SessionKeeper: keeps one window's session in the preferences store, so that the program opens
// where it was left. Owned by (a child of) its WindowState.
//
// A while after the last change of tabs, panes, folders, the active pane, the selected tab or the
// preview flag (kDelayMs, restarted by each change) the session is encoded on the GUI thread and
// written in the background with the writer's own settings handle, so no frame waits for the disk.
// Writes reach the store in the order they were made: one that arrives after a newer one is
// dropped. With several windows the store keeps the front one's session (the window activated
// last): only the front window's keeper saves after a change, and a window that becomes the
// front one saves a while later. When a window has closed, the front one of the windows left
// writes its session at once, or the closing window its own when it was the last: the window
// left standing is the one that reopens. When the app quits, the front window's session is
// written.
//
// Signals: saved() follows each write that reached the store, on the GUI thread.

#include "state/WindowState.h"

#include <QTimer>

namespace orwick {

class SessionKeeper : public QObject {
    Q_OBJECT
public:
    static constexpr int kDelayMs = 2000;

    explicit SessionKeeper(WindowState* window);
    ~SessionKeeper() override;

    // Keeps `window`'s session from now on. The first window of a run first takes the stored
    // session when `restoring`, and its shown tab reads its folders; a first window that doesn't
    // uses up the run's restore all the same, so later windows start fresh. `closing` is the
    // window drawn for `window`: its activation makes it the front one, and its hiding as it
    // closes saves at once. Returns the keeper, a child of the window.
    static SessionKeeper* keep(WindowState* window, bool restoring, QObject* closing = nullptr);
    // The restoring half of keep(), for a window state not yet drawn: the first window of a run
    // takes the stored session; its panes wait for the caller's loadPanes(), so that the start's
    // open requests move them before they read a folder. Returns whether it did.
    static bool restore(WindowState* window);

    void setDelay(int milliseconds) { m_timer.setInterval(milliseconds); }
    bool hasPendingSave() const { return m_timer.isActive(); }
    // Writes the session now, on this thread, and forgets any pending save.
    void saveNow();

Q_SIGNALS:
    void saved();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void changed();
    void follow();
    void saveInBackground();
    // The window has gone (or, with none drawn, asked to close).
    void left();
    bool isFront() const;

    WindowState* m_window;
    QObject* m_drawn = nullptr; // the window that draws m_window, when one was given
    QTimer m_timer;
};

} // namespace orwick
