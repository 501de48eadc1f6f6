#include "ui/views/FileTableView.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyle>

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

QRect FileTableView::checkBoxRect(const QModelIndex& index) const
{
    if (!index.isValid() || !(index.flags() & Qt::ItemIsUserCheckable))
        return {};
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    option.rect = visualRect(index);
    option.features |= QStyleOptionViewItem::HasCheckIndicator;
    option.checkState = Qt::CheckState(index.data(Qt::CheckStateRole).toInt());
    // A little slack around the box, so that a near miss still counts.
    return style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, this).adjusted(-3, -3, 3, 3);
}

void FileTableView::mousePressEvent(QMouseEvent* event)
{
    const QModelIndex index = indexAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && !(event->modifiers() & (Qt::ControlModifier | Qt::ShiftModifier))
        && checkBoxRect(index).contains(event->position().toPoint())) {
        setFocus(Qt::MouseFocusReason);
        const bool checked = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
        model()->setData(index, checked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
        event->accept();
        return;
    }
    FileListView::mousePressEvent(event);
}

void FileTableView::mouseDoubleClickEvent(QMouseEvent* event)
{
    const QModelIndex index = indexAt(event->position().toPoint());
    // The second click on a checkbox's box neither opens the row nor toggles it back.
    if (checkBoxRect(index).contains(event->position().toPoint())) {
        event->accept();
        return;
    }
    if (event->button() == Qt::LeftButton && index.isValid() && (index.flags() & Qt::ItemIsEditable)) {
        edit(index, QAbstractItemView::AllEditTriggers, event);
        return;
    }
    FileListView::mouseDoubleClickEvent(event);
}

bool FileTableView::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_F2 && key->modifiers() == Qt::NoModifier && (currentIndex().flags() & Qt::ItemIsEditable)) {
            event->accept();
            return true;
        }
    }
    return FileListView::event(event);
}

} // namespace orwick
