#pragma once
// OutsideMoves: notices notes, pictures and folders that another program moved or renamed while
// Orwick shows their folder, and offers to update the links to them ("Update links to
// “NAME”?"). The panes' folder watchers report each half of a rename (observe); the two halves
// share the kernel's cookie, also across two panes' folders. A pair is offered after a short
// settling time unless Orwick's own engine made that move (its undo and redo included), the
// names are hidden or temporary (an editor saving through a temporary file), or the setting
// "updateLinksOnMove" is off. accept() runs the link updater on the moves, as after a move of
// Orwick's own.
// Lives on the interface thread.

#include "fileops/FileChange.h"

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QPointer>
#include <QTimer>

class QUndoStack;

namespace orwick {

class FileOperations;
class LinkUpdater;

class OutsideMoves : public QObject {
    Q_OBJECT
public:
    static constexpr int kSettleMs = 400;

    OutsideMoves(FileOperations* operations, LinkUpdater* updater, QObject* parent = nullptr);
    // The application's one instance (the shared engine and link updater).
    static OutsideMoves& shared();

    // One half of a rename a folder watcher saw (DirectoryWatcher::itemMoved).
    void observe(quint32 cookie, const FilePath& path, bool arrived);
    // Updates the links to `moves` as one "Update Links" step on `undo`.
    void accept(const QList<FileMove>& moves, QUndoStack* undo);

    // "Update links to “NAME”?" (or "… to 3 items?").
    static QString offerText(const QList<FileMove>& moves);

Q_SIGNALS:
    // Moves made outside Orwick whose links may need updating; at most once per settling time.
    void offered(const QList<orwick::FileMove>& moves, const QString& text);

private:
    void settle();
    static bool isLinkable(const FileMove& move);

    QPointer<FileOperations> m_operations;
    QPointer<LinkUpdater> m_updater;
    QHash<quint32, FilePath> m_departed;   // cookie → where the item was
    QList<quint32> m_pairedCookies;        // the last cookies paired (two panes see one rename)
    QList<FileMove> m_pending;
    QList<std::pair<FileMove, qint64>> m_engineMoves; // the engine's recent moves, by time seen
    QElapsedTimer m_clock;
    QTimer m_timer;
};

} // namespace orwick
