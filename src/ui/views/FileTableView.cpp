#include "ui/views/FileTableView.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <QStyle>

namespace orwick {

FileTableView::FileTableView(FileListModel* model, QWidget* parent) : FileListView(model, parent), m_pane(model->pane())
{
    setAlternatingRowColors(true);
    setTextElideMode(Qt::ElideRight);
    QHeaderView* head = header();
    head->setSectionsMovable(true);
    head->setFirstSectionMovable(false);
    head->setStretchLastSection(true);
    layoutColumns();
    connect(m_pane, &PaneState::selectionChanged, this, &FileTableView::followCursorRow);
    connect(m_pane, &PaneState::itemsChanged, this, &FileTableView::followCursorRow);
}

void FileTableView::followCursorRow()
{
    if (!model() || !m_pane->cursor())
        return;
    const int row = m_pane->row(*m_pane->cursor());
    QModelIndex cell = model()->index(row, m_column);
    if (!cell.isValid())
        cell = model()->index(row, FileListModel::NameColumn);
    if (cell.isValid() && cell != currentIndex())
        selectionModel()->setCurrentIndex(cell, QItemSelectionModel::NoUpdate);
}

void FileTableView::currentChanged(const QModelIndex& current, const QModelIndex& previous)
{
    FileListView::currentChanged(current, previous);
    if (current.isValid())
        m_column = current.column();
}

int FileTableView::neighbourColumn(int column, int step) const
{
    const QHeaderView* head = header();
    for (int visual = head->visualIndex(column) + step; visual >= 0 && visual < head->count(); visual += step)
        if (const int logical = head->logicalIndex(visual); !head->isSectionHidden(logical))
            return logical;
    return column;
}

void FileTableView::keyPressEvent(QKeyEvent* event)
{
    const QModelIndex current = currentIndex();
    const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (plain && event->key() == Qt::Key_Space && (current.flags() & Qt::ItemIsUserCheckable) && (current.flags() & Qt::ItemIsEnabled)) {
        const bool checked = current.data(Qt::CheckStateRole).toInt() == Qt::Checked;
        model()->setData(current, checked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
        event->accept();
        return;
    }
    if (plain && (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right) && current.isValid()) {
        const int step = (event->key() == Qt::Key_Right) == (layoutDirection() == Qt::LeftToRight) ? 1 : -1;
        const QModelIndex next = current.siblingAtColumn(neighbourColumn(current.column(), step));
        selectionModel()->setCurrentIndex(next, QItemSelectionModel::NoUpdate);
        scrollTo(next);
        event->accept();
        return;
    }
    FileListView::keyPressEvent(event);
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
        head->resizeSection(FileListModel::OriginalLocationColumn, 220);
        head->resizeSection(FileListModel::DeletedColumn, 170);
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
        selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
        const bool checked = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
        model()->setData(index, checked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
        event->accept();
        return;
    }
    // The clicked cell becomes the current one, so that the keys act on its column: its column
    // is the cursor's before the pane moves the cursor, so the row's cell is put there at once
    // rather than in the old column (whose bringing into view shifted the table sideways).
    // The cell is where the user pointed: the table doesn't move under the mouse.
    const int across = horizontalScrollBar()->value();
    const bool toCell = index.isValid() && event->button() == Qt::LeftButton;
    if (toCell)
        m_column = index.column();
    FileListView::mousePressEvent(event);
    if (toCell)
        selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    horizontalScrollBar()->setValue(across);
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
