#pragma once
// PreviewTableModel: the rows of a CSV table or an archive's entries as a read-only model, so
// the view draws only what is on screen (no item object per cell).

#include <QAbstractTableModel>
#include <QStringList>

namespace orwick {

class PreviewTableModel : public QAbstractTableModel {
    Q_OBJECT
public:
    using QAbstractTableModel::QAbstractTableModel;

    void setRows(QStringList header, QList<QStringList> rows);

    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : int(m_rows.size()); }
    int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : m_columns; }
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QStringList m_header;
    QList<QStringList> m_rows;
    int m_columns = 0;
};

} // namespace orwick
