#pragma once
// The grid view: one tile per arranged item, an icon or a picture's thumbnail over its name.
// Tiles flow left to right; the view tells the pane how many fit in a row (gridColumns) so that
// Up and Down move a whole row, Left and Right one tile. The tile size is the pane's iconSize
// (the Bigger Icons and Smaller Icons commands change it).
// Thumbnails are made in the background and drawn when they arrive; scrolling never waits.

#include "ui/views/FileListModel.h"

#include <QListView>

namespace orwick {

class Thumbnails;

class FileGridView : public QListView {
    Q_OBJECT
public:
    FileGridView(FileListModel* model, QWidget* parent = nullptr);

    int tileSize() const { return m_tileSize; }

    void followSelection();

protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void followTileSize();
    void updateColumns();

    FileListModel* m_model;
    Thumbnails* m_thumbnails;
    int m_tileSize = 0;
    bool m_vimPendingG = false;
};

} // namespace orwick
