#pragma once
// Where a pane's view asks for the context menu: one watcher per view, the same for the list, the
// table, the grid and the columns, so each of them opens the same menu the same ways.
//
// - A right click asks at the pointer. The press before it has already made the selection the
//   menu is for (pressOnView): an unselected row becomes the selection, empty space clears it,
//   so the menu is the folder's (New Folder, New File, Paste…).
// - The Menu key and Shift+F10 ask at the cursor's row (brought into sight first), or at the
//   view's top left when the pane has no cursor row. The window system's own keyboard context
//   event (X11 sends one beside the Menu key's press) is dropped so the menu opens once.
//
// The watcher only says where; the window builds the menu for the pane's selection. Headers are
// widgets of their own: a right click on the table's header never reaches the watcher.

#include "state/PaneState.h"

#include <QObject>
#include <QPoint>

class QAbstractItemView;
class QKeyEvent;

namespace orwick {

class ViewContextMenu : public QObject {
    Q_OBJECT
public:
    // Watches `view` (a view of `pane`'s items); owned by the view.
    ViewContextMenu(QAbstractItemView* view, PaneState* pane);

    // Menu, or Shift+F10.
    static bool isMenuKey(const QKeyEvent* event);

Q_SIGNALS:
    // The view wants the context menu at `globalPosition`, for the pane's selection (its folder
    // when nothing is selected).
    void requested(const QPoint& globalPosition);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // Where the keyboard's menu opens: beside the cursor's row, in global coordinates.
    QPoint cursorRowPoint() const;

    QAbstractItemView* m_view;
    PaneState* m_pane;
};

} // namespace orwick
