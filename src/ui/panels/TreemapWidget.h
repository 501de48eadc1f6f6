#pragma once
// TreemapWidget: draws one SpaceNode's children, plus its "Files under 1 MB, together" block,
// as a squarified treemap (Treemap::layout). Tells the panel what the pointer is over, which
// block was clicked and which block's menu was asked for. Colours come from the theme by the
// block's file category, each block shaded as a cushion (light at its top left, deeper at its
// bottom right) so that neighbours of one colour stay apart; a legend under the map names the
// categories shown, largest first.
//
// By keyboard: one block is the current one (the largest at first, framed in the theme's cursor
// ring and named as if hovered); the arrows move to the nearest block in their direction, Home
// and End to the largest and smallest, Return is a click, Delete asks to trash it, the Menu key
// or Shift+F10 opens its menu. Other keys (Backspace, Esc) go on to the panel.

#include "disktools/SpaceNode.h"
#include "files/FileCategory.h"

#include <QWidget>
#include <vector>

namespace orwick {

class TreemapWidget : public QWidget {
    Q_OBJECT
public:
    explicit TreemapWidget(QWidget* parent = nullptr);

    // The node drawn; call again (or relayout()) after the tree changed.
    void setNode(SpaceNode* node);
    SpaceNode* node() const { return m_node; }
    void relayout();

    // A block: a child node, or (node null) the small-files block.
    struct Block {
        SpaceNode* node = nullptr;
        QRectF rect;
        FileCategory category = FileCategory::other; // the small-files block is "other"
        // A folder's own children drawn inside it, one level down, each in its category's tint.
        struct Inner {
            QRectF rect;
            FileCategory category;
            const SpaceNode* node = nullptr; // named in its corner when there is room
        };
        std::vector<Inner> inside;
    };
    const std::vector<Block>& blocks() const { return m_blocks; }
    // The categories in the legend, by the space their blocks take, largest first.
    const QList<FileCategory>& legend() const { return m_legend; }
    // The legend's word for a category ("Images", "Disk images").
    static QString legendName(FileCategory category);
    // The block the keyboard is on (null when the map is empty).
    const Block* currentBlock() const;

Q_SIGNALS:
    void hovered(const QString& text); // empty when over nothing
    void clicked(orwick::SpaceNode* node);
    void menuRequested(orwick::SpaceNode* node, const QPoint& globalPos);
    void trashRequested(orwick::SpaceNode* node); // null for the small-files block

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void leaveEvent(QEvent* event) override;
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    const Block* blockAt(const QPointF& point) const;
    QString describe(const Block& block) const;
    void paintInnerLabel(QPainter& painter, const Block::Inner& inner, const QFontMetrics& metrics) const;
    QRectF legendArea() const;
    void setCurrent(int index);
    // The nearest block from the current one whose centre lies beyond it in direction (dx, dy).
    int neighbour(int dx, int dy) const;
    void paintLegend(QPainter& painter) const;

    SpaceNode* m_node = nullptr;
    std::vector<Block> m_blocks;
    QList<FileCategory> m_legend;
    const Block* m_hovered = nullptr;
    int m_current = -1; // index into m_blocks
};

} // namespace orwick
