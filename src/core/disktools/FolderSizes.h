#pragma once
// FolderSizes: the sizes of one shown folder's sub-folders, measured on demand ("Calculate
// Folder Sizes") with the space walk — allocated bytes, links never followed, other mounted file
// systems never entered — on a background task that walks sub-folders side by side.
//
// The sizes belong to the folder they were measured in; clear() (when the pane leaves it)
// cancels the walk and forgets them. Results come back in batches at most ten times a second:
// changed() follows every batch and every clear(); finished() follows the last batch of a walk
// that was not cancelled. A sub-folder that can't be read has no size — it is not "empty" — and
// isUnreadable() says so once its turn has come. Lives on the GUI thread.

#include "async/Background.h"
#include "base/FilePath.h"

#include <QHash>
#include <QObject>
#include <QSet>
#include <memory>
#include <optional>

namespace orwick {

class FolderSizes : public QObject {
    Q_OBJECT
public:
    using Sizes = QHash<FilePath, qint64>;

    explicit FolderSizes(QObject* parent = nullptr);

    // Measures each of `subfolders` of `folder`; starting again cancels the walk before and
    // forgets sizes measured in another folder.
    void measure(const FilePath& folder, const QList<FilePath>& subfolders);
    void clear();

    const FilePath& folder() const { return m_folder; }
    std::optional<qint64> size(const FilePath& url) const;
    bool isPending(const FilePath& url) const { return m_pending.contains(url); }
    // True when the folder itself could not be opened, so its size is not known.
    bool isUnreadable(const FilePath& url) const { return m_unreadable.contains(url); }
    bool isMeasuring() const { return m_task.isRunning(); }
    bool isEmpty() const { return m_sizes->isEmpty() && m_pending.isEmpty() && m_unreadable.isEmpty(); }
    // The sizes so far, as a value other threads may read (an arrangement sorts by it).
    std::shared_ptr<const Sizes> snapshot() const { return m_sizes; }

Q_SIGNALS:
    void changed();
    void finished();

private:
    void apply(quint64 generation, const std::vector<std::pair<FilePath, qint64>>& batch, bool last);

    FilePath m_folder;
    std::shared_ptr<const Sizes> m_sizes = std::make_shared<const Sizes>();
    QSet<FilePath> m_pending;
    QSet<FilePath> m_unreadable;
    TaskSlot m_task;
    quint64 m_generation = 0;
};

} // namespace orwick
