#include "ui/preview/PreviewTableModel.h"

namespace orwick {

void PreviewTableModel::setRows(QStringList header, QList<QStringList> rows)
{
    beginResetModel();
    m_header = std::move(header);
    m_rows = std::move(rows);
    m_columns = int(m_header.size());
    for (const QStringList& row : std::as_const(m_rows))
        m_columns = std::max(m_columns, int(row.size()));
    endResetModel();
}

QVariant PreviewTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return {};
    const QStringList& row = m_rows.at(index.row());
    if (index.column() >= row.size())
        return {};
    const QString& cell = row.at(index.column());
    if (role == Qt::ToolTipRole)
        return cell.size() > 40 || cell.contains(u'\n') ? QVariant(cell) : QVariant();
    // One line per cell in the table; the whole text is in the tooltip.
    return cell.size() > 200 || cell.contains(u'\n') ? QString(cell.left(200)).replace(u'\n', u' ') : cell;
}

QVariant PreviewTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Vertical)
        return section + 1;
    return section < m_header.size() ? m_header.at(section) : QString();
}

} // namespace orwick
