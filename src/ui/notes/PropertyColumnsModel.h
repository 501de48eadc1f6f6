#pragma once
// PropertyColumnsModel: a file list's rows with the folder's shown property columns appended
// after the source's own columns — typed cells (text, number, date, checkbox, select and list),
// edited in place and written through FileProperties, each edit one undo step ("Set status").
// Numbers and dates show in the user's locale; the edit role gives the text an editor starts from.
// It sits between a table view and the pane's file-list model; rows are the source's, untouched,
// and a row's file is read from the source's `urlRole` (a FilePath).
//
// Signals: writeFailed(message) follows an edit that could not be written (nothing changed).

#include "notes/FileProperties.h"

#include <QIdentityProxyModel>
#include <functional>
#include <QPointer>

#include <QUndoStack>

namespace orwick {

class PropertyColumnsModel : public QIdentityProxyModel {
    Q_OBJECT
public:
    enum Role {
        PropertyValueRole = Qt::UserRole + 100, // the cell's PropertyValue, invalid when the file has none
        PropertyTypeRole,                       // the column's PropertyType as int
        OptionColorRole,                        // select and list: option → colour index (QVariantMap)
        OptionsRole,                            // select and list: the column's options in order (QStringList)
    };

    PropertyColumnsModel(FileProperties* store, int urlRole, QObject* parent = nullptr);

    // The folder whose shown columns appear; their types come from the folder's settings or the
    // rows' values.
    void setFolder(const FilePath& folder);
    void setUndoStack(QUndoStack* stack) { m_undo = stack; }
    // Roles of the source's first column that property cells answer too (the row's file, its
    // selection and caret, a group heading above it), so that views draw whole rows.
    void setRowRoles(QList<int> roles) { m_rowRoles = std::move(roles); }
    // The folder's items that types are guessed from and options gathered from — all of them,
    // not only the rows a filter lets through. The rows themselves when not given.
    void setFolderItems(std::function<FileItems()> items) { m_folderItems = std::move(items); }

    // The property column at a proxy column, or nothing for the source's own columns.
    const PropertyColumn* propertyColumn(int column) const;
    // The first property column: the source's own columns come before it.
    int firstPropertyColumn() const { return sourceColumns(); }
    const FilePath& folder() const { return m_folder; }

    int columnCount(const QModelIndex& parent = {}) const override;
    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    QModelIndex sibling(int row, int column, const QModelIndex& index) const override;
    QModelIndex mapToSource(const QModelIndex& proxy) const override;
    // A property cell is its own buddy (the source knows nothing of it), so views can edit it.
    QModelIndex buddy(const QModelIndex& index) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

Q_SIGNALS:
    void writeFailed(const QString& message);

private:
    int sourceColumns() const;
    FileItems rowItems() const;
    FileItems folderItems() const { return m_folderItems ? m_folderItems() : rowItems(); }
    FilePath urlAt(int row) const;
    void reloadColumns();
    void refreshCells();

    QPointer<FileProperties> m_store;
    int m_urlRole;
    FilePath m_folder;
    QList<PropertyColumn> m_columns;
    QPointer<QUndoStack> m_undo;
    QList<int> m_rowRoles;
    std::function<FileItems()> m_folderItems;
};

} // namespace orwick
