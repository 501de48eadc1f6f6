#pragma once
// ViewDragDrop: drag and drop for one view of a pane — the list, the table, the grid, the
// columns' current column, or the label an empty folder shows — in one place, so that every view
// drags and takes drops alike. It watches the view's surface (its viewport) and forwards; it
// never touches a file.
//
// Dragging: a drag from a row carries the pane's selection (or the row alone when it is not
// selected) as the file clipboard's data (`text/uri-list` and the GNOME and KDE formats), so
// other programs take it too; rows of the Trash listing are not dragged (Put Back returns them,
// keeping the Trash's records right). A plain press on a row of a selection of several keeps the
// selection, so that it can be dragged whole; without a drag, the release selects the row.
//
// Dropping: a folder row under the pointer takes the drop (and is highlighted while hovered),
// except a row that is itself being dragged; elsewhere the folder the pane shows does (the view
// is framed). Listings that are not folders (Trash, recents, search results) take no drops. The
// pointer shows what the drop will do (DropPlan); a drop that would do nothing is not offered,
// and a refused one is handed on so that its reason can be shown. dropped() is emitted once per
// accepted drop, with the URIs as written, the target folder and the keys held. A drag held
// near the top or bottom edge scrolls the rows.

#include "fileops/DropPlan.h"
#include "state/PaneState.h"

#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QRect>
#include <QSet>
#include <QTimer>
#include <QUrl>
#include <optional>

class QAbstractItemView;
class QDropEvent;
class QMimeData;
class QMouseEvent;
class QWidget;

namespace orwick {

class DropHighlight;

class ViewDragDrop : public QObject {
    Q_OBJECT
public:
    // Drags and drops on `view` (its viewport) for `pane`. Parented to the view.
    ViewDragDrop(QAbstractItemView* view, PaneState* pane);
    // Drops only (no rows): on a widget shown instead of the rows, such as an empty folder's text.
    ViewDragDrop(QWidget* surface, PaneState* pane);

    // The folder a drop at `position` (in the surface's coordinates) goes into, and whether it
    // is a row's; none where nothing takes drops.
    struct Target {
        FilePath folder;
        std::optional<QRect> row; // the hovered row's rectangle, for a folder row
    };
    std::optional<Target> targetAt(const QPoint& position) const;

    // What a drag out of `items` carries (the file clipboard's data).
    static std::unique_ptr<QMimeData> dragData(const QList<FilePath>& items);

Q_SIGNALS:
    void dropped(const QList<QUrl>& urls, const orwick::FilePath& folder, Qt::KeyboardModifiers modifiers);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool pressed(QMouseEvent* event);
    bool moved(QMouseEvent* event);
    bool released(QMouseEvent* event);
    void startDrag();
    // Enter and move: offers the action the drop would take, or refuses the drag.
    void hover(QDropEvent* event);
    void drop(QDropEvent* event);
    void clearHighlight();
    // Scrolls while a drag hovers near the top or bottom edge, so every row can be reached.
    void scrollNearEdge();
    QList<FilePath> dragItems() const;

    QPointer<QAbstractItemView> m_view; // absent for a surface without rows
    QWidget* m_surface;
    QPointer<PaneState> m_pane;
    DropHighlight* m_highlight;
    // The press that may become a drag.
    std::optional<QPoint> m_pressAt;
    std::optional<FilePath> m_pressedRow;
    bool m_selectOnRelease = false; // a plain press on a selected row: select it alone unless dragged
    QTimer m_edgeScroll;
    QPoint m_hoverAt;
    // The plan of the drag hovering now, for the folder and keys it was made for.
    std::optional<DropPlan> m_hoverPlan;
    Qt::KeyboardModifiers m_hoverModifiers;
};

} // namespace orwick
