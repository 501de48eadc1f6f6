#pragma once
// FileListModel: the pane's arranged items as rows, for every view. Replaced in one reset per
// arrangement (never a signal per item); text and icons are made only for the rows a view asks
// for, so only what is visible costs anything. Selection and cursor are read from the pane.

#include "state/PaneState.h"

#include <QAbstractTableModel>
#include <QPointer>

namespace orwick {

class FileListModel : public QAbstractTableModel {
    Q_OBJECT
public:
    // The last two are the Trash's own (where each item was deleted from, and when); views show
    // them only while the pane shows the Trash.
    enum Column { NameColumn, ModifiedColumn, SizeColumn, KindColumn, OriginalLocationColumn, DeletedColumn, ColumnCount };
    enum Role { UrlRole = Qt::UserRole + 1, SelectedRole, CursorRole, CategoryRole, IsFolderRole, HiddenRole,
                HeadingRole /* a group heading starting at this row: QVariant of orwick::Heading, else invalid */,
                LocationRole /* in a listing of items from many folders (search, tag, recents): the item's folder, else invalid */ };

    explicit FileListModel(PaneState* pane, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    PaneState* pane() const { return m_pane; }
    const FileItem* itemAt(int row) const;
    // The column a sort key is shown in, and back.
    static int columnFor(SortKey key);
    static std::optional<SortKey> sortKeyFor(int column);
    static bool isTrashColumn(int column) { return column == OriginalLocationColumn || column == DeletedColumn; }
    // The title of a column (also what a view measures to fit it).
    static QString columnTitle(int column);

    // A decoration provider views and other subsystems can add to (git badges, properties):
    // extra data per row and role, looked up by path.
    using Decorator = std::function<QVariant(const FileItem&, int column, int role)>;
    void addDecorator(Decorator decorator);
    // Re-reads every row's data without a reset (after a decorator's source changed).
    void refreshDecorations();

private:
    QString sizeText(const FileItem& item) const; // a file's size, a measured folder's, or "—"
    bool showsLocations() const; // rows come from many folders, so each names its own
    QPointer<PaneState> m_pane;
    QList<Decorator> m_decorators;
    Timestamp m_now = 0;
};

} // namespace orwick
