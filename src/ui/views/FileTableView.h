#pragma once
// The table view: the list's rows as a table — every column resizable and movable, alternating
// row shading, a sortable header (a click sorts, a second click flips). Property columns of
// notes join the model's columns later; the table shows whatever columns the model has.
// The view's current cell is the pane's cursor row in a column of its own: Left and Right move
// it between the shown columns, a click on a cell puts it there, and F2 or Space act on it.

#include "ui/views/FileListView.h"

namespace orwick {

class FileTableView : public FileListView {
    Q_OBJECT
public:
    FileTableView(FileListModel* model, QWidget* parent = nullptr);

    // Shows the rows through `model` (a proxy that keeps the list's rows and adds columns),
    // laying its columns out like the list's own.
    void showModel(QAbstractItemModel* model);

    // Where a checkable cell draws its box (empty for other cells).
    QRect checkBoxRect(const QModelIndex& index) const;
    // The column the cursor's cell is in; it stays when the rows are read again.
    int cursorColumn() const { return m_column; }

protected:
    // A click on a checkable cell's box (a checkbox property) toggles it and leaves the
    // selection alone; elsewhere a click selects as in the list.
    void mousePressEvent(QMouseEvent* event) override;
    // Space on a checkable cell under the cursor toggles it; Left and Right move the cursor's
    // column. Every other key (Space elsewhere too) means what it means in the list.
    void keyPressEvent(QKeyEvent* event) override;
    // A double click on an editable cell (a property) edits it; elsewhere it opens the row.
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    // F2 on an editable cell edits the cell, ahead of the window's Rename shortcut.
    bool event(QEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

private:
    void layoutColumns();
    // Keeps the current cell on the pane's cursor row, in the column it had.
    void followCursorRow();
    // The shown column `step` sections left or right of `column`, in the header's order.
    int neighbourColumn(int column, int step) const;

    PaneState* m_pane;
    int m_column = 0; // the current cell's column, kept while a reload empties the model
    int m_laidOut = 0; // column count the widths were last set for
};

} // namespace orwick
