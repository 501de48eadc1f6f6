#include "ui/views/FileGridView.h"

#include "ui/theme/Theme.h"
#include "ui/views/CategoryIcons.h"
#include "ui/views/TagDots.h"
#include "ui/views/Thumbnails.h"
#include "ui/views/ViewInput.h"

#include <QKeyEvent>
#include <cmath>
#include <QPainter>
#include <QPainterPath>
#include <QStyledItemDelegate>

namespace orwick {
namespace {

constexpr int kTextLines = 2;

// Draws one tile: selection and caret, the picture or icon, the name under it.
class TileDelegate : public QStyledItemDelegate {
public:
    TileDelegate(FileGridView* view, Thumbnails* thumbnails) : QStyledItemDelegate(view), m_view(view), m_thumbnails(thumbnails) {}

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override
    {
        const int edge = m_view->tileSize();
        return {edge + 16, edge + 12 + kTextLines * option.fontMetrics.height()};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        const auto* model = static_cast<const FileListModel*>(index.model());
        const FileItem* item = model->itemAt(index.row());
        if (!item)
            return;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        const QRect tile = option.rect.adjusted(3, 3, -3, -3);
        const bool selected = index.data(FileListModel::SelectedRole).toBool();
        const bool cursor = index.data(FileListModel::CursorRole).toBool() && m_view->hasFocus();
        if (selected || cursor) {
            QPainterPath shape;
            shape.addRoundedRect(tile, theme::cornerRadius(), theme::cornerRadius());
            if (selected) // a pane without the keyboard shows its selection dimmer
                painter->fillPath(shape, m_view->hasFocus() ? theme::selection() : theme::selectionUnfocused());
            if (cursor)
                painter->strokePath(shape, QPen(theme::cursorRing(), 2));
        }
        const int edge = m_view->tileSize();
        const QRect picture(tile.left() + (tile.width() - edge) / 2, tile.top() + 4, edge, edge);
        QImage thumbnail;
        if (Thumbnails::hasThumbnail(*item))
            thumbnail = m_thumbnails->thumbnail(*item, edge);
        if (!thumbnail.isNull()) {
            const QSize size = thumbnail.size().scaled(picture.size(), Qt::KeepAspectRatio);
            const QRect target(picture.center().x() - size.width() / 2, picture.bottom() - size.height(), size.width(), size.height());
            painter->drawImage(target, thumbnail);
        } else {
            const int iconEdge = edge * 3 / 4;
            itemIcon(*item).paint(painter, QRect(picture.center().x() - iconEdge / 2, picture.bottom() - iconEdge, iconEdge, iconEdge));
        }
        const QRect textBox(tile.left() + 2, picture.bottom() + 4, tile.width() - 4, kTextLines * option.fontMetrics.height());
        painter->setPen(item->isHidden ? theme::dimText() : theme::text());
        painter->setFont(option.font);
        painter->drawText(textBox, Qt::AlignHCenter | Qt::AlignTop | Qt::TextWrapAnywhere, elided(option.fontMetrics, item->name, textBox.width()));
        paintTagDots(painter, tile.right() - 2, tile.top() + 12, index); // the picture's top corner
        painter->restore();
    }

private:
    // Two lines at most: the start of the name on the first, the rest elided in the middle.
    static QString elided(const QFontMetrics& metrics, const QString& name, int width)
    {
        if (metrics.horizontalAdvance(name) <= width)
            return name;
        int fit = 1;
        while (fit < name.size() && metrics.horizontalAdvance(name.left(fit + 1)) <= width)
            ++fit;
        return name.left(fit) + QChar(u'\n') + metrics.elidedText(name.mid(fit), Qt::ElideMiddle, width);
    }

    FileGridView* m_view;
    Thumbnails* m_thumbnails;
};

} // namespace

FileGridView::FileGridView(FileListModel* model, QWidget* parent) : QListView(parent), m_model(model)
{
    m_thumbnails = new Thumbnails(this);
    setModel(model);
    setModelColumn(FileListModel::NameColumn);
    setViewMode(QListView::IconMode);
    setMovement(QListView::Static);
    setResizeMode(QListView::Adjust);
    setUniformItemSizes(true);
    setLayoutMode(QListView::Batched);
    setBatchSize(2000);
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setFrameShape(QFrame::NoFrame);
    setWordWrap(true);
    setItemDelegate(new TileDelegate(this, m_thumbnails));
    PaneState* pane = model->pane();
    followTileSize();
    connect(pane, &PaneState::iconSizeChanged, this, &FileGridView::followTileSize);
    connect(pane, &PaneState::selectionChanged, this, &FileGridView::followSelection);
    connect(pane, &PaneState::itemsChanged, this, &FileGridView::followSelection);
    connect(m_thumbnails, &Thumbnails::ready, this, [this, pane](const FilePath& url) {
        const int row = pane->row(url);
        if (row >= 0)
            update(m_model->index(row, FileListModel::NameColumn));
    });
}

void FileGridView::followTileSize()
{
    m_tileSize = int(std::lround(m_model->pane()->iconSize()));
    QStyleOptionViewItem option;
    option.initFrom(this);
    const QSize tile = itemDelegate()->sizeHint(option, {});
    setGridSize(tile);
    setIconSize(QSize(m_tileSize, m_tileSize));
    updateColumns();
    viewport()->update();
}

void FileGridView::updateColumns()
{
    const int width = std::max(1, viewport()->width() - spacing() * 2);
    if (PaneState* pane = m_model->pane())
        pane->setGridColumns(std::max(1, width / std::max(1, gridSize().width())));
}

void FileGridView::followSelection()
{
    followCursor(this, this);
}

void FileGridView::keyPressEvent(QKeyEvent* event)
{
    PaneKeyContext context;
    context.horizontalMoves = true;
    context.pageRows = std::max(1, viewport()->height() / std::max(1, gridSize().height())) * std::max(1, m_model->pane()->gridColumns());
    context.vimPendingG = &m_vimPendingG;
    if (handlePaneKey(*m_model->pane(), event, context)) {
        event->accept();
        return;
    }
    QListView::keyPressEvent(event);
}

void FileGridView::mousePressEvent(QMouseEvent* event) { pressOnView(this, *m_model->pane(), event); }

void FileGridView::mouseDoubleClickEvent(QMouseEvent* event) { doubleClickOnView(this, *m_model->pane(), event); }

void FileGridView::resizeEvent(QResizeEvent* event)
{
    QListView::resizeEvent(event);
    updateColumns();
}

void FileGridView::showEvent(QShowEvent* event)
{
    QListView::showEvent(event);
    followSelection();
}

} // namespace orwick
