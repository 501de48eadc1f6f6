#pragma once
// The list view: one row per arranged item with Name, Date Modified, Size and Kind; in the
// Trash also Original Location and Date Deleted, after Name. Draws the pane's selection and
// forwards keys and clicks to the pane; holds no selection of its own.
//
// Column widths follow the font: dates fit the longest date, Size a size, Kind a common kind and
// Original Location a short path. In a narrow pane Kind gives way first (down to its title's
// width, then out of sight), then Date Modified leaves whole, then Original Location (cut, then
// gone) and Date Deleted, until the pane is wider: Name keeps a third of the width and Size and
// dates are never cut. Once the user drags a column's edge, the widths are theirs and the view
// leaves them alone.

#include "ui/views/FileListModel.h"

#include <QHash>
#include <QSet>
#include <QTreeView>

namespace orwick {

class FileListView : public QTreeView {
    Q_OBJECT
public:
    FileListView(FileListModel* model, QWidget* parent = nullptr);

    // Brings the cursor's row into view and redraws the selection.
    void followSelection();
    // Keeps Date Modified, Size or Kind out of sight whatever the room (a notes table whose folder
    // hides it), or lets it show again when there is room.
    void leaveOut(int column, bool leftOut);
    // The header's arrow shows the pane's sort key, unless the rows are sorted by something the
    // key doesn't name (a property the notes table sorts by): then it is on `column`, or on no
    // column (-1) in a view that doesn't show that property. Nothing: back to the pane's key.
    void setOutsideSort(std::optional<int> column, Qt::SortOrder order = Qt::AscendingOrder);

protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    // The Trash's columns stand after Name (they are the model's last).
    void placeTrashColumns();
    void fitColumns();
    void showSortIndicator();

    FileListModel* m_model;
    bool m_fitting = false;
    bool m_userSized = false;
    QHash<int, int> m_trashWidths; // the Trash's columns as the user sized them, while they're away
    QSet<int> m_leftOut; // see leaveOut()
    bool m_showsTrash = false; // the Trash's columns belong: the pane shows the Trash
    bool m_vimPendingG = false;
    std::optional<int> m_outsideSortColumn; // see setOutsideSort()
    Qt::SortOrder m_outsideSortOrder = Qt::AscendingOrder;
};

} // namespace orwick
