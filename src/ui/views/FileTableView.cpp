#include "ui/views/FileTableView.h"

#include <QHeaderView>
#include <QMouseEvent>

namespace orwick {

FileTableView::FileTableView(FileListModel* model, QWidget* parent) : FileListView(model, parent)
{
    setAlternatingRowColors(true);
    setTextElideMode(Qt::ElideRight);
    QHeaderView* head = header();
    head->setSectionsMovable(true);
    head->setFirstSectionMovable(false);
    head->setStretchLastSection(true);
    layoutColumns();
}

void FileTableView::showModel(QAbstractItemModel* model)
{
    const int sortColumn = header()->sortIndicatorSection();
    const Qt::SortOrder sortOrder = header()->sortIndicatorOrder();
    setModel(model);
    m_laidOut = 0;
    layoutColumns();
    header()->setSortIndicator(sortColumn, sortOrder);
    // Columns that join later (a folder's property columns) get the same treatment.
    connect(model, &QAbstractItemModel::columnsInserted, this, &FileTableView::layoutColumns, Qt::UniqueConnection);
    connect(model, &QAbstractItemModel::modelReset, this, &FileTableView::layoutColumns, Qt::UniqueConnection);
    connect(model, &QAbstractItemModel::layoutChanged, this, &FileTableView::layoutColumns, Qt::UniqueConnection);
}

void FileTableView::layoutColumns()
{
    QHeaderView* head = header();
    for (int column = 0; column < head->count(); ++column)
        head->setSectionResizeMode(column, QHeaderView::Interactive);
    if (head->count() < FileListModel::ColumnCount)
        return;
    // Widths are set once per column: what the user resized stays.
    if (m_laidOut < FileListModel::ColumnCount) {
        head->resizeSection(FileListModel::NameColumn, 320);
        head->resizeSection(FileListModel::ModifiedColumn, 170);
        head->resizeSection(FileListModel::SizeColumn, 90);
        head->resizeSection(FileListModel::KindColumn, 170);
        m_laidOut = FileListModel::ColumnCount;
    }
    for (int column = std::min(m_laidOut, head->count()); column < head->count(); ++column)
        head->resizeSection(column, 140);
    m_laidOut = head->count();
}

void FileTableView::mouseDoubleClickEvent(QMouseEvent* event)
{
    const QModelIndex index = indexAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && index.isValid() && (index.flags() & Qt::ItemIsEditable)) {
        edit(index, QAbstractItemView::AllEditTriggers, event);
        return;
    }
    FileListView::mouseDoubleClickEvent(event);
}

} // namespace orwick
