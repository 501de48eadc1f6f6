#include "ui/views/ViewInput.h"

#include "ui/views/FileListModel.h"
#include "ui/views/FileTableView.h"

#include <QAbstractItemView>
#include <QAbstractProxyModel>
#include <QMouseEvent>

namespace orwick {

void pressOnView(QAbstractItemView* view, PaneState& pane, QMouseEvent* event)
{
    view->setFocus(Qt::MouseFocusReason);
    const QModelIndex index = view->indexAt(event->position().toPoint());
    if (!index.isValid()) {
        // A right click there too: its menu is then the folder's (New Folder, Paste…).
        if ((event->button() == Qt::LeftButton || event->button() == Qt::RightButton)
            && !(event->modifiers() & (Qt::ControlModifier | Qt::ShiftModifier)))
            pane.clearSelection();
        return;
    }
    const FilePath url = index.data(FileListModel::UrlRole).value<FilePath>();
    // A right click on an unselected row selects it first, like every file manager.
    if (event->button() == Qt::RightButton && pane.selection().contains(url))
        return;
    pane.click(url, event->modifiers());
}

void doubleClickOnView(QAbstractItemView* view, PaneState& pane, QMouseEvent* event)
{
    const QModelIndex index = view->indexAt(event->position().toPoint());
    if (index.isValid() && event->button() == Qt::LeftButton)
        pane.openSelection();
}

void followCursor(QAbstractItemView* view, const QWidget* visibleOwner)
{
    if (!visibleOwner->isVisible())
        return;
    // The view may show the list through proxies that keep its rows (property columns).
    const QAbstractItemModel* shown = view->model();
    const QAbstractItemModel* source = shown;
    while (const auto* proxy = qobject_cast<const QAbstractProxyModel*>(source))
        source = proxy->sourceModel();
    const auto* model = qobject_cast<const FileListModel*>(source);
    PaneState* pane = model ? model->pane() : nullptr;
    if (pane && pane->cursor()) {
        const int row = pane->row(*pane->cursor());
        if (row >= 0 && row < shown->rowCount()) {
            // The view's current row is the pane's cursor, so that nothing of the view's own
            // (a focus frame, what focus-in picks) sits on another row. The table keeps its column.
            // The table keeps the cursor's column even when its rows were read again.
            const QModelIndex current = view->currentIndex();
            const auto* table = qobject_cast<const FileTableView*>(view);
            const int column = table ? table->cursorColumn() : current.isValid() ? current.column() : int(FileListModel::NameColumn);
            QModelIndex target = shown->index(row, column);
            if (!target.isValid())
                target = shown->index(row, FileListModel::NameColumn);
            if (view->selectionModel() && current.row() != row)
                view->selectionModel()->setCurrentIndex(target, QItemSelectionModel::NoUpdate);
            view->scrollTo(shown->index(row, FileListModel::NameColumn), QAbstractItemView::EnsureVisible);
        }
    }
    view->viewport()->update();
}

int pageRowsOf(const QAbstractItemView* view, int rowsPerLine)
{
    const int rowHeight = std::max(1, view->sizeHintForRow(0));
    return std::max(1, view->viewport()->height() / rowHeight - 1) * std::max(1, rowsPerLine);
}

} // namespace orwick
