#pragma once
// BatchRenameModel: the rows of the batch rename preview — one per item, its old name, its new
// name and its problem — over a rule that changes with every keystroke.
//
// A row that is drawn asks for its new name then and there (quickEntry: the rule on that one
// name), so a keystroke costs only the rows on screen, whatever the size of the batch. The
// whole preview (two items ending with one name, names taken on disk, the counts) is worked out
// on a background task; previewChanged() follows each one that arrives for the current rule,
// and until then isPending() is true and preview() is the one before. After a commit, rows that
// failed carry the engine's reason instead of their preview problem.

#include "async/Background.h"
#include "rename/RenamePreview.h"

#include <QAbstractListModel>
#include <QHash>
#include <memory>

namespace orwick {

class BatchRenameModel : public QAbstractListModel {
    Q_OBJECT
public:
    enum Role { newNameRole = Qt::UserRole + 1, problemRole, changesRole };

    BatchRenameModel(const QList<FilePath>& items, QObject* parent = nullptr);
    ~BatchRenameModel() override;

    const QList<FilePath>& items() const { return m_items; }
    void setRule(const BatchRename& rule);
    const BatchRenamer& renamer() const { return *m_renamer; }

    bool isPending() const { return m_pending; }
    const RenamePreview& preview() const { return m_preview; }
    // The engine's reasons for the rows a commit could not rename.
    void setFailures(const QHash<FilePath, QString>& failures);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

Q_SIGNALS:
    void previewChanged();

private:
    const BatchRenameEntry& entry(int row) const;

    QList<FilePath> m_items;
    std::shared_ptr<const BatchRenamer> m_renamer;
    RenamePreview m_preview;        // of the current rule once !m_pending
    bool m_pending = false;
    mutable QHash<int, BatchRenameEntry> m_quick; // rows drawn before the preview came
    QHash<FilePath, QString> m_failures;
    TaskSlot m_task;
};

} // namespace orwick
