#include "ui/views/ViewInput.h"

#include "ui/views/FileListModel.h"
#include "ui/views/FileTableView.h"

#include <QAbstractItemView>
#include <QAbstractProxyModel>
#include <QMouseEvent>

namespace orwick {

namespace {

// What a view last drew of its pane's caret and selection. A caret move then redraws the rows
// whose marks changed, not the whole viewport: a screenful of rows whose every cell lays its
// text out again cost milliseconds on each key.
struct DrawnMarks {
    std::optional<FilePath> cursor;
    QSet<FilePath> selection;
};
constexpr char kDrawnMarks[] = "orwickDrawnMarks";
// Past this many changed rows one redraw of the viewport is as cheap.
constexpr qsizetype kRowsRedrawnAlone = 32;

void redrawMarks(QAbstractItemView* view, const QAbstractItemModel* shown, const PaneState* pane)
{
    const QVariant before = view->property(kDrawnMarks);
    DrawnMarks now;
    if (pane)
        now = {pane->cursor(), pane->selection()};
    view->setProperty(kDrawnMarks, QVariant::fromValue(now));
    const DrawnMarks was = before.value<DrawnMarks>();
    if (!pane || !before.isValid() || was.selection.size() + now.selection.size() > kRowsRedrawnAlone) {
        view->viewport()->update();
        return;
    }
    QSet<FilePath> changed = was.selection; // the rows selected before or now, not both
    for (const FilePath& url : now.selection)
        if (!changed.remove(url))
            changed.insert(url);
    for (const std::optional<FilePath>& caret : {was.cursor, now.cursor})
        if (caret)
            changed.insert(*caret);
    for (const FilePath& url : changed) {
        const int row = pane->row(url);
        if (row < 0 || row >= shown->rowCount())
            continue;
        QRect band = view->visualRect(shown->index(row, 0));
        band.setLeft(0);
        band.setRight(view->viewport()->width());
        view->viewport()->update(band);
    }
}

} // namespace

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
    redrawMarks(view, shown, pane);
}

int pageRowsOf(const QAbstractItemView* view, int rowsPerLine)
{
    const int rowHeight = std::max(1, view->sizeHintForRow(0));
    return std::max(1, view->viewport()->height() / rowHeight - 1) * std::max(1, rowsPerLine);
}

} // namespace orwick
