#pragma once
// The columns view (Miller columns): one column per folder level from the root to the pane's
// folder, then a column with the folder under the cursor. The pane's own folder is the column
// with the keyboard; Left goes out to the enclosing folder, Right into the folder under the
// cursor, and the view stays in columns while moving (the pane keeps the mode). A click in
// another column goes to that folder, or reveals the file there. The side columns are made only
// while the view is shown.

#include "ui/views/FileListModel.h"

#include <QListView>
#include <QScrollArea>
#include <QTimer>

class QHBoxLayout;

namespace orwick {

class FolderColumnModel;

class ColumnsView : public QScrollArea {
    Q_OBJECT
public:
    ColumnsView(FileListModel* model, QWidget* parent = nullptr);

    // The column of the pane's folder: it takes the keyboard.
    QListView* currentColumn() const { return m_current; }
    void followSelection();
    static constexpr int kColumnWidth = 240;

protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

private:
    void rebuild();
    void updateNextColumn();
    QListView* makeSideColumn(FolderColumnModel* model);
    void layoutColumns();
    // Scrolls so that the pane's column, and the one after it, are in sight.
    void keepInSight();

    FileListModel* m_model;
    QWidget* m_row;
    QHBoxLayout* m_layout;
    QList<QListView*> m_ancestors;
    QListView* m_current;
    QListView* m_next = nullptr;
    FilePath m_nextFolder;
    QTimer m_nextDelay;
    bool m_stale = true; // the side columns wait for the view to be shown
};

} // namespace orwick
