#pragma once
// VaultWatcher: tells which entries of a vault's folders were written, made, removed or renamed,
// by name — the backlinks' way of hearing that another program saved a note. One inotify
// instance on the GUI thread watching every folder it is given (up to a budget); a folder that
// appears inside a watched one is watched too, with what is below it. Hidden folders are not
// watched. A watched folder that goes is forgotten.
//
// Signals: pathsChanged() once per batch of kernel events, with the entries concerned in the
// kernel's order (each once); overflowed() when the kernel dropped events, so that any entry may
// have changed.

#include "base/FilePath.h"
#include "platform/InotifyFolders.h"

#include <QHash>
#include <QObject>

namespace orwick {

class VaultWatcher : public QObject {
    Q_OBJECT
public:
    // Vaults are small trees (10,000 notes in a few hundred folders); the rest of the user's
    // inotify watches stay for the folder views and the name index.
    static constexpr qsizetype kMostFolders = 4'000;

    explicit VaultWatcher(QObject* parent = nullptr);
    ~VaultWatcher() override;

    // Watches `folders` (and forgets the ones watched before).
    void watch(const QList<FilePath>& folders);
    void clear();
    qsizetype watchCount() const { return m_inotify.count(); }
    bool isWatching(const FilePath& folder) const { return m_inotify.contains(folder); }

Q_SIGNALS:
    void pathsChanged(const QList<orwick::FilePath>& paths);
    void overflowed();

private:
    bool add(const FilePath& folder);
    void addTree(const FilePath& folder);
    void drain();

    InotifyFolders m_inotify;
};

} // namespace orwick
