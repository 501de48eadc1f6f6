#include "ui/views/FileListView.h"

#include "ui/pane/PaneKeys.h"
#include "ui/views/RowDelegate.h"
#include "ui/views/ViewInput.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>

namespace orwick {

FileListView::FileListView(FileListModel* model, QWidget* parent) : QTreeView(parent), m_model(model)
{
    setModel(model);
    setItemDelegate(new RowDelegate(this));
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setItemsExpandable(false);
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setFrameShape(QFrame::NoFrame);
    setIconSize(QSize(18, 18));
    // The pane's cursor is drawn by the delegate; the view's own focus frame would be a second one.
    setAllColumnsShowFocus(false);
    setTextElideMode(Qt::ElideMiddle);

    QHeaderView* head = header();
    head->setStretchLastSection(false);
    head->setSectionResizeMode(FileListModel::NameColumn, QHeaderView::Stretch);
    head->setSectionResizeMode(FileListModel::ModifiedColumn, QHeaderView::Interactive);
    head->setSectionResizeMode(FileListModel::SizeColumn, QHeaderView::Interactive);
    head->setSectionResizeMode(FileListModel::KindColumn, QHeaderView::Interactive);
    head->resizeSection(FileListModel::ModifiedColumn, 170);
    head->resizeSection(FileListModel::SizeColumn, 90);
    head->resizeSection(FileListModel::KindColumn, 170);
    head->setSectionsClickable(true);
    head->setSortIndicatorShown(true);
    head->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);

    PaneState* pane = model->pane();
    auto showSortIndicator = [this, pane] {
        header()->setSortIndicator(FileListModel::columnFor(pane->sortKey()),
                                   pane->sortAscending() ? Qt::AscendingOrder : Qt::DescendingOrder);
    };
    showSortIndicator();
    connect(pane, &PaneState::arrangementOptionsChanged, this, showSortIndicator);
    connect(head, &QHeaderView::sectionClicked, this, [pane, showSortIndicator](int column) {
        if (const auto key = FileListModel::sortKeyFor(column))
            pane->sort(*key);
        showSortIndicator();
    });
    // Day headings make some rows taller; rows are uniform otherwise (fast with many items).
    auto followGrouping = [this, pane] { setUniformRowHeights(!pane->groupByDate()); };
    followGrouping();
    connect(pane, &PaneState::arrangementOptionsChanged, this, followGrouping);
    connect(pane, &PaneState::selectionChanged, this, &FileListView::followSelection);
    connect(pane, &PaneState::itemsChanged, this, &FileListView::followSelection);
}

void FileListView::followSelection()
{
    followCursor(this, this);
}

void FileListView::keyPressEvent(QKeyEvent* event)
{
    PaneKeyContext context;
    context.pageRows = pageRowsOf(this);
    context.vimPendingG = &m_vimPendingG;
    if (handlePaneKey(*m_model->pane(), event, context)) {
        event->accept();
        return;
    }
    QTreeView::keyPressEvent(event);
}

void FileListView::mousePressEvent(QMouseEvent* event) { pressOnView(this, *m_model->pane(), event); }

void FileListView::mouseDoubleClickEvent(QMouseEvent* event) { doubleClickOnView(this, *m_model->pane(), event); }

void FileListView::focusInEvent(QFocusEvent* event)
{
    QTreeView::focusInEvent(event);
    viewport()->update();
}

void FileListView::focusOutEvent(QFocusEvent* event)
{
    QTreeView::focusOutEvent(event);
    viewport()->update();
}

void FileListView::showEvent(QShowEvent* event)
{
    QTreeView::showEvent(event);
    followSelection();
}

} // namespace orwick
