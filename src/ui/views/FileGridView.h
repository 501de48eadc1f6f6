#pragma once
// The grid view: one tile per arranged item, an icon or a picture's thumbnail over its name.
// Tiles flow left to right; the view tells the pane how many fit in a row (gridColumns) so that
// Up and Down move a whole row, Left and Right one tile. Ctrl+= and Ctrl+- change the tile size.
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
    void setTileSize(int edge);
    static constexpr int kMinTile = 64;
    static constexpr int kMaxTile = 256;
    static constexpr int kDefaultTile = 112;

    void followSelection();

protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void updateColumns();

    FileListModel* m_model;
    Thumbnails* m_thumbnails;
    int m_tileSize = kDefaultTile;
    bool m_vimPendingG = false;
};

} // namespace orwick
