#pragma once
// One pane on screen: path bar, the view of its items (or the empty/error text, or the drives),
// and the status line. Forwards input to the PaneState; draws what it says. The list is made
// with the pane; the other views are made the first time the pane shows them (most panes
// never do), which keeps a window of many panes quick to open.

#include "state/PaneState.h"

#include <QWidget>

class QAbstractItemView;
class QLabel;
class QStackedWidget;

namespace orwick {

class ColumnsView;
class DrivesView;
class FileGridView;
class FileListModel;
class FileListView;
class FileTableView;
class FilterBar;
class PathBar;
class SearchBar;
class StatusLine;

class PaneWidget : public QWidget {
    Q_OBJECT
public:
    explicit PaneWidget(PaneState* pane, QWidget* parent = nullptr);

    PaneState* pane() const { return m_pane; }
    FileListModel* model() const { return m_model; }
    FileListView* listView() const { return m_listView; }
    // The table, made when first asked for (most panes are never shown as a table): see
    // tableViewMade.
    FileTableView* tableView();
    bool hasTableView() const { return m_tableView != nullptr; }
    // The grid and the columns, each made when first asked for.
    FileGridView* gridView();
    ColumnsView* columnsView();
    FilterBar* filterBar() const { return m_filterBar; }
    SearchBar* searchBar() const { return m_searchBar; }
    // The view of the pane's view mode (list, table, grid or columns).
    QWidget* itemsView();
    StatusLine* statusLine() const { return m_statusLine; }
    // The widget that takes the keyboard for this pane now.
    QWidget* focusTarget() const;
    void takeFocus();
    // Marks this pane as the one commands act on (shown only while the tab is split).
    void setActive(bool active);

Q_SIGNALS:
    void messageRequested(const QString& message);
    void activated(); // the pane got the keyboard or a click
    // The table view was made, for what decorates it.
    void tableViewMade(orwick::FileTableView* view);
    // Files were dropped on one of the pane's views, into `folder` (see ViewDragDrop).
    void filesDropped(const QList<QUrl>& urls, const orwick::FilePath& folder, Qt::KeyboardModifiers modifiers);
    // One of the pane's views wants the context menu at `globalPosition`: a right click, the Menu
    // key or Shift+F10 (see ViewContextMenu). It is for the pane's selection, or for its folder
    // when nothing is selected.
    void contextMenuRequested(const QPoint& globalPosition);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showState();
    void openFiles(const FileItems& files);
    void takeInputOf(QAbstractItemView* view);
    // The drives page, made when This Computer is first shown (most panes never show it).
    DrivesView* drives();

    PaneState* m_pane;
    FileListModel* m_model;
    PathBar* m_pathBar;
    FilterBar* m_filterBar;
    SearchBar* m_searchBar;
    QStackedWidget* m_stack;
    FileListView* m_listView;
    FileTableView* m_tableView = nullptr;
    FileGridView* m_gridView = nullptr;
    ColumnsView* m_columnsView = nullptr;
    QLabel* m_message;
    DrivesView* m_drives = nullptr;
    StatusLine* m_statusLine;
    QWidget* m_activeMark;
};

} // namespace orwick
