#include "ui/panels/TreemapWidget.h"

#include "disktools/DiskNames.h"
#include "disktools/Treemap.h"
#include "files/FileCategory.h"
#include "ui/theme/Theme.h"

#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPainter>

namespace orwick {

namespace {
constexpr double kLabelMinWidth = 60;
constexpr double kLabelMinHeight = 34;
} // namespace

TreemapWidget::TreemapWidget(QWidget* parent) : QWidget(parent)
{
    setMouseTracking(true);
    setMinimumSize(200, 150);
    setFocusPolicy(Qt::StrongFocus);
}

void TreemapWidget::setNode(SpaceNode* node)
{
    m_node = node;
    relayout();
}

void TreemapWidget::relayout()
{
    m_blocks.clear();
    m_hovered = nullptr;
    if (m_node) {
        std::vector<double> values;
        for (const auto& child : m_node->children) {
            if (child->size > 0) {
                m_blocks.push_back({child.get(), {}});
                values.push_back(double(child->size));
            }
        }
        if (m_node->smallFiles > 0) {
            // The small files go where their size puts them among the children.
            auto at = std::find_if(values.begin(), values.end(), [&](double v) { return v < double(m_node->smallFiles); });
            const auto index = at - values.begin();
            values.insert(at, double(m_node->smallFiles));
            m_blocks.insert(m_blocks.begin() + index, Block{nullptr, {}});
        }
        const auto rects = Treemap::layout(values, QRectF(rect()).adjusted(1, 1, -1, -1));
        for (size_t i = 0; i < rects.size(); ++i)
            m_blocks[i].rect = rects[i];
    }
    Q_EMIT hovered({});
    update();
}

void TreemapWidget::resizeEvent(QResizeEvent*) { relayout(); }

QString TreemapWidget::describe(const Block& block) const
{
    if (!block.node)
        return QStringLiteral("Files under 1 MB, together — %1 (%2 files)")
            .arg(byteCountText(m_node->smallFiles))
            .arg(m_node->smallCount);
    QString text = block.node->displayName() + QStringLiteral(" — ") + byteCountText(block.node->size);
    if (block.node->isFolder && !block.node->isPackage)
        text += QStringLiteral(" · click to go in");
    return text;
}

void TreemapWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing, false);
    const QFontMetrics metrics = fontMetrics();
    for (const Block& block : m_blocks) {
        if (block.rect.width() < 1 || block.rect.height() < 1)
            continue;
        FileCategory category = FileCategory::other;
        if (block.node)
            category = categorize(FilePath::fromNative("/" + block.node->name), block.node->isFolder && !block.node->isPackage,
                                  block.node->isPackage);
        QColor fill = theme::categoryTint(category);
        fill.setAlphaF(&block == m_hovered ? 0.75f : 0.5f);
        painter.fillRect(block.rect, fill);
        painter.setPen(theme::separator());
        painter.drawRect(block.rect);
        if (block.rect.width() >= kLabelMinWidth && block.rect.height() >= kLabelMinHeight) {
            const QRectF inner = block.rect.adjusted(5, 3, -5, -3);
            const QString name = block.node ? block.node->displayName() : QStringLiteral("Files under 1 MB, together");
            const qint64 size = block.node ? block.node->size : m_node->smallFiles;
            painter.setPen(theme::text());
            painter.drawText(inner, Qt::AlignLeft | Qt::AlignTop,
                             metrics.elidedText(name, Qt::ElideMiddle, int(inner.width())) + u'\n' + byteCountText(size));
        }
    }
}

const TreemapWidget::Block* TreemapWidget::blockAt(const QPointF& point) const
{
    for (const Block& block : m_blocks)
        if (block.rect.contains(point))
            return &block;
    return nullptr;
}

void TreemapWidget::mouseMoveEvent(QMouseEvent* event)
{
    const Block* block = blockAt(event->position());
    if (block == m_hovered)
        return;
    m_hovered = block;
    Q_EMIT hovered(block ? describe(*block) : QString());
    update();
}

void TreemapWidget::leaveEvent(QEvent*)
{
    m_hovered = nullptr;
    Q_EMIT hovered({});
    update();
}

void TreemapWidget::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    if (const Block* block = blockAt(event->position()); block && block->node)
        Q_EMIT clicked(block->node);
}

void TreemapWidget::contextMenuEvent(QContextMenuEvent* event)
{
    if (const Block* block = blockAt(event->pos()); block && block->node)
        Q_EMIT menuRequested(block->node, event->globalPos());
}

} // namespace orwick
