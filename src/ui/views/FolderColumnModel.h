#pragma once
// One side column of the columns view: a folder's items (an ancestor of the pane's folder, or
// the folder under the cursor), loaded and arranged in the background with the pane's sort. The
// item on the way to the pane's folder is marked as selected. Read-only; the pane's own folder
// is shown through the pane's FileListModel instead. Rows carry their colour tags' dots
// (TagColorsRole) from FinderTags, which reads the folder's tags after the load.
//
// Signals: loaded() follows the one load this model makes, when its rows are in.

#include "files/Arrangement.h"

#include <QAbstractListModel>

namespace orwick {

class FolderColumnModel : public QAbstractListModel {
    Q_OBJECT
public:
    struct Options {
        SortKey sortKey = SortKey::name;
        bool ascending = true;
        bool showHidden = false;
    };
    FolderColumnModel(const FilePath& folder, const FilePath& marked, Options options, QObject* parent = nullptr);

    const FilePath& folder() const { return m_folder; }
    const FileItem* itemAt(int row) const;
    int markedRow() const;
    const std::optional<QString>& error() const { return m_error; }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

Q_SIGNALS:
    void loaded();

private:
    FilePath m_folder;
    FilePath m_marked;
    FileItems m_items;
    std::optional<QString> m_error;
};

} // namespace orwick
