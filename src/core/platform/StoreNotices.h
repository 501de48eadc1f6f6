#pragma once
// StoreNotices: the one way Orwick's stores (trash log, frecency, column settings, …) tell the
// user about their files: a damaged file set aside, a file that can't be saved. A store posts
// a sentence from any thread; the window shows it as a toast.
//
// Until a window asks for them (deliverTo), notices wait; the pending ones and every later one
// are then handed to `show` on the context's thread, never synchronously inside post(). A
// notice stays pending until it is shown, so a window that closes before it could show one
// leaves it to the next window that asks. A
// "once" notice with a key is posted only the first time until that key is cleared, so a store
// that can't be written says so once, not at every write.

#include <QObject>
#include <QString>
#include <QStringList>
#include <functional>

namespace orwick {

class StoreNotices {
public:
    // Any thread.
    static void post(const QString& message);
    // Posts `message` unless a notice with `key` was posted and not cleared since; returns
    // whether it was posted.
    static bool postOnce(const QString& key, const QString& message);
    static void clearOnce(const QString& key);

    // From now on notices go to `show`, called on `context`'s thread while `context` lives
    // (pending ones first).
    static void deliverTo(QObject* context, std::function<void(const QString&)> show);
    // The notices waiting for a window, taken (tests, and a program without a window).
    static QStringList takePending();
};

} // namespace orwick
