#pragma once
// SidebarView: draws the sidebar's rows (SidebarModel) — section titles in small dimmed capitals
// with a fold mark, rows with icon, name and dimmed trailing text, a free-space bar under a
// drive, missing folders dimmed — and turns input into requests: a click or Return on a row
// asks for it to be opened (a title folds), the Menu key, Shift+F10 or a right click ask for the
// row's menu, F2 edits a name (here, not the window's Rename of files), Esc asks to give the
// keyboard back, and folders dropped on it are handed on with the row they fell on. A selected
// place stays marked when the keyboard is elsewhere; a section title is marked only while the
// view has the keyboard and its cursor is on it. While a name is edited, the model's rebuilds
// are held back (SidebarModel::holdRebuilds).

#include "base/FilePath.h"

#include <QListView>

namespace orwick {

class SidebarView : public QListView {
    Q_OBJECT
public:
    explicit SidebarView(QWidget* parent = nullptr);
    void setModel(QAbstractItemModel* model) override;
    using QListView::edit;

Q_SIGNALS:
    void rowActivated(int row);
    void menuRequested(int row, const QPoint& globalPosition);
    // Esc, when no name is being edited.
    void leaveRequested();
    // `row` is -1 for a drop below the last row.
    void foldersDropped(const QList<orwick::FilePath>& folders, int row);

protected:
    bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override;
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;
    void editorDestroyed(QObject* editor) override;
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
};

} // namespace orwick
