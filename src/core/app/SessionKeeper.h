#pragma once
// SessionKeeper: keeps one window's session in the preferences store, so that the program opens
// where it was left. Owned by (a child of) its WindowState.
//
// A while after the last change of tabs, panes, folders, the active pane, the selected tab or the
// preview flag (kDelayMs, restarted by each change) the session is encoded on the GUI thread and
// written in the background with the writer's own settings handle, so no frame waits for the disk.
// Writes reach the store in the order they were made: one that arrives after a newer one is
// dropped. When the window closes (or asks to, closing its last tab) its session is written at
// once, so the window closed last is the one that reopens; when the app quits, a pending save is.
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

    // Keeps `window`'s session from now on. The first window of a run first takes the stored
    // session when `restoring` (a start with nothing to open); a first window that opens
    // something instead uses up the run's restore all the same, so later windows start fresh.
    // When `closing` is given, its close event (the window drawn for `window`) saves at once.
    // Returns the keeper, a child of the window.
    static SessionKeeper* keep(WindowState* window, bool restoring, QObject* closing = nullptr);
    // The restoring half of keep(), for a window state not yet drawn: the first window of a run
    // takes the stored session when `restoring`. Returns whether it did.
    static bool restore(WindowState* window, bool restoring);

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

    WindowState* m_window;
    QTimer m_timer;
};

} // namespace orwick
