#include "ui/panels/TreemapWidget.h"

#include "disktools/DiskNames.h"
#include "disktools/Treemap.h"
#include "files/FileCategory.h"
#include "theme/ThemeColors.h"
#include "ui/theme/Theme.h"

#include <QContextMenuEvent>
#include <QHash>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>

namespace orwick {

namespace {
constexpr double kLabelMinWidth = 60;
constexpr double kLabelMinHeight = 34;
constexpr int kSwatch = 10;

FileCategory categoryOf(const SpaceNode& node)
{
    return categorize(FilePath::fromNative("/" + node.name), node.isFolder && !node.isPackage, node.isPackage);
}
} // namespace

QString TreemapWidget::legendName(FileCategory category)
{
    switch (category) {
    case FileCategory::folder: return QStringLiteral("Folders");
    case FileCategory::app: return QStringLiteral("Apps");
    case FileCategory::package: return QStringLiteral("Packages");
    case FileCategory::image: return QStringLiteral("Images");
    case FileCategory::video: return QStringLiteral("Videos");
    case FileCategory::audio: return QStringLiteral("Audio");
    case FileCategory::pdf: return QStringLiteral("PDFs");
    case FileCategory::archive: return QStringLiteral("Archives");
    case FileCategory::code: return QStringLiteral("Code");
    case FileCategory::data: return QStringLiteral("Data");
    case FileCategory::text: return QStringLiteral("Text");
    case FileCategory::diskImage: return QStringLiteral("Disk images");
    case FileCategory::other: break;
    }
    return QStringLiteral("Other and small files");
}

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
        const QRectF area = QRectF(rect()).adjusted(1, 1, -1, -1 - legendArea().height());
        const auto rects = Treemap::layout(values, area);
        for (size_t i = 0; i < rects.size(); ++i)
            m_blocks[i].rect = rects[i];
    }
    QHash<int, qint64> taken;
    for (Block& block : m_blocks) {
        block.category = block.node ? categoryOf(*block.node) : FileCategory::other;
        taken[int(block.category)] += block.node ? block.node->size : m_node->smallFiles;
    }
    m_legend.clear();
    for (auto it = taken.cbegin(); it != taken.cend(); ++it)
        m_legend.append(FileCategory(it.key()));
    std::sort(m_legend.begin(), m_legend.end(), [&taken](FileCategory a, FileCategory b) {
        return taken[int(a)] != taken[int(b)] ? taken[int(a)] > taken[int(b)] : int(a) < int(b);
    });
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
        // The tint laid over the ground, lighter where the pointer is, shaded as a cushion.
        const QColor fill = mixColors(theme::background(), theme::categoryTint(block.category), &block == m_hovered ? 0.78 : 0.55);
        QLinearGradient cushion(block.rect.topLeft(), block.rect.bottomRight());
        cushion.setColorAt(0, fill.lighter(112));
        cushion.setColorAt(1, fill.darker(112));
        painter.fillRect(block.rect, cushion);
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
    paintLegend(painter);
}

QRectF TreemapWidget::legendArea() const
{
    const qreal height = fontMetrics().height() + 8;
    return QRectF(0, height < rect().height() ? rect().height() - height : 0, width(), height);
}

void TreemapWidget::paintLegend(QPainter& painter) const
{
    const QRectF area = legendArea();
    const QFontMetrics metrics = fontMetrics();
    qreal x = area.left() + 2;
    for (const FileCategory category : m_legend) {
        const QString name = legendName(category);
        const qreal width = kSwatch + 5 + metrics.horizontalAdvance(name) + 14;
        if (x + width > area.right())
            break; // a narrow map names its largest categories
        const QRectF swatch(x, area.center().y() - kSwatch / 2.0, kSwatch, kSwatch);
        painter.fillRect(swatch, mixColors(theme::background(), theme::categoryTint(category), 0.55));
        painter.setPen(theme::dimText());
        painter.drawText(QRectF(swatch.right() + 5, area.top(), width, area.height()), Qt::AlignLeft | Qt::AlignVCenter, name);
        x += width;
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
